#include "qel/FileTransfer.h"

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "support/TempFolder.h"

namespace {

using namespace Qel;
using Qel::Tool::transfer;
using Qel::Tool::TransferResult;
using End = TransferResult::End;
using testing::ElementsAre;

constexpr long long block = QelFileInfo::maxBlockSize;

bool always(long long) {
    return true;
}

/// Ends in memory, and one on disk where a failure is wanted.
class FileTransferTest : public testing::Test {
protected:
    [[nodiscard]] static QelFileDownloadInfo inMemory() { return {"", "", 0, 0, QelFilerOptions(), nullptr}; }

    TestSupport::TempFolder folder;
};

TEST_F(FileTransferTest, OneEndGetsWhatTheOtherGives) {
    QelFileUploadInfo source("", QelFileInfo::unknownSize, 0, "hello");
    QelFileDownloadInfo destination = inMemory();
    const TransferResult result = transfer(source, destination, always);
    EXPECT_EQ(result.end, End::complete);
    EXPECT_EQ(result.moved, 5);
    EXPECT_EQ(destination.data, "hello");
}

TEST_F(FileTransferTest, TheWatcherIsToldBeforeTheFirstBlockAndBehindEach) {
    QelFileUploadFromFile source(folder.write("a", std::string(2 * block + 3, 'x')), "", QelFileInfo::unknownSize, 0);
    QelFileDownloadInfo destination = inMemory();
    std::vector<long long> told;
    const TransferResult result = transfer(source, destination, [&](long long moved) {
        told.push_back(moved);
        return true;
    });
    EXPECT_EQ(result.end, End::complete);
    EXPECT_THAT(told, ElementsAre(0, block, 2 * block, 2 * block + 3));
    EXPECT_EQ(destination.data.size(), static_cast<std::size_t>(2 * block + 3));
}

TEST_F(FileTransferTest, NothingIsMovedInNoBlock) {
    QelFileUploadFromFile source(folder.write("a", ""), "", QelFileInfo::unknownSize, 0);
    QelFileDownloadInfo destination = inMemory();
    const TransferResult result = transfer(source, destination, always);
    EXPECT_EQ(result.end, End::complete);
    EXPECT_EQ(result.moved, 0);
}

TEST_F(FileTransferTest, TheWatcherMayStopIt) {
    QelFileUploadFromFile source(folder.write("a", std::string(2 * block, 'x')), "", QelFileInfo::unknownSize, 0);
    QelFileDownloadInfo destination = inMemory();
    const TransferResult result = transfer(source, destination, [](long long moved) { return moved == 0; });
    EXPECT_EQ(result.end, End::stopped);
    EXPECT_EQ(result.moved, block);
    EXPECT_EQ(destination.data.size(), static_cast<std::size_t>(block));
}

TEST_F(FileTransferTest, ASourceThatShrinksFailsWhereItEnds) {
    const std::string path = folder.write("a", std::string(2 * block, 'x'));
    QelFileUploadFromFile source(path, "", QelFileInfo::unknownSize, 0);
    QelFileDownloadInfo destination = inMemory();
    const TransferResult result = transfer(source, destination, [&](long long moved) {
        if (moved == block)
            folder.write("a", std::string(block + 1, 'x'));
        return true;
    });
    EXPECT_EQ(result.end, End::sourceFailed);
    EXPECT_TRUE(result.isBegun);
    EXPECT_EQ(result.moved, block + 1);
    EXPECT_EQ(getErrorMessage(), "Cannot read from file \"" + path + "\": Success [0]");
}

TEST_F(FileTransferTest, ADestinationIsNotStartedIfTheSourceFailsTo) {
    QelFileUploadFromFile source(folder.path("none"), "", QelFileInfo::unknownSize, 0);
    QelFileDownloadToFile destination("", folder.path("b"), 0, 0, QelFilerOptions(), nullptr);
    const TransferResult result = transfer(source, destination, always);
    EXPECT_EQ(result.end, End::sourceFailed);
    EXPECT_FALSE(result.isBegun);
    EXPECT_FALSE(std::filesystem::exists(folder.path("b")));
}

TEST_F(FileTransferTest, ADestinationThatFailsToStartIsToldAsSuch) {
    QelFileUploadFromFile source(folder.write("a", "x"), "", QelFileInfo::unknownSize, 0);
    QelFileDownloadToFile destination("", folder.write("b", "old"), 0, 0, QelFilerOptions(), nullptr);
    const TransferResult result = transfer(source, destination, always);
    EXPECT_EQ(result.end, End::destinationFailed);
    EXPECT_FALSE(result.isBegun);
}

TEST_F(FileTransferTest, AFullDestinationFailsAtItsBlock) {
    QelFileUploadFromFile source(folder.write("a", "x"), "", QelFileInfo::unknownSize, 0);
    QelFileDownloadToFile destination("", "/dev/full", 0, 0, QelFilerOptions(QelFilerOptions::overwrite), nullptr);
    const TransferResult result = transfer(source, destination, always);
    EXPECT_EQ(result.end, End::destinationFailed);
    EXPECT_TRUE(result.isBegun);
    EXPECT_EQ(result.moved, 0);
}

} // namespace
