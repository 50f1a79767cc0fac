#include "QelFunctionalityCore/Files/QelFileDownloadInfo.h"

#include <csignal>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "FilesTestSupport.h"
#include "QelCommon/ErrorMessage.h"
#include "support/ChildProcess.h"
#include "support/TempFolder.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

const QelFilerOptions create;
const QelFilerOptions overwrite(QelFilerOptions::overwrite);

TEST(QelFileDownloadInfoTest, PathIsNameAtSendingEnd) {
    QelSecurityAttributes attributes;
    QelFileDownloadInfo info("/here", "/there", 5, 6, overwrite, &attributes);
    EXPECT_EQ(info.path, "/there");
    EXPECT_EQ(info.getSrc(), "/there");
    EXPECT_EQ(info.getDst(), "/here");
    EXPECT_EQ(info.size, 5);
    EXPECT_EQ(info.offset, 6);
    EXPECT_EQ(info.getOptions().flags, 1U);
    EXPECT_EQ(info.getAttrs(), &attributes);
}

TEST(QelFileDownloadInfoTest, SettersReplaceConstructorArguments) {
    QelFileDownloadInfo info("/here", "/there", 0, 0, overwrite, nullptr);
    const QelSecurityAttributes attributes;
    info.setDst("/elsewhere");
    info.setOptions(QelFilerOptions(4));
    info.setAttrs(&attributes);
    EXPECT_EQ(info.getDst(), "/elsewhere");
    EXPECT_EQ(info.getOptions().flags, 4U);
    EXPECT_EQ(info.getAttrs(), &attributes);
}

TEST(QelFileDownloadInfoTest, BlocksAreAppendedToData) {
    QelFileDownloadInfo info("", "/there", 0, 0, create, nullptr);
    EXPECT_EQ(info.saveBuffer("a\0b", 3), 0);
    EXPECT_EQ(info.saveBuffer("", 0), 0);
    EXPECT_EQ(info.saveBuffer("c", 1), 0);
    EXPECT_EQ(info.data, std::string("a\0bc", 4));
    EXPECT_EQ(info.saveBuffer("c", -1), -1);
}

class QelFileDownloadToFileTest : public testing::Test {
protected:
    [[nodiscard]] std::string destination() const { return folder.path("a"); }

    TempFolder folder;
};

TEST_F(QelFileDownloadToFileTest, BlocksAreWrittenToNewFile) {
    QelFileDownloadToFile download("/there", destination(), 5, 0, create, nullptr);
    EXPECT_EQ(download.path, "/there");
    EXPECT_EQ(download.getDst(), destination());
    ASSERT_EQ(download.start(), 0);
    EXPECT_EQ(download.saveBuffer("hel", 3), 0);
    EXPECT_EQ(download.saveBuffer("lo", 2), 0);
    download.finish();
    EXPECT_EQ(folder.read("a"), "hello");
    EXPECT_EQ(download.data, "");
}

TEST_F(QelFileDownloadToFileTest, FileHasModeOfAttributes) {
    QelSecurityAttributes attributes;
    attributes.mode = 0604;
    QelFileDownloadToFile download("/there", destination(), 5, 0, create, &attributes);
    ASSERT_EQ(download.start(), 0);
    struct stat status {};
    ASSERT_EQ(stat(destination().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0604U);
}

TEST_F(QelFileDownloadToFileTest, StartFailsForExistingFileWithoutOverwrite) {
    folder.write("a", "old");
    QelFileDownloadToFile download("/there", destination(), 5, 0, create, nullptr);
    EXPECT_EQ(download.start(), -1);
    EXPECT_EQ(getErrorMessage(), "Cannot open dst file \"" + destination() + "\": File exists [17]");
    EXPECT_EQ(folder.read("a"), "old");
    download.setOptions(overwrite);
    EXPECT_EQ(download.start(), 0);
}

TEST_F(QelFileDownloadToFileTest, StartFailsForMissingFolder) {
    QelFileDownloadToFile download("/there", folder.path("none/a"), 5, 0, create, nullptr);
    EXPECT_EQ(download.start(), -1);
    EXPECT_EQ(getErrorMessage(),
              "Cannot open dst file \"" + folder.path("none/a") + "\": No such file or directory [2]");
}

TEST_F(QelFileDownloadToFileTest, OffsetMayAppendTruncateOrSeek) {
    const auto copied = [this](long long offset) {
        folder.write("a", "0123456789");
        QelFileDownloadToFile download("/there", destination(), 3, offset, overwrite, nullptr);
        EXPECT_EQ(download.start(), 0);
        EXPECT_EQ(download.saveBuffer("new", 3), 0);
        download.finish();
        return folder.read("a");
    };
    EXPECT_EQ(copied(0), "new3456789");
    EXPECT_EQ(copied(2), "01new56789");
    EXPECT_EQ(copied(QelFile::appendOffset), "0123456789new");
    EXPECT_EQ(copied(QelFile::truncateOffset), "new");
}

TEST_F(QelFileDownloadToFileTest, TakesOwnershipOfDescriptor) {
    folder.write("a", "0123456789");
    const int descriptor = open(destination().c_str(), O_WRONLY);
    {
        QelFileDownloadToFile download("/there", descriptor, 3, 2);
        EXPECT_EQ(download.getDst(), "");
        EXPECT_EQ(download.getOptions().flags, 1U);
        EXPECT_EQ(download.getAttrs(), nullptr);
        ASSERT_EQ(download.start(), 0);
        EXPECT_EQ(download.saveBuffer("new", 3), 0);
    }
    EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
    EXPECT_EQ(folder.read("a"), "01new56789");
}

TEST_F(QelFileDownloadToFileTest, FinishClosesDescriptor) {
    folder.write("a", "");
    const int descriptor = open(destination().c_str(), O_WRONLY);
    QelFileDownloadToFile download("/there", descriptor, 3, 0);
    ASSERT_EQ(download.start(), 0);
    EXPECT_NE(fcntl(descriptor, F_GETFD), -1);
    download.finish();
    EXPECT_EQ(fcntl(descriptor, F_GETFD), -1);
}

TEST_F(QelFileDownloadToFileTest, FullDiskFails) {
    QelFileDownloadToFile download("/there", "/dev/full", 3, 0, overwrite, nullptr);
    ASSERT_EQ(download.start(), 0);
    EXPECT_EQ(download.saveBuffer("new", 3), -1);
    EXPECT_EQ(getErrorMessage(), "Cannot write to file \"/dev/full\": No space left on device [28]");
}

TEST_F(QelFileDownloadToFileTest, ShortWriteFailsAndKeepsWrittenPart) {
    const int result = inChild([this] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{2, 2};
        setrlimit(RLIMIT_FSIZE, &limit);
        QelFileDownloadToFile download("/there", destination(), 5, 0, create, nullptr);
        if (download.start() != 0)
            return 1;
        if (download.saveBuffer("hello", 5) != -1)
            return 2;
        if (getErrorMessage() != "Cannot write to file \"" + destination() + "\": No space left on device [28]")
            return 3;
        // Only a write that stores nothing sets errno.
        if (download.saveBuffer("llo", 3) != -1)
            return 4;
        return getErrorMessage() == "Cannot write to file \"" + destination() + "\": File too large [27]" ? 0 : 5;
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(folder.read("a"), "he");
}

TEST_F(QelFileDownloadToFileTest, WritingFailsBeforeStartAndAfterFinish) {
    QelFileDownloadToFile download("/there", destination(), 5, 0, create, nullptr);
    const std::string closed = "Cannot write to file \"" + destination() + "\": Bad file descriptor [9]";
    EXPECT_EQ(download.saveBuffer("x", 1), -1);
    EXPECT_EQ(getErrorMessage(), closed);
    ASSERT_EQ(download.start(), 0);
    EXPECT_EQ(download.saveBuffer("x", -1), -1);
    download.finish();
    clearErrorMessage();
    EXPECT_EQ(download.saveBuffer("x", 1), -1);
    EXPECT_EQ(getErrorMessage(), closed);
}

} // namespace
} // namespace Qel
