#include "QelFunctionalityCore/Files/QelFileUploadInfo.h"

#include <cerrno>
#include <filesystem>

#include <gtest/gtest.h>
#include <unistd.h>

#include "FilesTestSupport.h"
#include "QelCommon/ErrorMessage.h"
#include "support/TempFolder.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

constexpr auto unknown = QelFileInfo::unknownSize;
constexpr int block = QelFileInfo::maxBlockSize;

TEST(QelFileUploadInfoTest, PathIsNameAtReceivingEnd) {
    QelFileUploadInfo info("/here", "/there", 0, 0, nullptr);
    EXPECT_EQ(info.path, "/there");
    EXPECT_EQ(info.getSrc(), "/here");
    EXPECT_EQ(info.getDst(), "/there");
    info.setSrc("/elsewhere");
    EXPECT_EQ(info.getSrc(), "/elsewhere");
    EXPECT_EQ(QelFileUploadInfo("/there", 0, 0, nullptr).getSrc(), "");
}

TEST(QelFileUploadInfoTest, CopiesSizeBytesOfData) {
    QelFileUploadInfo info("/there", 3, 7, "a\0cdef");
    EXPECT_EQ(info.data, std::string("a\0c", 3));
    EXPECT_EQ(info.size, 3);
    EXPECT_EQ(info.offset, 7);
}

TEST(QelFileUploadInfoTest, UnknownSizeMeansCString) {
    QelFileUploadInfo info("/here", "/there", unknown, 0, "abc\0def");
    EXPECT_EQ(info.data, "abc");
    EXPECT_EQ(info.size, 3);
}

TEST(QelFileUploadInfoTest, SizeIsKeptWithoutData) {
    EXPECT_EQ(QelFileUploadInfo("/there", 5, 0, nullptr).size, 5);
    EXPECT_EQ(QelFileUploadInfo("/there", unknown, 0, nullptr).size, -1);
}

TEST(QelFileUploadInfoTest, AllDataIsOneBlock) {
    QelFileUploadInfo info("/there", unknown, 0, "hello");
    EXPECT_EQ(info.start(), 0);
    const char* buffer = nullptr;
    int length = 1;
    ASSERT_EQ(info.fillBuffer(buffer, length), 0);
    EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(length)), "hello");
}

TEST(QelFileUploadInfoTest, SizeMismatchFails) {
    const char* buffer = nullptr;
    int length = 1;
    for (const long long size : {4LL, 6LL, -1LL, 0x80000000LL}) {
        QelFileUploadInfo info("/there", unknown, 0, "hello");
        info.size = size;
        EXPECT_EQ(info.fillBuffer(buffer, length), -1) << size;
        EXPECT_EQ(buffer, nullptr);
        EXPECT_EQ(length, 1);
    }
}

TEST(QelFileUploadInfoTest, NegativeSizeCopiesNoData) {
    EXPECT_EQ(QelFileUploadInfo("/there", -2, 0, "hello").data, "");
}

TEST(QelFileUploadInfoTest, IsSentAsFileInfo) {
    const TestTree tree;
    writeTo(tree, QelFileUploadInfo("/here", "/there", unknown, 7, "hello"));
    const auto read = readFrom<QelFileInfo>(tree);
    EXPECT_EQ(read.path, "/there");
    EXPECT_EQ(read.data, "hello");
    EXPECT_EQ(read.offset, 7);
    QelFileUploadInfo upload("/other", 0, 0, nullptr);
    EXPECT_EQ(tree->getObj(upload, 0), 0);
    EXPECT_EQ(upload.size, 5);
}

class QelFileUploadFromFileTest : public testing::Test {
protected:
    /// The next block, or the error message.
    static std::string nextBlock(QelFileUploadFromFile& upload, int length) {
        const char* buffer = nullptr;
        if (upload.fillBuffer(buffer, length) != 0)
            return "failed: " + getErrorMessage();
        return {buffer, static_cast<std::size_t>(length)};
    }
    /// Expects that the upload has closed its file: a file left open would be read instead of the one that has its name
    /// now.
    void expectReadsReplacement(QelFileUploadFromFile& upload) const {
        folder.write("new", "other");
        std::filesystem::rename(folder.path("new"), source());
        ASSERT_EQ(upload.start(), 0);
        EXPECT_EQ(nextBlock(upload, 5), "other");
    }
    [[nodiscard]] std::string source() const { return folder.path("a"); }

    TempFolder folder;
};

TEST_F(QelFileUploadFromFileTest, ConstructorReadsUnknownSize) {
    folder.write("a", "hello");
    EXPECT_EQ(QelFileUploadFromFile(source(), "/there", unknown, 0).size, 5);
    EXPECT_EQ(QelFileUploadFromFile(source(), "/there", unknown, 2).size, 3);
    EXPECT_EQ(QelFileUploadFromFile(source(), "/there", 4, 2).size, 4) << "a known size is kept";
    EXPECT_EQ(QelFileUploadFromFile(folder.path("none"), "/there", unknown, 0).size, unknown);
}

TEST_F(QelFileUploadFromFileTest, FileIsReadBlockByBlock) {
    const std::string content = std::string(block, 'x') + std::string(block, 'y') + "end";
    QelFileUploadFromFile upload(folder.write("a", content), "/there", unknown, 0);
    ASSERT_EQ(upload.start(), 0);
    std::string got;
    while (got.size() < content.size())
        got += nextBlock(upload, block);
    EXPECT_EQ(got, content);
    upload.finish();
}

TEST_F(QelFileUploadFromFileTest, ReadingStartsAtOffset) {
    QelFileUploadFromFile upload(folder.write("a", "hello"), "/there", unknown, 1);
    ASSERT_EQ(upload.start(), 0);
    EXPECT_EQ(nextBlock(upload, 3), "ell");
    EXPECT_EQ(nextBlock(upload, 3), "o");
}

TEST_F(QelFileUploadFromFileTest, ReturnsAtMostOneBlock) {
    QelFileUploadFromFile upload(folder.write("a", std::string(block + 1, 'x')), "/there", unknown, 0);
    ASSERT_EQ(upload.start(), 0);
    EXPECT_EQ(nextBlock(upload, block + 1).size(), static_cast<std::size_t>(block));
    EXPECT_EQ(nextBlock(upload, block), "x");
}

TEST_F(QelFileUploadFromFileTest, ReadsAtMostRequestedLength) {
    QelFileUploadFromFile upload(folder.write("a", "hello"), "/there", 2, 0);
    ASSERT_EQ(upload.start(), 0);
    EXPECT_EQ(nextBlock(upload, 1000), "he");
}

TEST_F(QelFileUploadFromFileTest, StartFailsForMissingFile) {
    QelFileUploadFromFile upload(folder.path("none"), "/there", unknown, 0);
    EXPECT_EQ(upload.start(), -1);
    EXPECT_EQ(getErrorMessage(), "Cannot open src file \"" + folder.path("none") + "\": No such file or directory [2]");
}

TEST_F(QelFileUploadFromFileTest, StartFailsIfFileShrank) {
    QelFileUploadFromFile upload(folder.write("a", "hello"), "/there", unknown, 0);
    folder.write("a", "hell");
    EXPECT_EQ(upload.start(), -1);
    EXPECT_EQ(getErrorMessage(), "Src file size was changed \"" + source() + "\"");
    folder.write("a", "hello again");
    EXPECT_EQ(upload.start(), 0) << "it was closed and can be started again";
}

TEST_F(QelFileUploadFromFileTest, ReadingSizeLeavesNoFileOpen) {
    QelFileUploadFromFile upload(folder.write("a", "hello"), "/there", unknown, 0);
    expectReadsReplacement(upload);
}

TEST_F(QelFileUploadFromFileTest, ShrunkFileIsNotLeftOpen) {
    QelFileUploadFromFile upload(folder.write("a", "hello"), "/there", unknown, 0);
    folder.write("a", "hell");
    EXPECT_EQ(upload.start(), -1);
    expectReadsReplacement(upload);
}

TEST_F(QelFileUploadFromFileTest, GrownFileIsReadUpToOriginalSize) {
    QelFileUploadFromFile upload(folder.write("a", "hello"), "/there", unknown, 0);
    folder.write("a", "hello again");
    ASSERT_EQ(upload.start(), 0);
    EXPECT_EQ(nextBlock(upload, 5), "hello");
}

TEST_F(QelFileUploadFromFileTest, EmptyFileStartsButHasNoBlock) {
    QelFileUploadFromFile upload(folder.write("a", ""), "/there", unknown, 0);
    EXPECT_EQ(upload.size, 0);
    ASSERT_EQ(upload.start(), 0);
    errno = EINVAL;
    EXPECT_EQ(nextBlock(upload, 1), "failed: Cannot read from file \"" + source() + "\": Success [0]");
}

TEST_F(QelFileUploadFromFileTest, EndOfFileFails) {
    QelFileUploadFromFile upload(folder.write("a", "hello"), "/there", unknown, 0);
    ASSERT_EQ(upload.start(), 0);
    ASSERT_EQ(truncate(source().c_str(), 2), 0);
    EXPECT_EQ(nextBlock(upload, 5), "he");
    EXPECT_EQ(nextBlock(upload, 3), "failed: Cannot read from file \"" + source() + "\": Success [0]");
}

TEST_F(QelFileUploadFromFileTest, FolderCanBeOpenedButNotRead) {
    QelFileUploadFromFile upload(folder.path("."), "/there", 1, 0);
    ASSERT_EQ(upload.start(), 0);
    EXPECT_EQ(nextBlock(upload, 1), "failed: Cannot read from file \"" + folder.path(".") + "\": Is a directory [21]");
}

TEST_F(QelFileUploadFromFileTest, NonPositiveLengthsReadNothing) {
    QelFileUploadFromFile upload(folder.write("a", "hello"), "/there", unknown, 0);
    ASSERT_EQ(upload.start(), 0);
    for (int length : {0, -1}) {
        const char* buffer = nullptr;
        EXPECT_EQ(upload.fillBuffer(buffer, length), -1);
        EXPECT_EQ(buffer, nullptr);
    }
    EXPECT_EQ(nextBlock(upload, 5), "hello");
}

TEST_F(QelFileUploadFromFileTest, ReadingFailsBeforeStartAndAfterFinish) {
    QelFileUploadFromFile upload(folder.write("a", "hello"), "/there", unknown, 0);
    const std::string closed = "failed: Cannot read from file \"" + source() + "\": Bad file descriptor [9]";
    EXPECT_EQ(nextBlock(upload, 5), closed);
    ASSERT_EQ(upload.start(), 0);
    upload.finish();
    EXPECT_EQ(nextBlock(upload, 5), closed);
    ASSERT_EQ(upload.start(), 0);
    EXPECT_EQ(nextBlock(upload, 5), "hello");
}

TEST_F(QelFileUploadFromFileTest, DescriptorIsIgnored) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const QelFile reading(ends[0]);
    const QelFile writing(ends[1]);
    QelFileUploadFromFile upload(ends[0], "/there", unknown, 0);
    EXPECT_EQ(upload.getSrc(), "");
    EXPECT_EQ(upload.path, "/there");
    EXPECT_EQ(upload.size, unknown);
    EXPECT_EQ(upload.start(), -1);
    EXPECT_EQ(getErrorMessage(), "Cannot open src file \"\": No such file or directory [2]");
}

TEST_F(QelFileUploadFromFileTest, UploadOfUnknownSizeReadsNothing) {
    QelFileUploadFromFile upload(source(), "/there", unknown, 0);
    folder.write("a", "hello");
    ASSERT_EQ(upload.start(), 0);
    EXPECT_EQ(nextBlock(upload, 5).substr(0, 6), "failed");
}

} // namespace
} // namespace Qel
