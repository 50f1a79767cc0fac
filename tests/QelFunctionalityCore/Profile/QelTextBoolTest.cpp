#include "QelFunctionalityCore/Profile/QelTextBool.h"

#include <gtest/gtest.h>

#include "QelFunctionalityCore/Profile/QelDesktopSettings.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

TEST(QelTextBoolTest, ParsesPrefix) {
    for (const char* const text : {"true", "trueish", "0", "01", "0 or 1"}) {
        QelTextBool value = false;
        EXPECT_EQ(value.fromString(text), 0) << text;
        EXPECT_TRUE(value) << text;
    }
    for (const char* const text : {"false", "falsehood", "1", "10"}) {
        QelTextBool value = true;
        EXPECT_EQ(value.fromString(text), 0) << text;
        EXPECT_FALSE(value) << text;
    }
}

TEST(QelTextBoolTest, OtherStringsLeaveValueUnchanged) {
    for (const char* const text : {"", "tru", "fals", "True", "FALSE", " true", "yes", "2", "-1"})
        for (const bool before : {false, true}) {
            QelTextBool value = before;
            EXPECT_EQ(value.fromString(text), -1) << text;
            EXPECT_EQ(value, before) << text;
        }
}

TEST(QelTextBoolTest, FormatsAsWord) {
    QelDesktopAction action;
    action.name = "open";
    for (const bool flag : {false, true}) {
        action.flag2206 = flag;
        TestTree tree;
        ASSERT_EQ(tree->putObj(action, 0), 0);
        EXPECT_EQ(childValue(*tree, 2206), flag ? "true" : "false");
    }
}

int readAction(const char* flag, QelDesktopAction& action) {
    TestTree tree;
    tree->putValue("open", 2205);
    if (flag)
        tree->putValue(flag, 2206);
    return tree->getObj(action, 0);
}

TEST(QelTextBoolTest, DigitsAreInvertedInRecord) {
    QelDesktopAction action;
    EXPECT_EQ(readAction("0", action), 0);
    EXPECT_TRUE(action.flag2206);
    EXPECT_EQ(readAction("1", action), 0);
    EXPECT_FALSE(action.flag2206);
}

TEST(QelTextBoolTest, MissingOrUnknownValueFailsRecord) {
    QelDesktopAction action;
    EXPECT_EQ(readAction(nullptr, action), -1);
    EXPECT_EQ(readAction("perhaps", action), -1);
    EXPECT_EQ(readAction("", action), -1);
    EXPECT_EQ(action.name, "open");
}

} // namespace

} // namespace Qel
