#include "QelCore/QelMemoryMappedFile.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

constexpr tFileMappingOptions options(7, fileOpenOrCreate, accessReadWrite, mapSizeAsAsked);
const unsigned page = QelMemoryMappedFile::getMemoryPageSize();

constexpr unsigned mebibyte = 1U << 20U;

/// Number of open descriptors of this process.
int openDescriptors() {
    int count = 0;
    for (int descriptor = 0; descriptor < 1024; ++descriptor)
        count += fcntl(descriptor, F_GETFD) != -1;
    return count;
}

/// A mapping of the first bytes of a file.
class MappedFile : public QelMemoryMappedFile {
public:
    explicit MappedFile(const TempFile& name, unsigned size = page) {
        if (map(name.path(), size, options, nullptr))
            throw std::runtime_error(getErrorMessage());
    }
};

char* bytesOf(const QelMemoryMappedFile& file) {
    return static_cast<char*>(file.getMemory());
}

TEST(QelMemoryMappedFileTest, NewFileIsAccessibleByOwnerOnlyAndReadsAsZero) {
    const TempFile name;
    QelMemoryMappedFile file;
    EXPECT_EQ(file.map(name.path(), page, options, nullptr), 0);
    ASSERT_NE(file.getMemory(), nullptr);
    EXPECT_EQ(file.getSize(), page);
    EXPECT_EQ(name.read(), std::string(page, '\0'));
    EXPECT_TRUE(file.isInFile(page));
    EXPECT_FALSE(file.isInFile(page + 1));
    struct stat status {};
    ASSERT_EQ(stat(name.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 077U, 0U);
}

TEST(QelMemoryMappedFileTest, ExistingFileIsExtendedAndNeverTruncated) {
    const TempFile name;
    name.write("text");
    MappedFile small(name);
    EXPECT_EQ(name.size(), page);
    EXPECT_EQ(std::memcmp(small.getMemory(), "text\0", 5), 0);
    MappedFile large(name, 3 * page);
    MappedFile again(name);
    EXPECT_EQ(name.size(), 3 * page);
    EXPECT_EQ(again.getSize(), page);
}

TEST(QelMemoryMappedFileTest, HolesOfExistingFileAreAllocated) {
    const TempFile name;
    name.write("");
    ASSERT_EQ(truncate(name.path().c_str(), 16 * static_cast<off_t>(page)), 0);
    MappedFile file(name, 16 * page);
    struct stat status {};
    ASSERT_EQ(stat(name.path().c_str(), &status), 0);
    EXPECT_GE(status.st_blocks * 512, static_cast<long>(16 * page));
}

TEST(QelMemoryMappedFileTest, MappingsOfOneFileShareItsBytes) {
    const TempFile name;
    MappedFile one(name);
    MappedFile other(name);
    bytesOf(one)[100] = 'x';
    EXPECT_EQ(bytesOf(other)[100], 'x');
    EXPECT_TRUE(one.isSameFile(other));
    EXPECT_EQ(one.syncMemory(), 0);
}

TEST(QelMemoryMappedFileTest, RemapMapsTheSameFileAfterUnlink) {
    const TempFile name;
    MappedFile one(name);
    ASSERT_EQ(unlink(name.path().c_str()), 0);
    QelMemoryMappedFile larger;
    ASSERT_EQ(larger.remap(4 * page, nullptr, &one), 0);
    EXPECT_NE(larger.getMemory(), one.getMemory());
    EXPECT_EQ(larger.getSize(), 4 * page);
    EXPECT_EQ(one.getSize(), page);
    bytesOf(one)[7] = 'y';
    EXPECT_EQ(bytesOf(larger)[7], 'y');
    bytesOf(larger)[4 * page - 1] = 'z';
    EXPECT_FALSE(name.exists());
}

TEST(QelMemoryMappedFileTest, RemapToMoreOfExistingFileSharesItsPages) {
    const TempFile name;
    name.write(std::string(4 * page, 'a'));
    auto first = std::make_unique<MappedFile>(name);
    QelMemoryMappedFile all;
    ASSERT_EQ(all.remap(4 * page, nullptr, first.get()), 0);
    EXPECT_EQ(all.getMemory(), first->getMemory());
    EXPECT_EQ(first->getSize(), page);
    EXPECT_EQ(all.getSize(), 4 * page);
    first.reset();
    bytesOf(all)[4 * page - 1] = 'z';
    EXPECT_EQ(name.read().back(), 'z');
}

TEST(QelMemoryMappedFileTest, FileWithHolesIsMappedOnlyUpToTheRequestedSize) {
    // A write to a hole might find the disk full, which raises a signal.
    const TempFile name;
    name.write("");
    ASSERT_EQ(truncate(name.path().c_str(), 16 * static_cast<off_t>(page)), 0);
    MappedFile first(name);
    QelMemoryMappedFile all;
    ASSERT_EQ(all.remap(16 * page, nullptr, &first), 0);
    EXPECT_NE(all.getMemory(), first.getMemory());
}

TEST(QelMemoryMappedFileTest, FileOfOneMebibyteGrowsInPlace) {
    const TempFile name;
    QelMemoryMappedFile first;
    ASSERT_EQ(first.map(name.path(), mebibyte, options, nullptr), 0);
    QelMemoryMappedFile larger;
    ASSERT_EQ(larger.remap(4 * mebibyte, nullptr, &first), 0);
    EXPECT_EQ(larger.getMemory(), first.getMemory());
    EXPECT_EQ(first.getSize(), mebibyte);
    EXPECT_EQ(larger.getSize(), 4 * mebibyte);
    EXPECT_EQ(name.size(), 4 * mebibyte);
    bytesOf(larger)[4 * mebibyte - 1] = 'z';
    QelMemoryMappedFile beyond;
    ASSERT_EQ(beyond.remap(4 * mebibyte + page, nullptr, &larger), 0);
    EXPECT_NE(beyond.getMemory(), larger.getMemory());
    EXPECT_EQ(bytesOf(beyond)[4 * mebibyte - 1], 'z');
}

TEST(QelMemoryMappedFileTest, GrowthInPlaceFailsAtFileSizeLimit) {
    EXPECT_EQ(inChild([] {
                  const TempFile name;
                  std::signal(SIGXFSZ, SIG_DFL);
                  const rlimit limit{2 * mebibyte, 2 * mebibyte};
                  if (setrlimit(RLIMIT_FSIZE, &limit))
                      return 1;
                  QelMemoryMappedFile file;
                  if (file.map(name.path(), 2 * mebibyte, options, nullptr))
                      return 2;
                  QelMemoryMappedFile larger;
                  return larger.remap(3 * mebibyte, nullptr, &file) && !larger.getMemory() ? 0 : 3;
              }),
              0);
}

#ifndef __SANITIZE_ADDRESS__ // the sanitizer needs more address space than the limit permits
TEST(QelMemoryMappedFileTest, FileIsMappedWithoutRoomToGrowIfAddressSpaceIsScarce) {
    EXPECT_EQ(inChild([] {
                  const TempFile name;
                  std::ifstream statistics("/proc/self/statm");
                  rlim_t pagesUsed = 0;
                  statistics >> pagesUsed;
                  const rlim_t most = pagesUsed * page + 20 * mebibyte;
                  const rlimit limit{most, most};
                  if (setrlimit(RLIMIT_AS, &limit))
                      return 1;
                  QelMemoryMappedFile file;
                  if (file.map(name.path(), 10 * mebibyte, options, nullptr))
                      return 2;
                  QelMemoryMappedFile larger;
                  return larger.remap(30 * mebibyte, nullptr, &file) && !larger.getMemory() ? 0 : 3;
              }),
              0);
}
#endif

TEST(QelMemoryMappedFileTest, ExtendPrefaultsZeros) {
    const TempFile name;
    const MappedFile file(name, mebibyte);
    bytesOf(file)[mebibyte - 1] = 'x';
    constexpr unsigned length = 2 * mebibyte + 3;
    QelMemoryMappedFile extending;
    extending.share(file);
    ASSERT_EQ(extending.extend(length), 0);
    EXPECT_EQ(name.size(), length);
    QelMemoryMappedFile all;
    ASSERT_EQ(all.remap(length, nullptr, &file), 0);
    EXPECT_EQ(pagesInMemory(all, mebibyte, 2 * mebibyte + page), static_cast<long>(mebibyte / page) + 1);
    EXPECT_EQ(bytesOf(all)[mebibyte - 1], 'x');
    EXPECT_EQ(std::count(bytesOf(all) + mebibyte, bytesOf(all) + length, '\0'), std::ptrdiff_t{mebibyte + 3});
}

TEST(QelMemoryMappedFileTest, LargeExtendPrefaultsTheLast16MiB) {
    constexpr unsigned length = 40 * mebibyte;
    const TempFile name;
    MappedFile file(name);
    ASSERT_EQ(file.extend(length), 0);
    QelMemoryMappedFile all;
    ASSERT_EQ(all.remap(length, nullptr, &file), 0);
    EXPECT_EQ(pagesInMemory(all, length - 16 * mebibyte, length), static_cast<long>(16 * mebibyte / page));
    const TempFile other;
    const MappedFile onlyMapped(other, length);
    const unsigned end = length - 17 * mebibyte;
    EXPECT_EQ(pagesInMemory(all, mebibyte, end), pagesInMemory(onlyMapped, mebibyte, end));
}

TEST(QelMemoryMappedFileTest, ExtendLeavesLongEnoughFileUnchanged) {
    const TempFile name;
    MappedFile file(name, 2 * page);
    std::memset(file.getMemory(), 'x', 2 * page);
    EXPECT_EQ(file.extend(page), 0);
    EXPECT_EQ(file.extend(2 * page), 0);
    EXPECT_EQ(name.size(), 2 * page);
    EXPECT_TRUE(std::all_of(bytesOf(file), bytesOf(file) + 2 * page, [](char byte) { return byte == 'x'; }));
}

TEST(QelMemoryMappedFileTest, ExtendFailsAtFileSizeLimitAndWithoutOpenFile) {
    EXPECT_EQ(inChild([] {
                  const TempFile name;
                  std::signal(SIGXFSZ, SIG_DFL);
                  const rlimit limit{2 * page, 2 * page};
                  if (setrlimit(RLIMIT_FSIZE, &limit))
                      return 1;
                  MappedFile file(name, 2 * page);
                  if (!file.extend(3 * page))
                      return 2;
                  return name.size() == 2 * page ? 0 : 3;
              }),
              0);
    QelMemoryMappedFile none;
    EXPECT_NE(none.extend(page), 0);
}

TEST(QelMemoryMappedFileTest, SharedFileIsLockableButNotMapped) {
    const TempFile name;
    MappedFile file(name);
    QelMemoryMappedFile locker;
    locker.share(file);
    EXPECT_EQ(locker.getMemory(), nullptr);
    EXPECT_EQ(locker.lock(false), 0);
    EXPECT_NE(file.lock(true), 0);
    EXPECT_EQ(locker.unlock(), 0);
}

TEST(QelMemoryMappedFileTest, ReplacedFileIsNotTheSameFile) {
    const TempFile name;
    MappedFile one(name);
    ASSERT_EQ(unlink(name.path().c_str()), 0);
    MappedFile other(name);
    EXPECT_FALSE(one.isSameFile(other));
}

TEST(QelMemoryMappedFileTest, FailureMapsNothingAndSetsErrorMessage) {
    const TempFile name;
    QelMemoryMappedFile file;
    EXPECT_NE(file.map(name.path() + "/below", page, options, nullptr), 0);
    EXPECT_THAT(getErrorMessage(), testing::HasSubstr("No such file or directory"));
    EXPECT_NE(file.map("/dev/zero", page, options, nullptr), 0);
    EXPECT_NE(file.map("/tmp", page, options, nullptr), 0);
    EXPECT_NE(file.map(name.path(), 0, options, nullptr), 0) << "an empty range cannot be mapped";
    const tFileMappingOptions unknown(0, fileOpenOrCreate, accessReadWrite, mapSizeAsAsked);
    EXPECT_NE(file.map(name.path(), page, unknown, nullptr), 0);
    EXPECT_NE(file.remap(page, nullptr, nullptr), 0);
    const QelMemoryMappedFile empty;
    EXPECT_NE(file.remap(page, nullptr, &empty), 0);
    EXPECT_EQ(file.getMemory(), nullptr);
    EXPECT_EQ(file.getSize(), 0U);
    EXPECT_FALSE(file.isInFile(0));
    EXPECT_NE(file.lock(false), 0);
    EXPECT_NE(file.unlock(), 0);
}

TEST(QelMemoryMappedFileTest, PipeIsRejected) {
    const TempFile name;
    ASSERT_EQ(mkfifo(name.path().c_str(), 0600), 0);
    QelMemoryMappedFile file;
    EXPECT_NE(file.map(name.path(), page, options, nullptr), 0);
    EXPECT_EQ(getErrorMessage(), "cannot use '" + name.path() + "': Invalid argument");
}

TEST(QelMemoryMappedFileTest, FileReplacedDuringOpenIsRejected) {
    const TempFile name;
    const TempFile other;
    name.write("first");
    other.write("second");
    const Signal leased;
    const Signal mapReturned;
    // A lease delays the first open() of another process until the holder has replaced the file.
    ChildProcess holder([&] {
        sigset_t breaking;
        sigemptyset(&breaking);
        sigaddset(&breaking, SIGIO);
        sigprocmask(SIG_BLOCK, &breaking, nullptr);
        const int descriptor = open(name.path().c_str(), O_RDWR | O_CLOEXEC);
        const bool isLeased = fcntl(descriptor, F_SETLEASE, F_WRLCK) == 0;
        leased.notify();
        if (!isLeased)
            return 2;
        int number = 0;
        sigwait(&breaking, &number);
        if (rename(other.path().c_str(), name.path().c_str()))
            return 1;
        fcntl(descriptor, F_SETLEASE, F_UNLCK);
        mapReturned.wait();
        return 0;
    });
    leased.wait();
    QelMemoryMappedFile file;
    const int result = file.map(name.path(), page, options, nullptr);
    mapReturned.notify();
    const int held = holder.wait();
    if (held == 2)
        GTEST_SKIP() << "the file system grants no leases";
    ASSERT_EQ(held, 0);
    EXPECT_NE(result, 0);
    EXPECT_EQ(getErrorMessage(), "cannot use '" + name.path() + "': " + std::strerror(ESTALE));
    EXPECT_EQ(name.read(), "second") << "the new file is not modified";
}

TEST(QelMemoryMappedFileTest, SecondMappingInOneObjectIsRejected) {
    const TempFile name;
    MappedFile file(name);
    void* memory = file.getMemory();
    EXPECT_NE(file.map(name.path(), 2 * page, options, nullptr), 0);
    EXPECT_EQ(file.getMemory(), memory);
    EXPECT_EQ(file.getSize(), page);
}

TEST(QelMemoryMappedFileTest, FileSizeLimitIsReportedWithoutSignal) {
    EXPECT_EQ(inChild([] {
                  const TempFile name;
                  std::signal(SIGXFSZ, SIG_DFL);
                  const rlimit limit{2 * page, 2 * page};
                  if (setrlimit(RLIMIT_FSIZE, &limit))
                      return 1;
                  QelMemoryMappedFile file;
                  if (file.map(name.path(), 2 * page, options, nullptr))
                      return 2;
                  QelMemoryMappedFile larger;
                  if (!larger.remap(3 * page, nullptr, &file) || larger.getMemory())
                      return 3;
                  bytesOf(file)[2 * page - 1] = 'x';
                  return name.size() == 2 * page ? 0 : 4;
              }),
              0);
}

TEST(QelMemoryMappedFileTest, ProtectedMemoryIsReadOnly) {
    const TempFile name;
    MappedFile file(name);
    bytesOf(file)[0] = 'a';
    ASSERT_EQ(file.protectMemory(true), 0);
    EXPECT_EQ(bytesOf(file)[0], 'a');
    EXPECT_DEATH(bytesOf(file)[0] = 'b', "");
    ASSERT_EQ(file.protectMemory(false), 0);
    bytesOf(file)[0] = 'c';
    EXPECT_EQ(bytesOf(file)[0], 'c');
}

TEST(QelMemoryMappedFileTest, DescriptorsAreClosedOnExecAndWithLastMapping) {
    const TempFile name;
    const int before = openDescriptors();
    {
        MappedFile file(name);
        QelMemoryMappedFile larger;
        ASSERT_EQ(larger.remap(2 * page, nullptr, &file), 0);
        EXPECT_EQ(openDescriptors(), before + 2) << "one for mapping, one for locking; remap shares them";
        for (int descriptor = 0; descriptor < 1024; ++descriptor) {
            struct stat status {};
            struct stat named {};
            if (fstat(descriptor, &status) == 0 && stat(name.path().c_str(), &named) == 0 &&
                status.st_ino == named.st_ino && status.st_dev == named.st_dev) {
                EXPECT_TRUE(fcntl(descriptor, F_GETFD) & FD_CLOEXEC);
            }
        }
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(QelMemoryMappedFileTest, LockExcludesOtherProcesses) {
    const TempFile name;
    MappedFile file(name);
    const auto tryToLock = [&] {
        QelMemoryMappedFile mine;
        return mine.map(name.path(), page, options, nullptr) ? 2 : mine.lock(true) ? 1 : 0;
    };
    ASSERT_EQ(file.lock(false), 0);
    EXPECT_EQ(inChild(tryToLock), 1);
    ASSERT_EQ(file.unlock(), 0);
    EXPECT_EQ(inChild(tryToLock), 0);
}

TEST(QelMemoryMappedFileTest, MappingsOfOneFileShareOneLockInAProcess) {
    const TempFile name;
    MappedFile one(name);
    MappedFile other(name);
    QelMemoryMappedFile larger;
    ASSERT_EQ(larger.remap(2 * page, nullptr, &one), 0);
    ASSERT_EQ(one.lock(false), 0);
    for (QelMemoryMappedFile* const file : std::initializer_list<QelMemoryMappedFile*>{&other, &larger}) {
        int result = 0;
        std::thread([&] { result = file->lock(true); }).join();
        EXPECT_NE(result, 0);
        EXPECT_NE(file->lock(false), 0) << "must not deadlock on its own lock";
    }
    ASSERT_EQ(one.unlock(), 0);
    ASSERT_EQ(larger.lock(true), 0);
    ASSERT_EQ(larger.unlock(), 0);
}

TEST(QelMemoryMappedFileTest, LockExcludesOtherThreads) {
    const TempFile name;
    MappedFile one(name);
    MappedFile other(name);
    int counter = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&, i] {
            QelMemoryMappedFile& file = i % 2 ? one : other;
            for (int round = 0; round < 2000; ++round) {
                if (file.lock(false))
                    std::abort();
                ++counter;
                file.unlock();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 8000);
}

TEST(QelMemoryMappedFileTest, ForkedChildKeepsMappingAndLosesLock) {
    const TempFile name;
    MappedFile file(name);
    bytesOf(file)[0] = 'm';
    const int descriptors = openDescriptors();
    EXPECT_EQ(inChild([&] {
                  if (openDescriptors() != descriptors - 2)
                      return 1;
                  if (bytesOf(file)[0] != 'm')
                      return 2;
                  if (!file.lock(true) || !file.unlock())
                      return 3;
                  QelMemoryMappedFile larger;
                  return larger.remap(2 * page, nullptr, &file) ? 0 : 4;
              }),
              0);
    EXPECT_EQ(file.lock(true), 0);
    EXPECT_EQ(file.unlock(), 0);
}

TEST(QelMemoryMappedFileTest, MutexHeldByAnotherThreadIsFreeInForkedChild) {
    const TempFile name;
    MappedFile file(name);
    const Signal locked;
    const Signal release;
    std::thread holder([&] {
        ASSERT_EQ(file.lock(false), 0);
        locked.notify();
        release.wait();
        EXPECT_EQ(file.unlock(), 0);
    });
    locked.wait();
    {
        const Signal mapped;
        ChildProcess child([&] {
            QelMemoryMappedFile own;
            if (own.map(name.path(), page, options, nullptr))
                return 1;
            if (!own.lock(true))
                return 2; // the parent still holds the file lock
            mapped.notify();
            return own.lock(false) ? 3 : own.unlock();
        });
        mapped.wait();
        release.notify();
        EXPECT_EQ(child.wait(), 0);
    }
    holder.join();
}

TEST(QelMemoryMappedFileTest, LockOfDeadProcessIsReleasedWhileItsForkedChildLives) {
    const TempFile name;
    const Signal ready;
    const Signal never;
    pid_t grandchild = 0;
    int channel[2];
    ASSERT_EQ(pipe(channel), 0);
    ChildProcess parent([&] {
        QelMemoryMappedFile file;
        if (file.map(name.path(), page, options, nullptr) || file.lock(false))
            return 1;
        const pid_t child = fork();
        if (child == 0) {
            ready.notify();
            never.wait();
            _exit(0);
        }
        if (::write(channel[1], &child, sizeof child) != sizeof child)
            return 2;
        never.wait();
        return 0;
    });
    ASSERT_EQ(::read(channel[0], &grandchild, sizeof grandchild), static_cast<ssize_t>(sizeof grandchild));
    ready.wait();
    MappedFile file(name);
    EXPECT_NE(file.lock(true), 0);
    parent.kill();
    EXPECT_EQ(parent.wait(), -1);
    EXPECT_EQ(file.lock(true), 0);
    EXPECT_EQ(file.unlock(), 0);
    EXPECT_EQ(kill(grandchild, 0), 0) << "the grandchild is still alive";
    kill(grandchild, SIGKILL);
    close(channel[0]);
    close(channel[1]);
}

TEST(QelMemoryMappedFileTest, WaitingForLockIsRestartedAfterSignals) {
    const TempFile name;
    const Signal waiting;
    const Signal interrupted;
    static const Signal* handled;
    handled = &interrupted;
    MappedFile file(name);
    ASSERT_EQ(file.lock(false), 0);
    ChildProcess child([&] {
        struct sigaction action {};
        action.sa_handler = [](int) { handled->notify(); };
        sigaction(SIGUSR1, &action, nullptr); // without SA_RESTART
        QelMemoryMappedFile own;
        if (own.map(name.path(), page, options, nullptr))
            return 1;
        // A signal interrupts the wait for certain only if it arrives during the wait, so a second thread sends signals
        // until the lock is acquired.
        std::atomic<bool> done{false};
        const pthread_t waiter = pthread_self();
        std::thread sender([&] {
            int sent = 0;
            while (!done) {
                pthread_kill(waiter, SIGUSR1);
                interrupted.wait();
                if (++sent == 20)
                    waiting.notify();
            }
        });
        const int result = own.lock(false);
        done = true;
        sender.join();
        return result ? 2 : own.unlock();
    });
    waiting.wait();
    ASSERT_EQ(file.unlock(), 0);
    EXPECT_EQ(child.wait(), 0);
}

} // namespace
} // namespace Qel
