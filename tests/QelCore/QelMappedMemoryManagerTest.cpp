#include "QelCore/QelMappedMemoryManager.h"

#include <gtest/gtest.h>

#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

using Storage = QelMappedMemoryManager::Storage;
using Lock = QelMappedMemoryManager::Lock;
const unsigned page = Storage::getMemoryPageSize();

TEST(QelMappedMemoryManagerTest, ConstructedStorageMapsNothing) {
    const TempFile file;
    const Storage storage(file.path());
    EXPECT_EQ(storage.getMemory(), nullptr);
    EXPECT_EQ(storage.getSize(), 0U);
    EXPECT_FALSE(file.exists());
}

TEST(QelMappedMemoryManagerTest, SecondGetStorageLeavesMappingUnchanged) {
    const TempFile file;
    Storage storage(file.path());
    void* memory = storage.getStorage(page, nullptr);
    ASSERT_NE(memory, nullptr);
    EXPECT_EQ(memory, storage.getMemory());
    EXPECT_EQ(storage.getStorage(2 * page, nullptr), nullptr);
    EXPECT_EQ(storage.getSize(), page);
    EXPECT_EQ(storage.getMemory(), memory);
    EXPECT_EQ(storage.syncStorage(), 0);
}

TEST(QelMappedMemoryManagerTest, DifferenceConvertsAddressesBetweenMappings) {
    const TempFile file;
    Storage one(file.path());
    ASSERT_NE(one.getStorage(page, nullptr), nullptr);
    Storage other(file.path());
    ASSERT_NE(other.getStorage(2 * page, &one), nullptr);
    EXPECT_EQ(static_cast<char*>(one.getMemory()) + one.getDifference(&other), other.getMemory());
    EXPECT_EQ(one.getDifference(&other), -other.getDifference(&one));
}

TEST(QelMappedMemoryManagerTest, FailedMappingReturnsNull) {
    const TempFile file;
    Storage storage(file.path() + "/below");
    EXPECT_EQ(storage.getStorage(page, nullptr), nullptr);
    EXPECT_EQ(storage.getSize(), 0U);
}

TEST(QelMappedMemoryManagerTest, ProtectionCanBeSetAndReset) {
    const TempFile file;
    Storage storage(file.path());
    auto* memory = static_cast<char*>(storage.getStorage(page, nullptr));
    ASSERT_NE(memory, nullptr);
    ASSERT_EQ(storage.protect(true), 0);
    EXPECT_DEATH(memory[0] = 'x', "");
    ASSERT_EQ(storage.protect(false), 0);
    memory[0] = 'x';
}

TEST(QelMappedMemoryManagerTest, LockDelegatesToStorage) {
    const TempFile file;
    Storage storage(file.path());
    ASSERT_NE(storage.getStorage(page, nullptr), nullptr);
    Storage other(file.path());
    ASSERT_NE(other.getStorage(page, &storage), nullptr);
    EXPECT_EQ(Lock::lock(&storage), 0);
    EXPECT_NE(other.lock(), 0) << "already held by this thread";
    EXPECT_EQ(Lock::unlock(&storage), 0);
    EXPECT_EQ(other.lock(), 0);
    EXPECT_EQ(other.unlock(), 0);
}

} // namespace
} // namespace Qel
