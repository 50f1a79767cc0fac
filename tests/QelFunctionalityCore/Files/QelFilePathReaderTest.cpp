#include "QelFunctionalityCore/Files/QelFilePathReader.h"

#include <cstdlib>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelMessageIterator.h"
#include "support/TempFolder.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

class QelFilePathReaderTest : public testing::Test {
protected:
    QelFilePathReaderTest() { setenv("QEL_ROOT", root.path("").c_str(), 1); }
    ~QelFilePathReaderTest() override { unsetenv("QEL_ROOT"); }

    /// The result of reading a path.
    std::string read(const std::string& path) {
        message.cursor().putValueBase64(path, 0);
        std::string result = "before";
        const int code = QelFilePathReader()(message.cursor(), result);
        EXPECT_EQ(code != 0, result == "before") << "a failure leaves the path unchanged";
        return result;
    }
    [[nodiscard]] std::string uploadsOf(const std::string& client) const {
        return root.path("var/lib/qel/clients/" + client + "/uploads");
    }

    TempFolder root;
    TestMessage message;
};

TEST_F(QelFilePathReaderTest, OtherPathsAreUnchanged) {
    for (const std::string path : {"/a/b", "", "a/$SESSION$", "$SESSION", "$session$/a", "../$SESSION$"})
        EXPECT_EQ(read(path), path);
}

TEST_F(QelFilePathReaderTest, PrefixIsReplacedBySessionUploadFolder) {
    message->setSession("anna");
    message->setOrigin("origin");
    EXPECT_EQ(read("$SESSION$/a"), uploadsOf("anna") + "/a");
    EXPECT_EQ(read("$SESSION$"), uploadsOf("anna"));
}

TEST_F(QelFilePathReaderTest, OriginIsClientWithoutSession) {
    message->setOrigin("origin");
    EXPECT_EQ(read("$SESSION$/a"), uploadsOf("origin") + "/a");
}

TEST_F(QelFilePathReaderTest, FolderIsAccessibleOnlyToAgent) {
    message->setSession("anna");
    (void)read("$SESSION$/a");
    struct stat status {};
    ASSERT_EQ(stat(uploadsOf("anna").c_str(), &status), 0);
    EXPECT_TRUE(S_ISDIR(status.st_mode));
    EXPECT_EQ(status.st_mode & 077U, 0U);
}

TEST_F(QelFilePathReaderTest, PrefixIsReplacedTextually) {
    message->setSession("anna");
    EXPECT_EQ(read("$SESSION$/../../x"), uploadsOf("anna") + "/../../x");
    EXPECT_EQ(read("$SESSION$x"), uploadsOf("anna") + "x");
    EXPECT_EQ(read("$SESSION$$SESSION$"), uploadsOf("anna") + "$SESSION$");
}

TEST_F(QelFilePathReaderTest, WithoutClientThereIsNoFolder) {
    EXPECT_EQ(read("$SESSION$/a"), "before");
}

TEST_F(QelFilePathReaderTest, RejectsClientNameThatLeavesFolder) {
    for (const char* const name : {"..", ".", "a/b", "/etc", "../anna"}) {
        message->setSession(name);
        EXPECT_EQ(read("$SESSION$/a"), "before") << name;
        EXPECT_EQ(getErrorMessage(), "invalid client name '" + std::string(name) + "'");
    }
}

TEST_F(QelFilePathReaderTest, UncreatableFolderFails) {
    const std::string inTheWay = root.write("var/lib/qel/clients", "a file");
    message->setSession("anna");
    EXPECT_EQ(read("$SESSION$/a"), "before");
    EXPECT_EQ(getErrorMessage(), "cannot create directory '" + inTheWay + "/anna': Not a directory");
}

TEST_F(QelFilePathReaderTest, FileInPlaceOfFolderFails) {
    root.write("var/lib/qel/clients/anna/uploads", "a file");
    message->setSession("anna");
    EXPECT_EQ(read("$SESSION$/a"), "before");
    EXPECT_EQ(getErrorMessage(), "cannot create directory '" + uploadsOf("anna") + "': Not a directory");
}

TEST_F(QelFilePathReaderTest, InvalidBase64Fails) {
    message.cursor().putValue(std::string("!"), 0);
    std::string path = "before";
    EXPECT_EQ(QelFilePathReader()(message.cursor(), path), -1);
    EXPECT_EQ(path, "before");
}

TEST_F(QelFilePathReaderTest, MissingElementFails) {
    std::string path = "before";
    EXPECT_EQ(message.cursor().getObject(path, QelFilePathReader(), 1156), -1);
    EXPECT_EQ(path, "before");
}

} // namespace
} // namespace Qel
