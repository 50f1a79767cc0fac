#include "QelFunctionalityCore/Security/QelDirControl.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/TestTree.h"
#include "support/RequiredChildren.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using testing::ElementsAre;

constexpr const char* sortOid = "1.2.840.113556.1.4.473";
constexpr const char* vlvOid = "2.16.840.1.113730.3.4.9";

QelDirSortControl sortControl() {
    QelDirSortControl made;
    made.attribute = "cn";
    made.reverse = true;
    return made;
}

TEST(QelDirControlTest, WritesOidFirst) {
    TestTree tree;
    QelDirControl control;
    control.oid = "1.2.3";
    control.value = "v";
    ASSERT_EQ(tree->putObj(control, 1115), 0);
    ASSERT_EQ(tree->seek(1115), 0);
    EXPECT_EQ(tree->curType(), "directory:dir_control");
    EXPECT_THAT(childIDs(*tree), ElementsAre(1007, 1921, 1018));
    EXPECT_EQ(childValue(*tree, 1921), "1") << "critical by default";
}

TEST(QelDirControlTest, OidIsRequiredUnlessReaderMakesItOptional) {
    TestTree tree;
    tree->putValue(0, 1921);
    QelDirControl control;
    control.oid = "1.2.3";
    EXPECT_EQ(tree->getObj(control, 0), -1);
    EXPECT_EQ(tree->getObject(control, QelDirControl::Reader(true), 0), -1);
    EXPECT_TRUE(control.critical) << "the OID is read first";
    EXPECT_EQ(tree->getObject(control, QelDirControl::Reader(false), 0), 0);
    EXPECT_EQ(control.oid, "1.2.3");
    EXPECT_FALSE(control.critical);
}

TEST(QelDirControlTest, OtherFieldsMayBeMissingOrUnreadable) {
    TestTree tree;
    tree->putValue(std::string("1.2.3"), 1007);
    tree->putValue(std::string("maybe"), 1921);
    QelDirControl control;
    control.value = "old";
    EXPECT_EQ(tree->getObj(control, 0), 0);
    EXPECT_TRUE(control.critical);
    EXPECT_EQ(control.value, "old");
}

TEST(QelDirControlTest, UnreadableOidFailsOnlyIfRequired) {
    const TestTree tree;
    ASSERT_EQ(tree->putObj(QelDirControl(), 0), 0);
    const TestSupport::ScriptedCursor unreadable(
        *tree, TestSupport::fails(TestSupport::ScriptedCursor::Operation::get, {1007}));
    QelDirControl control;
    control.oid = "1.2.3";
    EXPECT_EQ(unreadable.getObject(control, QelDirControl::Reader(true), 0), -1);
    EXPECT_EQ(unreadable.getObject(control, QelDirControl::Reader(false), 0), 0);
    EXPECT_EQ(control.oid, "1.2.3");
}

TEST(QelDirControlTest, WriterIgnoresItsArgument) {
    for (const bool flag : {false, true}) {
        TestTree tree;
        EXPECT_EQ(tree->putObject(QelDirControl(), QelDirControl::Writer(flag), 0), 0);
        EXPECT_THAT(childIDs(*tree), ElementsAre(1007, 1921, 1018));
    }
}

TEST(QelDirControlTest, WriterIgnoresFailuresExceptThoseOfDerivedControls) {
    EXPECT_EQ(TestSupport::writeWithoutValues(QelDirControl()), 0);
    EXPECT_EQ(TestSupport::writeWithoutValues(sortControl()), -1) << "a failure of its own field is reported";
}

TEST(QelDirSortControlTest, WritesOwnFieldsAfterCommonOnes) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(sortControl(), 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1007, 1921, 1018, 1926, 1927));
    EXPECT_EQ(childValue(*tree, 1007), sortOid);
    EXPECT_EQ(childValue(*tree, 1927), "1");
}

TEST(QelDirSortControlTest, KeepsOidIfMessageHasNone) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(sortControl(), 0), 0);
    tree->deleteChild(1007);
    QelDirSortControl back;
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.QelDirControl::oid, sortOid);
    EXPECT_EQ(back.attribute, "cn");
    EXPECT_TRUE(back.reverse);
}

TEST(QelDirSortControlTest, RequiresAttributeAndDirection) {
    TestSupport::expectRequired(sortControl(), {1926, 1927});
}

TEST(QelDirVlvControlTest, WritesOwnFieldsAfterCommonOnes) {
    TestTree tree;
    QelDirVlvControl control;
    control.beforeCount = 1;
    control.afterCount = 2;
    control.offset = 3;
    control.count = 4;
    ASSERT_EQ(tree->putObj(control, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1007, 1921, 1018, 1923, 1924, 1087, 1259));
    EXPECT_EQ(childValue(*tree, 1007), vlvOid);
    tree->deleteChild(1007);
    QelDirVlvControl back;
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.QelDirControl::oid, vlvOid);
    EXPECT_EQ(back.beforeCount, 1);
    EXPECT_EQ(back.afterCount, 2);
    EXPECT_EQ(back.offset, 3);
    EXPECT_EQ(back.count, 4);
}

TEST(QelDirVlvControlTest, RequiresAllNumbers) {
    TestSupport::expectRequired(QelDirVlvControl(), {1923, 1924, 1087, 1259});
}

TEST(QelDirControlTest, TypeDeterminesClass) {
    const auto roundTripped = [](QelDirControl* control) {
        TestTree tree;
        EXPECT_EQ(tree->putObject(boost::shared_ptr<QelDirControl>(control), QelWriterDerived<QelDirControl>(), 1115),
                  0);
        boost::shared_ptr<QelDirControl> back;
        EXPECT_EQ(tree->getObject(back, QelReaderDerived<QelDirControl>(false), 1115), 0);
        return back;
    };
    EXPECT_TRUE(boost::dynamic_pointer_cast<QelDirSortControl>(roundTripped(new QelDirSortControl())));
    EXPECT_TRUE(boost::dynamic_pointer_cast<QelDirVlvControl>(roundTripped(new QelDirVlvControl())));
    const auto plain = roundTripped(new QelDirControl());
    EXPECT_FALSE(boost::dynamic_pointer_cast<QelDirSortControl>(plain));
    EXPECT_FALSE(boost::dynamic_pointer_cast<QelDirVlvControl>(plain));
}

TEST(QelDirControlTest, UnknownTypeIsReadAsBaseClass) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(sortControl(), 1115), 0);
    ASSERT_EQ(tree->seek(1115), 0);
    tree->setComplexType(270, 999);
    boost::shared_ptr<QelDirControl> back;
    EXPECT_EQ(tree->getObject(back, QelReaderDerived<QelDirControl>(true), 0), 0);
    EXPECT_EQ(back->oid, sortOid);
    EXPECT_EQ(tree->getObject(back, QelReaderDerived<QelDirControl>(false), 0), -1);
}

} // namespace
} // namespace Qel
