#include "QelCore/QelCachedItem.h"

#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

namespace Qel {
namespace {

TEST(QelCachedItemTest, CountStartsAtZeroAndIsLockedIfPositive) {
    QelCachedItemRefCounterBase<int> count;
    EXPECT_EQ(count.getRefCount(), 0);
    EXPECT_FALSE(count.isLocked());
    count.incRef();
    EXPECT_TRUE(count.isLocked());
    count.incRef();
    count.decRef();
    EXPECT_EQ(count.getRefCount(), 1);
    count.setRefCount(-1);
    EXPECT_FALSE(count.isLocked());
}

TEST(QelCachedItemDeathTest, DecrementOfNegativeCountIsFatal) {
    QelCachedItemRefCounterBase<int> count;
    count.decRef();
    EXPECT_EQ(count.getRefCount(), -1) << "a decrement of zero is accepted";
    EXPECT_DEATH(count.decRef(), "core/src/QelCore/QelCacheLogic");
}

TEST(QelCachedItemTest, CopyHasItsOwnCount) {
    QelCachedItem item;
    item.refCount.setRefCount(5);
    QelCachedItem copy(item);
    EXPECT_EQ(copy.refCount.getRefCount(), 0);
    copy.refCount.setRefCount(3);
    copy = std::as_const(item);
    EXPECT_EQ(copy.refCount.getRefCount(), 3);
}

TEST(QelCachedItemTest, PrivateMemoryIsZeroed) {
    auto* bytes = static_cast<unsigned char*>(QelCachedItem::allocator_free(300));
    ASSERT_NE(bytes, nullptr);
    EXPECT_TRUE(std::all_of(bytes, bytes + 300, [](unsigned char byte) { return byte == 0; }));
    QelCachedItem::deleter_free(bytes);
}

} // namespace
} // namespace Qel
