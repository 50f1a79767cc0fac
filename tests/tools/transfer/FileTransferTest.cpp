#include "qel/transfer/FileTransfer.h"

#include <csignal>
#include <filesystem>
#include <fstream>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Files/QelFileInfo.h"
#include "qel/cli/SignalGuard.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace {

using namespace Qel;
using namespace Qel::Tool;
using End = TransferResult::End;
using Start = FileDestination::Start;
using testing::ElementsAre;

constexpr long long block = QelFileInfo::maxBlockSize;

bool always(long long) {
    return true;
}

TransferPath anywhere(const std::string& path) {
    return {.given = path, .name = path, .directory = {}, .beneath = {}};
}

/// Copies from "a" to "b" in a temporary directory.
class FileTransferTest : public testing::Test {
protected:
    TransferResult copy(const std::function<bool(long long)>& watch = always) {
        EXPECT_EQ(source.open(), ExitCode::success) << getErrorMessage();
        EXPECT_EQ(destination.open(source), ExitCode::success) << getErrorMessage();
        return transfer(source, destination, watch);
    }
    [[nodiscard]] std::string failureToWrite(const std::string& reason) const {
        return "Cannot write to file \"" + folder.path("b") + "\": " + reason;
    }

    TestSupport::TempFolder folder;
    FileSource source{anywhere(folder.path("a"))};
    FileDestination destination{anywhere(folder.path("b")), Start::newFile};

private:
    NotesInterruption m_notes;
};

TEST_F(FileTransferTest, CopiesWholeContent) {
    const std::string content = std::string(2 * block, 'x') + "end";
    folder.write("a", content);
    const TransferResult result = copy();
    EXPECT_EQ(result.end, End::complete);
    EXPECT_EQ(result.moved, 2 * block + 3);
    EXPECT_EQ(folder.read("b"), content);
}

TEST_F(FileTransferTest, CallsWatcherBeforeFirstPieceAndAfterEach) {
    folder.write("a", std::string(2 * block + 3, 'x'));
    std::vector<long long> calls;
    const TransferResult result = copy([&](long long moved) {
        calls.push_back(moved);
        return true;
    });
    EXPECT_EQ(result.end, End::complete);
    EXPECT_THAT(calls, ElementsAre(0, block, 2 * block, 2 * block + 3));
}

TEST_F(FileTransferTest, CopiesEmptyFile) {
    folder.write("a", "");
    const TransferResult result = copy();
    EXPECT_EQ(result.end, End::complete);
    EXPECT_EQ(result.moved, 0);
    EXPECT_TRUE(std::filesystem::exists(folder.path("b")));
}

TEST_F(FileTransferTest, WatcherCanStopTheTransfer) {
    folder.write("a", std::string(2 * block, 'x'));
    const TransferResult result = copy([](long long moved) { return moved == 0; });
    EXPECT_EQ(result.end, End::stopped);
    EXPECT_EQ(result.moved, block);
    EXPECT_EQ(folder.read("b").size(), static_cast<std::size_t>(block));
}

TEST_F(FileTransferTest, FailsAtTheEndOfTruncatedSource) {
    folder.write("a", std::string(2 * block, 'x'));
    const TransferResult result = copy([&](long long moved) {
        if (moved == block)
            folder.write("a", std::string(block + 1, 'x'));
        return true;
    });
    EXPECT_EQ(result.end, End::sourceFailed);
    EXPECT_EQ(result.moved, block + 1);
    EXPECT_EQ(getErrorMessage(), "'" + folder.path("a") + "' was truncated while it was being read");
}

TEST_F(FileTransferTest, CopiesGrowingSourceToItsNewEnd) {
    folder.write("a", "old");
    const TransferResult result = copy([&](long long moved) {
        if (moved == 3)
            folder.write("a", "old and new");
        return true;
    });
    EXPECT_EQ(result.end, End::complete);
    EXPECT_EQ(folder.read("b"), "old and new");
}

TEST_F(FileTransferTest, ClosesDestinationAfterTransfer) {
    folder.write("a", "x");
    int descriptor = -1;
    (void)copy([&](long long) {
        descriptor = destination.descriptor();
        return true;
    });
    EXPECT_EQ(destination.descriptor(), -1);
    EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
}

TEST_F(FileTransferTest, ClosesDestinationAfterFailure) {
    folder.write("a", "x");
    (void)copy([](long long) { return false; });
    EXPECT_EQ(destination.descriptor(), -1);
}

TEST_F(FileTransferTest, FailureToCloseFailsTheTransfer) {
    folder.write("a", "x");
    const TransferResult result = copy([&](long long moved) {
        if (moved == 1)
            close(destination.descriptor());
        return true;
    });
    EXPECT_EQ(result.end, End::destinationFailed);
    EXPECT_EQ(getErrorMessage(), failureToWrite("Bad file descriptor [9]"));
}

TEST_F(FileTransferTest, ShortWriteReportsItsReasonAndCountsItsBytes) {
    folder.write("a", "hello");
    EXPECT_EQ(TestSupport::inChild([this] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{2, 2};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  const TransferResult result = copy();
                  if (result.end != End::destinationFailed || result.moved != 2)
                      return 1;
                  return getErrorMessage() == failureToWrite("File too large [27]") ? 0 : 2;
              }),
              0);
    EXPECT_EQ(folder.read("b"), "he");
}

TEST_F(FileTransferTest, ReportsKeptContentOfOverwrittenFile) {
    for (const auto& [start, kept] :
         {std::pair{Start::beginning, 8}, {Start::truncated, 0}, {Start::end, 0}, {Start::newFile, 0}}) {
        folder.write("a", "new");
        if (start == Start::newFile)
            std::filesystem::remove(folder.path("b"));
        else
            folder.write("b", "old content");
        FileSource from(anywhere(folder.path("a")));
        FileDestination to(anywhere(folder.path("b")), start);
        ASSERT_EQ(from.open(), ExitCode::success);
        ASSERT_EQ(to.open(from), ExitCode::success);
        EXPECT_EQ(transfer(from, to, always).end, End::complete);
        EXPECT_EQ(to.kept(), kept);
    }
}

/// Copies of a sparse file.
class SparseTransferTest : public FileTransferTest {
protected:
    static constexpr long long mebi = 1 << 20U;
    static constexpr long long size = 8 * mebi + 1;

    void SetUp() override {
        const QelFile file(::open(folder.path("a").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        ASSERT_EQ(ftruncate64(file.descriptor(), size), 0);
        ASSERT_EQ(pwrite64(file.descriptor(), "one", 3, 2 * mebi), 3);
        ASSERT_EQ(pwrite64(file.descriptor(), "two", 3, 5 * mebi + 7), 3);
        if (allocated("a") > mebi)
            GTEST_SKIP() << "no holes in this file system";
    }

    /// Number of bytes allocated for a file.
    [[nodiscard]] long long allocated(const std::string& name) const {
        struct stat64 status {};
        EXPECT_EQ(stat64(folder.path(name).c_str(), &status), 0);
        return status.st_blocks * 512LL;
    }
    void copyTo(Start start) {
        FileDestination to(anywhere(folder.path("b")), start);
        EXPECT_EQ(source.open(), ExitCode::success) << getErrorMessage();
        EXPECT_EQ(to.open(source), ExitCode::success) << getErrorMessage();
        const TransferResult result = transfer(source, to, always);
        EXPECT_EQ(result.end, End::complete) << getErrorMessage();
        EXPECT_EQ(result.moved, size);
    }
    [[nodiscard]] std::string copied(Start start) {
        copyTo(start);
        return folder.read("b");
    }
    [[nodiscard]] std::string content() const { return folder.read("a"); }
};

TEST_F(SparseTransferTest, PreservesHoles) {
    EXPECT_TRUE(copied(Start::newFile) == content());
    EXPECT_LE(allocated("b"), allocated("a"));
}

TEST_F(SparseTransferTest, CopiesFileThatConsistsOfOneHole) {
    ASSERT_EQ(truncate64(folder.path("a").c_str(), 0), 0);
    ASSERT_EQ(truncate64(folder.path("a").c_str(), size), 0);
    EXPECT_TRUE(copied(Start::newFile) == content());
    EXPECT_EQ(allocated("b"), 0);
}

TEST_F(SparseTransferTest, HolesReplaceOldContent) {
    folder.write("b", std::string(4 * mebi, 'x'));
    EXPECT_TRUE(copied(Start::beginning) == content());
    EXPECT_LE(allocated("b"), mebi);
}

TEST_F(SparseTransferTest, KeepsOldContentAfterTheCopiedBytes) {
    const std::string tail = "and more";
    folder.write("b", std::string(size, 'x') + tail);
    EXPECT_TRUE(copied(Start::beginning) == content() + tail);
}

TEST_F(SparseTransferTest, WritesHolesToTruncatedFile) {
    folder.write("b", std::string(4 * mebi, 'x'));
    EXPECT_TRUE(copied(Start::truncated) == content());
    EXPECT_LE(allocated("b"), allocated("a"));
}

TEST_F(SparseTransferTest, AppendsHolesAsZeros) {
    folder.write("b", "old");
    EXPECT_TRUE(copied(Start::end) == "old" + content());
}

TEST_F(SparseTransferTest, WritesHolesToPipeAsZeros) {
    ASSERT_EQ(mkfifo(folder.path("b").c_str(), 0600), 0);
    TestSupport::ChildProcess reader([this] {
        std::ofstream(folder.path("c"), std::ios::binary) << std::ifstream(folder.path("b"), std::ios::binary).rdbuf();
        return 0;
    });
    copyTo(Start::beginning);
    reader.wait();
    EXPECT_TRUE(folder.read("c") == content());
}

TEST_F(SparseTransferTest, HoleBeyondFileSizeLimitIsNotCounted) {
    EXPECT_EQ(TestSupport::inChild([this] {
                  std::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{mebi, mebi};
                  setrlimit(RLIMIT_FSIZE, &limit);
                  const TransferResult result = copy();
                  return result.end == End::destinationFailed && result.moved == 0 ? 0 : 1;
              }),
              0);
}

} // namespace
