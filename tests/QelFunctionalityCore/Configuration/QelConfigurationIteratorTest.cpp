#include "QelFunctionalityCore/Configuration/QelConfigurationIterator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

using TestSupport::textOf;

QelMessage* parsed(const std::string& elements) {
    QelMessage* const message = QelMessage::getFactory()->createNew();
    EXPECT_EQ(message->fromTextEx(("<message>" + elements + "</message>").c_str(), 0), 0);
    return message;
}

std::string textOf(const QelConfigurationIterator& at) {
    const std::string whole = TestSupport::textOf(*at.getMessage());
    std::string text;
    for (const char c : whole.substr(whole.find("<data")))
        if (c != '\n' && c != ' ')
            text += c;
    return text.substr(0, text.find("</message>"));
}

constexpr const char* sample = "<data><system><configuration>"
                               "<log_level>4</log_level><paths><etc>/etc</etc></paths>"
                               "</configuration></system><bare/></data>";

class QelConfigurationIteratorTest : public ::testing::Test {
protected:
    /// What a relative path reads at the current position: shows where the iterator is.
    std::string read(const std::string& path) {
        std::string value = "(none)";
        at.getValue(value, path);
        return value;
    }

    QelConfigurationIterator at{parsed(sample)};
    QelConfigurationIterator empty{parsed("<data/>")};
};

TEST_F(QelConfigurationIteratorTest, StartsAtDataElement) {
    EXPECT_EQ(read("system/log_level"), "4");
    EXPECT_EQ(at.seekUp(), -1);
}

TEST_F(QelConfigurationIteratorTest, PathStartsAtDataElementOrCurrentPosition) {
    EXPECT_EQ(read("/system/log_level"), "4");
    ASSERT_EQ(at.seek("/system"), 0);
    EXPECT_EQ(read("log_level"), "4");
    EXPECT_EQ(read("paths/etc"), "/etc");
    EXPECT_EQ(read("/system/paths/etc"), "/etc");
    ASSERT_EQ(at.seek("paths"), 0);
    EXPECT_EQ(read("etc"), "/etc");
}

TEST_F(QelConfigurationIteratorTest, SlashIsDataElement) {
    ASSERT_EQ(at.seek("/system/paths"), 0);
    EXPECT_EQ(at.seek("/"), 0);
    EXPECT_EQ(at.seekUp(), -1);
    EXPECT_EQ(read("system/log_level"), "4");
}

TEST_F(QelConfigurationIteratorTest, PathMayContainElementIds) {
    QelConfigurationIterator byID(parsed("<e1307><agent><e1021><id>x</id></e1021></agent></e1307>"));
    std::string value;
    EXPECT_EQ(byID.getValue(value, "/e1044/e1010"), 0);
    EXPECT_EQ(value, "x");
}

TEST_F(QelConfigurationIteratorTest, ReadsIntegersOnly) {
    int number = 9;
    EXPECT_EQ(at.getValue(number, "/system/paths/etc"), -1);
    EXPECT_EQ(number, 9);
    EXPECT_EQ(at.getValue(number, "/system/log_level"), 0);
    EXPECT_EQ(number, 4);
}

TEST_F(QelConfigurationIteratorTest, MissingPathLeavesOutputAndPositionUnchanged) {
    const std::string before = textOf(at);
    ASSERT_EQ(at.seek("/system"), 0);
    for (const char* path :
         {"/none", "/system/none", "/none/at/all", "none", "paths/none", "log_level/x", "/bare/x", ""}) {
        std::string text = "old";
        int number = 7;
        EXPECT_EQ(at.getValue(text, path), -1) << path;
        EXPECT_EQ(at.getValueBase64(text, path), -1) << path;
        EXPECT_EQ(at.getValue(number, path), -1) << path;
        EXPECT_EQ(at.seek(path), -1) << path;
        EXPECT_EQ(text, "old");
        EXPECT_EQ(number, 7);
        EXPECT_EQ(read("log_level"), "4") << path;
    }
    EXPECT_EQ(textOf(at), before);
}

TEST_F(QelConfigurationIteratorTest, TrailingSlashIsFollowedByEmptyName) {
    EXPECT_EQ(at.seek("/system/"), -1);
    EXPECT_EQ(at.seek("/system/paths/"), -1);
    EXPECT_EQ(at.seek("//"), -1);
}

TEST_F(QelConfigurationIteratorTest, PutCreatesPathAndRestoresPosition) {
    EXPECT_EQ(empty.putValue(7, "/system/a/b"), 0);
    EXPECT_EQ(textOf(empty), "<data><system><configuration><a><b>7</b></a></configuration></system></data>");
    EXPECT_EQ(empty.seekUp(), -1);
    int value = 0;
    EXPECT_EQ(empty.getValue(value, "system/a/b"), 0);
    EXPECT_EQ(value, 7);
}

TEST_F(QelConfigurationIteratorTest, PutUsesExistingElements) {
    ASSERT_EQ(at.seek("/system"), 0);
    EXPECT_EQ(at.putValue(std::string("2"), "log_level"), 0);
    EXPECT_EQ(at.putValueBase64(std::string("\0x", 2), "key"), 0);
    EXPECT_EQ(read("log_level"), "2");
    EXPECT_EQ(textOf(at), "<data><system><configuration><log_level>2</log_level><paths><etc>/etc</etc></paths>"
                          "<key>AHg=</key></configuration></system><bare/></data>");
    std::string key;
    EXPECT_EQ(at.getValueBase64(key, "key"), 0);
    EXPECT_EQ(key, std::string("\0x", 2));
}

TEST_F(QelConfigurationIteratorTest, FirstOptionOfSectionCreatesConfigurationElement) {
    EXPECT_EQ(at.putValue(1, "/bare/option"), 0);
    EXPECT_EQ(read("/bare/option"), "1");
    EXPECT_NE(textOf(at).find("<bare><configuration><option>1</option></configuration></bare>"), std::string::npos);
}

TEST_F(QelConfigurationIteratorTest, EmptyNameIsCreatedLikeAnyOther) {
    EXPECT_EQ(at.putValue(5, "/system/new/"), 0);
    EXPECT_EQ(at.seek("/system/new"), 0);
    EXPECT_EQ(read(""), "5");
    ASSERT_EQ(at.seek("/system"), 0);
    EXPECT_EQ(at.putValue(6, ""), 0);
    EXPECT_EQ(read(""), "6");
    EXPECT_EQ(read("log_level"), "4");
}

TEST_F(QelConfigurationIteratorTest, UpFromOptionIsSection) {
    ASSERT_EQ(at.seek("/system/paths"), 0);
    EXPECT_EQ(at.seekUp(), 0);
    EXPECT_EQ(read("log_level"), "4");
    EXPECT_EQ(at.seekUp(), 0);
    EXPECT_EQ(read("system/log_level"), "4");
    EXPECT_EQ(at.seekUp(), -1);
    EXPECT_EQ(read("system/log_level"), "4");
}

TEST_F(QelConfigurationIteratorTest, UpInsideOptionIsParentElement) {
    ASSERT_EQ(at.seek("/system/paths/etc"), 0);
    EXPECT_EQ(at.seekUp(), 0);
    EXPECT_EQ(read("etc"), "/etc");
}

TEST_F(QelConfigurationIteratorTest, ChildrenAreOneLevelDown) {
    ASSERT_EQ(at.firstChild(), 0);
    EXPECT_EQ(read("log_level"), "4");
    ASSERT_EQ(at.firstChild("paths"), 0);
    EXPECT_EQ(read("etc"), "/etc");
    ASSERT_EQ(at.firstChild(), 0);
    EXPECT_EQ(at.seekUp(), 0);
    EXPECT_EQ(at.seekUp(), 0);
    EXPECT_EQ(read("log_level"), "4");
}

TEST_F(QelConfigurationIteratorTest, NewChildIsAppendedEvenIfNameExists) {
    ASSERT_EQ(at.seek("/system"), 0);
    ASSERT_EQ(at.newChild("log_level"), 0);
    EXPECT_EQ(at.seekUp(), 0);
    EXPECT_EQ(read("log_level"), "4");
    EXPECT_NE(textOf(at).find("</paths><log_level/></configuration>"), std::string::npos);
}

TEST_F(QelConfigurationIteratorTest, MissingChildLeavesPositionUnchanged) {
    EXPECT_EQ(at.firstChild("none"), -1);
    EXPECT_EQ(read("system/log_level"), "4");
    ASSERT_EQ(at.seek("/system/paths"), 0);
    EXPECT_EQ(at.firstChild("none"), -1);
    EXPECT_EQ(read("etc"), "/etc");
    EXPECT_EQ(empty.firstChild(), -1);
}

TEST_F(QelConfigurationIteratorTest, MissingChildOfSectionLeavesCursorInConfigurationElement) {
    ASSERT_EQ(at.seek("/system"), 0);
    EXPECT_EQ(at.firstChild("none"), -1);
    // A relative path looks for another one inside it, and one step up leads to the section instead of the data
    // element.
    EXPECT_EQ(read("log_level"), "(none)");
    EXPECT_EQ(at.seekUp(), 0);
    EXPECT_EQ(at.seek("configuration"), 0);
    EXPECT_EQ(at.seekRoot(), 0);
    EXPECT_EQ(read("system/log_level"), "4");

    ASSERT_EQ(at.seek("/system"), 0);
    EXPECT_EQ(at.firstChild("none"), -1);
    EXPECT_EQ(read("/system/log_level"), "4");
}

TEST_F(QelConfigurationIteratorTest, SectionWithoutOptionsHasNoChildren) {
    ASSERT_EQ(at.seek("/bare"), 0);
    EXPECT_EQ(at.firstChild(), -1);
    EXPECT_EQ(at.newChild("option"), -1);
    EXPECT_EQ(at.seekUp(), 0);
    EXPECT_EQ(read("system/log_level"), "4");
}

TEST_F(QelConfigurationIteratorTest, WithoutDataElementNothingIsFoundOrCreated) {
    QelConfigurationIterator bare(parsed(""));
    EXPECT_EQ(bare.seekRoot(), -1);
    EXPECT_EQ(bare.seek("/"), -1);
    EXPECT_EQ(bare.putValue(1, "/system/log_level"), -1);
    EXPECT_EQ(bare.seekUp(), -1);
    const std::unique_ptr<QelMessageIterator> root(bare.getMessage()->rootIterator());
    EXPECT_NE(root->firstChild(), 0);
}

TEST_F(QelConfigurationIteratorTest, GetIteratorCopiesTreeAndStartsAtDataElement) {
    ASSERT_EQ(at.seek("/system"), 0);
    const std::unique_ptr<QelConfigurationIterator> other(at.getIterator());
    EXPECT_NE(other->getMessage(), at.getMessage());
    std::string value;
    EXPECT_EQ(other->getValue(value, "system/log_level"), 0);
    EXPECT_EQ(value, "4");
    EXPECT_EQ(other->putValue(1, "/system/log_level"), 0);
    EXPECT_EQ(read("log_level"), "4");
}

TEST_F(QelConfigurationIteratorTest, GetConfigCopiesTree) {
    const std::unique_ptr<QelConfiguration> configuration(at.getConfig());
    ASSERT_NE(configuration->getMessage(), nullptr);
    EXPECT_NE(configuration->getMessage(), at.getMessage());
    EXPECT_EQ(textOf(*configuration->getMessage()), TestSupport::textOf(*at.getMessage()));
}

TEST_F(QelConfigurationIteratorTest, SavedPositionIsKeptUntilNextSave) {
    at.savePath();
    ASSERT_EQ(at.adjustLevel(), 0);
    at.restorePath();
    ASSERT_EQ(at.seek("/system/paths"), 0);
    // followPath() has saved the position before the walk.
    at.restorePath();
    EXPECT_EQ(read("system/log_level"), "4");
}

TEST_F(QelConfigurationIteratorTest, FailedStepLeavesLevelUnchanged) {
    ASSERT_EQ(at.seek("/system"), 0);
    EXPECT_EQ(at.seekSubPath("none"), -1);
    at.restorePath();
    EXPECT_EQ(at.seekUp(), -1);
    EXPECT_EQ(at.createSubPath("system"), 0);
    EXPECT_EQ(at.createSubPath("fresh"), 0);
    EXPECT_EQ(at.seekUp(), 0);
    EXPECT_EQ(read("log_level"), "4");
}

using QelConfigurationIteratorDeathTest = QelConfigurationIteratorTest;

TEST_F(QelConfigurationIteratorDeathTest, RestoringWithoutSavedPositionTerminatesProcess) {
    EXPECT_DEATH(at.restorePath(), "core/src/QelFunctionalityCore/QelConfig:[0-9]+.*restorePath");
    at.savePath();
    at.restorePath();
    EXPECT_DEATH(at.restorePath(), "QelConfig");
}

TEST_F(QelConfigurationIteratorDeathTest, SavingWithoutMessageTerminatesProcess) {
    QelConfigurationIterator nothing(nullptr);
    EXPECT_EQ(nothing.seekRoot(), -1);
    EXPECT_DEATH(nothing.savePath(), "core/src/QelFunctionalityCore/QelConfig:[0-9]+.*savePath");
}

} // namespace

} // namespace Qel
