#include "QelMessage/QelFileLock.h"

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelMessageFile.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace Qel {
namespace {

using testing::StartsWith;
using TestSupport::ChildProcess;
using TestSupport::inChild;
using TestSupport::TempFolder;

class QelFileLockTest : public testing::Test {
protected:
    [[nodiscard]] std::ptrdiff_t files() const {
        return std::distance(std::filesystem::directory_iterator(folder.path("")), {});
    }
    /// Whether the lock file exists and is locked.
    [[nodiscard]] bool isHeld(const std::string& name) const {
        const QelDescriptor opened(::open(folder.path(".qel-lock-" + name).c_str(), O_RDONLY | O_CLOEXEC));
        return opened.isOpen() && ::flock(opened.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    }
    [[nodiscard]] mode_t lockMode() const {
        struct stat status {};
        return ::stat(folder.path(".qel-lock-file").c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    TempFolder folder;
    std::string file = folder.path("file");
    QelFileLock lock;
};

/// Increments the number in a file; a missing file counts as zero. Returns 0 on success.
int increment(const std::string& file) {
    QelFileLock lock;
    if (lock.acquire(file) != 0)
        return 1;
    std::string number = "0";
    if (std::filesystem::exists(file) && QelMessageFile::read(file, number) != 0)
        return 2;
    return QelMessageFile::replace(file, std::to_string(std::stoi(number) + 1)) == 0 ? 0 : 3;
}

TEST_F(QelFileLockTest, ConcurrentChangesAreNotLost) {
    constexpr int processes = 8;
    constexpr int changes = 20;
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (int i = 0; i < processes; ++i)
        children.push_back(std::make_unique<ChildProcess>([&] {
            for (int change = 0; change < changes; ++change)
                if (const int failure = increment(file))
                    return failure;
            return 0;
        }));
    for (const auto& child : children)
        EXPECT_EQ(child->wait(), 0);
    EXPECT_EQ(folder.read("file"), std::to_string(processes * changes));
    EXPECT_EQ(files(), 1);
}

TEST_F(QelFileLockTest, LockIsHeldUntilItIsReleased) {
    ASSERT_EQ(lock.acquire(file), 0) << getErrorMessage();
    EXPECT_TRUE(isHeld("file"));
    ASSERT_EQ(QelMessageFile::replace(file, "one"), 0);
    EXPECT_TRUE(isHeld("file"));
    lock.release();
    EXPECT_EQ(files(), 1);
    ASSERT_EQ(lock.acquire(file), 0) << getErrorMessage();
    EXPECT_TRUE(isHeld("file"));
}

TEST_F(QelFileLockTest, LinkAndFileShareALock) {
    std::filesystem::create_symlink("file", folder.path("link"));
    ASSERT_EQ(lock.acquire(folder.path("link")), 0) << getErrorMessage();
    EXPECT_TRUE(isHeld("file"));
    EXPECT_EQ(files(), 2);
}

TEST_F(QelFileLockTest, KilledProcessReleasesTheLock) {
    const TestSupport::Signal locked;
    ChildProcess child([&] {
        if (lock.acquire(file) != 0)
            return 1;
        locked.notify();
        for (;;)
            ::pause();
    });
    locked.wait();
    EXPECT_TRUE(isHeld("file"));
    child.kill();
    child.wait();
    ASSERT_EQ(lock.acquire(file), 0) << getErrorMessage();
    lock.release();
    EXPECT_EQ(files(), 0);
}

TEST_F(QelFileLockTest, ForkedProcessDoesNotReleaseTheLock) {
    ASSERT_EQ(lock.acquire(file), 0) << getErrorMessage();
    EXPECT_EQ(inChild([&] {
                  lock.release();
                  return 0;
              }),
              0);
    EXPECT_TRUE(isHeld("file"));
}

TEST_F(QelFileLockTest, LongFileNameGetsAValidLockFileName) {
    std::set<std::string> lockFiles;
    for (const std::string& name : {std::string(255, 'n'), std::string(254, 'n') + 'm'}) {
        ASSERT_EQ(lock.acquire(folder.path(name)), 0) << getErrorMessage();
        lockFiles.insert(std::filesystem::directory_iterator(folder.path(""))->path());
        lock.release();
    }
    EXPECT_EQ(lockFiles.size(), 2U);
}

TEST_F(QelFileLockTest, LockFileIsAccessibleToWritersOfTheFile) {
    const mode_t mask = ::umask(0);
    ASSERT_EQ(lock.acquire(file), 0);
    EXPECT_EQ(lockMode(), 0600U);
    lock.release();
    folder.write("file", "old");
    for (const auto& [mode, expected] : {std::pair(0644U, 0600U), std::pair(0660U, 0660U)}) {
        ASSERT_EQ(::chmod(file.c_str(), mode), 0);
        ASSERT_EQ(lock.acquire(file), 0);
        EXPECT_EQ(lockMode(), expected);
        lock.release();
    }
    ::umask(mask);
}

TEST_F(QelFileLockTest, LockFileCreatedByRootBelongsToTheOwnerOfTheFile) {
    folder.write("file", "old");
    if (::chown(file.c_str(), 1234, 2345) != 0)
        GTEST_SKIP() << "only root may give a file to another user";
    ASSERT_EQ(lock.acquire(file), 0) << getErrorMessage();
    struct stat status {};
    ASSERT_EQ(::stat(folder.path(".qel-lock-file").c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 1234U);
    EXPECT_EQ(status.st_gid, 2345U);
}

TEST_F(QelFileLockTest, PipesAndDirectoriesHaveNoLock) {
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(lock.acquire(file), 0) << getErrorMessage();
    EXPECT_EQ(lock.acquire(folder.path("")), 0) << getErrorMessage();
    EXPECT_EQ(files(), 1);
}

TEST_F(QelFileLockTest, ObjectHoldsAtMostOneLock) {
    ASSERT_EQ(lock.acquire(file), 0);
    EXPECT_NE(lock.acquire(folder.path("other")), 0);
    EXPECT_EQ(getErrorMessage(), folder.path("other") + ": Resource deadlock avoided");
    EXPECT_TRUE(isHeld("file"));
}

TEST_F(QelFileLockTest, FileWithContentIsNotUsedAsALockFile) {
    const std::string other = folder.write(".qel-lock-file", "content");
    EXPECT_NE(lock.acquire(file), 0);
    EXPECT_EQ(getErrorMessage(), file + ": cannot be locked with " + other + ": File exists");
    EXPECT_EQ(folder.read(".qel-lock-file"), "content");
    ASSERT_EQ(::unlink(other.c_str()), 0);
    std::filesystem::create_symlink("elsewhere", other);
    EXPECT_NE(lock.acquire(file), 0);
    EXPECT_THAT(getErrorMessage(), StartsWith(file + ": cannot be locked with " + other + ": "));
    EXPECT_FALSE(std::filesystem::exists(folder.path("elsewhere")));
}

TEST_F(QelFileLockTest, MissingDirectoryFails) {
    EXPECT_NE(lock.acquire(folder.path("none/file")), 0);
    EXPECT_EQ(getErrorMessage(), folder.path("none/file") + ": cannot be locked with " +
                                     folder.path("none/.qel-lock-file") + ": No such file or directory");
}

} // namespace
} // namespace Qel
