#include "QelFunctionalityCore/Files/QelFile.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <string>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

const QelFilerOptions create;
const QelFilerOptions overwrite(QelFilerOptions::overwrite);

class QelFileTest : public testing::Test {
protected:
    void expectWrites(const QelFile& opened, const std::string& text) const {
        EXPECT_EQ(write(opened.descriptor(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    [[nodiscard]] static unsigned modeOf(const std::string& path) {
        struct stat status {};
        EXPECT_EQ(stat(path.c_str(), &status), 0);
        return status.st_mode & 07777U;
    }

    TempFolder folder;
    QelFile file;
};

TEST_F(QelFileTest, NewObjectIsClosed) {
    EXPECT_FALSE(file.isOpened());
    file.close();
    EXPECT_FALSE(file.isOpened());
}

TEST_F(QelFileTest, DestructorClosesDescriptor) {
    int descriptor = -1;
    {
        QelFile opened;
        ASSERT_EQ(opened.openRead(folder.write("a", "x"), 0, nullptr), 0);
        EXPECT_TRUE(opened.isOpened());
        descriptor = opened.descriptor();
    }
    EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
}

TEST_F(QelFileTest, CloseClosesDescriptor) {
    ASSERT_EQ(file.openRead(folder.write("a", "x"), 0, nullptr), 0);
    const int descriptor = file.descriptor();
    file.close();
    EXPECT_FALSE(file.isOpened());
    EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
}

TEST_F(QelFileTest, CloseReturnsSystemResult) {
    EXPECT_EQ(file.close(), 0) << "nothing to close";
    ASSERT_EQ(file.openRead(folder.write("a", "x"), 0, nullptr), 0);
    EXPECT_EQ(file.close(), 0);
    QelFile noFile(-2);
    EXPECT_EQ(noFile.close(), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_FALSE(noFile.isOpened());
}

TEST_F(QelFileTest, SizeIsThatOfFile) {
    long long size = 0;
    ASSERT_EQ(file.openRead(folder.write("a", "hello"), 0, &size), 0);
    EXPECT_EQ(size, 5);
}

TEST_F(QelFileTest, OffsetIsSoughtAndSubtractedFromSize) {
    long long size = 0;
    ASSERT_EQ(file.openRead(folder.write("a", "hello"), 2, &size), 0);
    EXPECT_EQ(size, 3);
    char next = 0;
    ASSERT_EQ(read(file.descriptor(), &next, 1), 1);
    EXPECT_EQ(next, 'l');
}

TEST_F(QelFileTest, SizeIsNegativeIfFileEndsBeforeOffset) {
    long long size = 0;
    ASSERT_EQ(file.openRead(folder.write("a", "hello"), 8, &size), 0);
    EXPECT_EQ(size, -3);
}

TEST_F(QelFileTest, NegativeOffsetsAreNotSought) {
    long long size = 0;
    ASSERT_EQ(file.openRead(folder.write("a", "hello"), -2, &size), 0);
    EXPECT_EQ(size, 5);
    EXPECT_EQ(lseek(file.descriptor(), 0, SEEK_CUR), 0);
}

TEST_F(QelFileTest, ReturnsSizesAboveFourGigabytes) {
    const std::string path = folder.write("a", "");
    constexpr long long big = (1LL << 32U) + 7;
    ASSERT_EQ(truncate64(path.c_str(), big), 0);
    long long size = 0;
    ASSERT_EQ(file.openRead(path, 1LL << 32U, &size), 0);
    EXPECT_EQ(size, 7);
}

TEST_F(QelFileTest, MissingFileSetsErrno) {
    long long size = 77;
    EXPECT_EQ(file.openRead(folder.path("none"), 0, &size), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(size, 77);
    EXPECT_FALSE(file.isOpened());
}

TEST_F(QelFileTest, FileInMissingFolderIsNotCreated) {
    EXPECT_EQ(file.openWrite(folder.path("none/a"), 0, create, nullptr), -1);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(QelFileTest, FolderCannotBeOpenedForWriting) {
    EXPECT_EQ(file.openWrite(folder.path("."), 0, overwrite, nullptr), -1);
    EXPECT_EQ(errno, EISDIR);
    EXPECT_EQ(file.openWrite(folder.path("."), 0, create, nullptr), -1);
    EXPECT_EQ(errno, EEXIST);
}

TEST_F(QelFileTest, ExistingFileIsUnchangedWithoutOverwrite) {
    for (const long long offset : {0LL, QelFile::appendOffset, QelFile::truncateOffset}) {
        EXPECT_EQ(file.openWrite(folder.write("a", "old"), offset, create, nullptr), -1);
        EXPECT_EQ(errno, EEXIST);
        EXPECT_EQ(folder.read("a"), "old");
    }
}

TEST_F(QelFileTest, MissingFileIsCreatedForAnyOffset) {
    for (const long long offset : {0LL, QelFile::appendOffset, QelFile::truncateOffset}) {
        const std::string name = "new" + std::to_string(offset);
        for (const auto& [options, suffix] : {std::pair{create, "c"}, {overwrite, "o"}}) {
            QelFile opened;
            ASSERT_EQ(opened.openWrite(folder.path(name + suffix), offset, options, nullptr), 0);
            expectWrites(opened, "x");
            EXPECT_EQ(folder.read(name + suffix), "x");
        }
    }
}

TEST_F(QelFileTest, OverwritingKeepsRestOfFile) {
    ASSERT_EQ(file.openWrite(folder.write("a", "old content"), 0, overwrite, nullptr), 0);
    expectWrites(file, "new");
    EXPECT_EQ(folder.read("a"), "new content");
}

TEST_F(QelFileTest, WritingStartsAtOffset) {
    ASSERT_EQ(file.openWrite(folder.write("a", "old content"), 4, overwrite, nullptr), 0);
    expectWrites(file, "CON");
    EXPECT_EQ(folder.read("a"), "old CONtent");
}

TEST_F(QelFileTest, AppendWritesToCurrentEnd) {
    ASSERT_EQ(file.openWrite(folder.write("a", "one "), QelFile::appendOffset, overwrite, nullptr), 0);
    folder.write("a", "one and a half ");
    expectWrites(file, "two");
    EXPECT_EQ(folder.read("a"), "one and a half two");
}

TEST_F(QelFileTest, TruncateDropsContent) {
    ASSERT_EQ(file.openWrite(folder.write("a", "old content"), QelFile::truncateOffset, overwrite, nullptr), 0);
    expectWrites(file, "new");
    EXPECT_EQ(folder.read("a"), "new");
}

TEST_F(QelFileTest, OtherNegativeOffsetsNeitherAppendNorTruncate) {
    for (const long long offset : {-3LL, -4LL, -(1LL << 40U)}) {
        QelFile opened;
        ASSERT_EQ(opened.openWrite(folder.write("a", "old content"), offset, overwrite, nullptr), 0);
        expectWrites(opened, "new");
        EXPECT_EQ(folder.read("a"), "new content") << offset;
    }
}

TEST_F(QelFileTest, NewFileHasRequestedModeRegardlessOfUmask) {
    const mode_t before = umask(077);
    QelFile plain;
    QelFile special;
    QelSecurityAttributes attributes;
    attributes.mode = 0666;
    EXPECT_EQ(plain.openWrite(folder.path("plain"), 0, create, nullptr), 0);
    EXPECT_EQ(special.openWrite(folder.path("special"), 0, create, &attributes), 0);
    EXPECT_EQ(umask(before), 077U) << "the umask is restored";
    EXPECT_EQ(modeOf(folder.path("plain")), 0777U);
    EXPECT_EQ(modeOf(folder.path("special")), 0666U);
}

TEST_F(QelFileTest, UmaskIsRestoredAfterFailure) {
    const mode_t before = umask(027);
    EXPECT_EQ(file.openRead(folder.path("none"), 0, nullptr), -1);
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(umask(before), 027U);
}

TEST_F(QelFileTest, OpenDescriptorIsUsedInsteadOfPath) {
    folder.write("a", "hello");
    QelFile taken(open(folder.path("a").c_str(), O_RDWR));
    long long size = 0;
    ASSERT_EQ(taken.openRead(folder.path("none"), 1, &size), 0);
    EXPECT_EQ(size, 4);
    ASSERT_EQ(taken.openWrite(folder.path("none"), 4, create, nullptr), 0);
    expectWrites(taken, "!");
    EXPECT_EQ(folder.read("a"), "hell!");
}

TEST_F(QelFileTest, FailedSeekClosesFileAndSetsErrno) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const QelFile other(ends[1]);
    QelFile end(ends[0]);
    EXPECT_EQ(end.openRead("", 5, nullptr), -1);
    EXPECT_EQ(errno, ESPIPE);
    EXPECT_FALSE(end.isOpened());
    EXPECT_EQ(fcntl(ends[0], F_GETFD), -1);
}

TEST_F(QelFileTest, FailedSizeQueryClosesFileAndSetsErrno) {
    QelFile noFile(-2);
    long long size = 77;
    EXPECT_EQ(noFile.openRead("", 0, &size), -1);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(size, 77);
    EXPECT_FALSE(noFile.isOpened());
}

TEST_F(QelFileTest, UnreadableFileFails) {
    const std::string path = folder.write("secret", "x");
    ASSERT_EQ(chmod(folder.path("").c_str(), 0755), 0);
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    constexpr uid_t nobody = 65534;
    EXPECT_EQ(inChild([&] {
                  if (geteuid() == 0 && seteuid(nobody) != 0)
                      return -1;
                  return file.openRead(path, 0, nullptr) == -1 ? errno : 0;
              }),
              EACCES);
}

std::atomic<int> interruptions;

/// Whether a thread of this process is blocked.
bool isAsleep(pid_t thread) {
    std::string id;
    std::string name;
    char state = ' ';
    std::ifstream("/proc/self/task/" + std::to_string(thread) + "/stat") >> id >> name >> state;
    return state == 'S';
}

TEST_F(QelFileTest, InterruptedOpenIsRetried) {
    const std::string fifo = folder.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    struct sigaction count {};
    struct sigaction before {};
    count.sa_handler = [](int) { ++interruptions; };
    ASSERT_EQ(sigaction(SIGUSR1, &count, &before), 0);

    // The open blocks until a writer opens the other end; signals interrupt it several times before that.
    std::atomic<bool> hasEnded = false;
    const pthread_t opener = pthread_self();
    const pid_t openerID = gettid();
    std::thread writer([&] {
        for (interruptions = 0; interruptions < 5 && !hasEnded; std::this_thread::yield())
            if (isAsleep(openerID))
                pthread_kill(opener, SIGUSR1);
        // Fails until the other end is open.
        int end = -1;
        while (end == -1 && !hasEnded)
            end = open(fifo.c_str(), O_WRONLY | O_NONBLOCK);
        while (!hasEnded)
            std::this_thread::yield();
        close(end);
    });
    const int result = file.openRead(fifo, 0, nullptr);
    const int error = errno;
    hasEnded = true;
    writer.join();
    sigaction(SIGUSR1, &before, nullptr);
    EXPECT_EQ(result, 0) << error;
    EXPECT_GE(interruptions, 5);
}

} // namespace
} // namespace Qel
