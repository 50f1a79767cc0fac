#include "QelCore/QelLock.h"

#include <thread>

#include <gtest/gtest.h>

namespace Qel {
namespace {

TEST(QelLockTest, IsRecursive) {
    QelLock lock;
    const QelGuardT<QelLock> outer(lock);
    const QelGuardT<QelLock> inner(lock);
}

TEST(QelLockTest, IsReleasedByTheOutermostGuard) {
    QelLock lock;
    {
        const QelGuardT<QelLock> outer(lock);
        const QelGuardT<QelLock> inner(lock);
    }
    std::thread([&lock] { const QelGuardT<QelLock> guard(lock); }).join();
}

TEST(QelLockTest, ExcludesOtherThreads) {
    constexpr int rounds = 2000;
    QelLock lock;
    int counter = 0;
    const auto count = [&] {
        for (int i = 0; i < rounds; ++i) {
            const QelGuardT<QelLock> guard(lock);
            const int seen = *const_cast<volatile int*>(&counter);
            std::this_thread::yield();
            counter = seen + 1;
        }
    };
    std::thread other(count);
    count();
    other.join();
    EXPECT_EQ(counter, 2 * rounds);
}

} // namespace
} // namespace Qel
