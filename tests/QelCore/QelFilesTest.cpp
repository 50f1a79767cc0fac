#include "QelCore/QelFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "QelCommon/ErrorMessage.h"
#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

constexpr unsigned validOffset = 52;

TEST(QelFilesTest, RemovingMissingFileSucceeds) {
    const TempFile file;
    EXPECT_EQ(removeFile(file.path()), 0);
    file.write("x");
    EXPECT_EQ(removeFile(file.path()), 0);
    EXPECT_FALSE(file.exists());
}

TEST(QelFilesTest, RemovingDirectoryFailsWithErrorMessage) {
    const TempFile file;
    ASSERT_EQ(mkdir(file.path().c_str(), 0700), 0);
    EXPECT_EQ(removeFile(file.path()), -1);
    EXPECT_THAT(getErrorMessage(), testing::HasSubstr(file.path()));
}

TEST(QelFilesTest, InspectionClassifiesFiles) {
    const TempFile file;
    EXPECT_EQ(inspectCacheFile(file.path()), eCacheFileKind::missing);
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(inspectCacheFile(file.path() + "/below"), eCacheFileKind::missing);
    file.write("");
    EXPECT_EQ(inspectCacheFile(file.path()), eCacheFileKind::unformatted);
    EXPECT_EQ(file.size(), 0U);
    file.write(std::string(4096, '\0'));
    EXPECT_EQ(inspectCacheFile(file.path()), eCacheFileKind::unformatted);
    file.write("# a text file, longer than the header of a cache would be\n");
    EXPECT_EQ(inspectCacheFile(file.path()), eCacheFileKind::foreign);
    file.write("x");
    EXPECT_EQ(inspectCacheFile(file.path()), eCacheFileKind::foreign) << "shorter than the header but not zero";
    EXPECT_EQ(inspectCacheFile("/dev/null"), eCacheFileKind::unreadable);
    EXPECT_EQ(inspectCacheFile("/tmp"), eCacheFileKind::unreadable);
    EXPECT_THAT(getErrorMessage(), testing::HasSubstr("/tmp"));
}

TEST(QelFilesTest, InspectionChecksEachConstantOfTheHeader) {
    const TempFile file;
    attach(file);
    EXPECT_EQ(inspectCacheFile(file.path()), eCacheFileKind::cache);
    for (const unsigned offset : {8U, 28U, 32U, 40U, validOffset}) {
        const std::uint32_t good = file.word(offset);
        file.setWord(offset, 0);
        EXPECT_EQ(inspectCacheFile(file.path()), eCacheFileKind::foreign) << offset;
        file.setWord(offset, good);
    }
    file.setWord(12, 4097);
    EXPECT_EQ(inspectCacheFile(file.path()), eCacheFileKind::foreign) << "larger than the file";
}

TEST(QelFilesTest, UnusableCacheIsRemoved) {
    const TempFile file;
    attach(file);
    file.setWord(validOffset, 0);
    EXPECT_EQ(removeLockedCacheFile(file.path().c_str(), cacheInvalid), 0);
    EXPECT_FALSE(file.exists());
    EXPECT_EQ(removeLockedCacheFile(file.path().c_str(), cacheInvalid), 0) << "already removed";
}

TEST(QelFilesTest, UsableCacheIsNotRemoved) {
    const TempFile file;
    attach(file);
    EXPECT_EQ(removeLockedCacheFile(file.path().c_str(), cacheInvalid), -1);
    EXPECT_EQ(removeLockedCacheFile(file.path().c_str(), cacheSuccess), 0) << "attaching succeeded";
    EXPECT_EQ(inspectCacheFile(file.path()), eCacheFileKind::cache);
}

TEST(QelFilesTest, RemovalAcquiresTheLockBeforeChecking) {
    const TempFile file;
    file.write("foreign");
    QelMappedMemoryManager::Storage storage(file.path());
    ASSERT_NE(storage.getStorage(4096, nullptr), nullptr);
    ASSERT_EQ(storage.lock(), 0);
    const Signal begun;
    ChildProcess child([&] {
        begun.notify();
        return removeLockedCacheFile(file.path().c_str(), cacheBadMagic);
    });
    begun.wait();
    // The file becomes usable while the lock is held, which the removal must detect.
    static_cast<char*>(storage.getMemory())[validOffset] = 1;
    ASSERT_EQ(storage.unlock(), 0);
    EXPECT_NE(child.wait(), 0);
    EXPECT_TRUE(file.exists());
}

} // namespace
} // namespace Qel
