#include "QelFunctionalityCore/Security/QelRole.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Security/QelAce.h"
#include "QelFunctionalityCore/TestTree.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(QelTaskTest, WritesOperationsBeforeDescriptionAndName) {
    TestTree tree;
    QelTask task;
    task.name = "manage";
    task.description = "<all>";
    task.operations = {"stop", "start"};
    ASSERT_EQ(tree->putObj(task, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1999, 1999, 1496, 1026));
    EXPECT_EQ(childValue(*tree, 1496), "PGFsbD4=");
    QelTask back;
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.name, "manage");
    EXPECT_EQ(back.description, "<all>");
    EXPECT_THAT(back.operations, ElementsAre("start", "stop"));
}

TEST(QelTaskTest, MissingNameIsWrittenButRejectedByReader) {
    TestTree tree;
    QelTask task;
    task.operations = {"start"};
    ASSERT_EQ(tree->putObj(task, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1999));
    QelTask back;
    EXPECT_NE(tree->getObj(back, 0), 0);
    EXPECT_THAT(back.operations, ElementsAre("start")) << "the name is read last";
}

TEST(QelTaskTest, IgnoresUnreadableDescription) {
    TestTree tree;
    tree->putValue(std::string("no base64!"), 1496);
    tree->putValue(std::string("manage"), 1026);
    QelTask back;
    back.description = "old";
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.description, "old");
}

TEST(QelRoleTest, WritesRolesBeforeFieldsOfTask) {
    TestTree tree;
    QelRole role;
    role.name = "operator";
    role.operations = {"start"};
    role.roles = {"viewer", "guest"};
    ASSERT_EQ(tree->putObj(role, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1859, 1859, 1999, 1026));
    QelRole back;
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_THAT(back.roles, ElementsAre("guest", "viewer"));
    EXPECT_THAT(back.operations, ElementsAre("start"));
    EXPECT_EQ(back.name, "operator");
    EXPECT_EQ(back.description, "");
}

TEST(QelRoleTest, ReaderRequiresName) {
    TestTree tree;
    QelRole role;
    role.roles = {"viewer"};
    ASSERT_EQ(tree->putObj(role, 0), 0);
    QelRole back;
    EXPECT_NE(tree->getObj(back, 0), 0);
    EXPECT_THAT(back.roles, ElementsAre("viewer"));
}

TEST(QelRoleAssignmentTest, ReaderAndWriterRequireAllFields) {
    const QelRoleAssignment whole{.role = "operator", .subject = QelSID("S-1-5-42"), .object = QelGUID(1, 2)};
    for (const int id : {1859, 2071, 1935}) {
        TestTree tree;
        ASSERT_EQ(tree->putObj(whole, 0), 0);
        tree->deleteChild(id);
        QelRoleAssignment back;
        EXPECT_EQ(tree->getObj(back, 0), -1) << id;
        EXPECT_EQ(back.role, id == 1859 ? "" : "operator");
        EXPECT_EQ(back.subject.toString(), id == 1935 ? "S-1-5-42" : "S-1-0-0");
        EXPECT_FALSE(back.object.isValid()) << "the object is read last";
    }
    QelRoleAssignment unnamed = whole;
    ASSERT_EQ(unnamed.subject.fromBinary(nullptr, 0), 0);
    TestTree tree;
    EXPECT_EQ(tree->putObj(unnamed, 0), -1);
    EXPECT_NE(tree->seekPresence(1935), 0) << "the writer stops as well";
}

template <class Record> class QelObjectRightsTest : public testing::Test {};
using ObjectRights = testing::Types<QelAce, QelCheck>;
TYPED_TEST_SUITE(QelObjectRightsTest, ObjectRights);

TYPED_TEST(QelObjectRightsTest, WritesObjectFirst) {
    TestTree tree;
    TypeParam written;
    written.object = QelGUID(1, 2);
    written.rights = {3, 1, 3};
    written.operations = {"stop", "start"};
    ASSERT_EQ(tree->putObj(written, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1935, 2082, 2082, 2082, 1999, 1999));
    TypeParam back;
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.object, QelGUID(1, 2));
    EXPECT_THAT(back.rights, ElementsAre(3, 1, 3));
    EXPECT_THAT(back.operations, ElementsAre("start", "stop"));
}

TYPED_TEST(QelObjectRightsTest, RequiresObject) {
    TestTree tree;
    tree->putValue(3, 2082);
    TypeParam back;
    EXPECT_EQ(tree->getObj(back, 0), -1);
    EXPECT_THAT(back.rights, IsEmpty());
}

TYPED_TEST(QelObjectRightsTest, FailedWriteOfObjectStopsWriter) {
    EXPECT_EQ(TestSupport::writeWithoutValues(TypeParam()), -1);
}

TYPED_TEST(QelObjectRightsTest, UnreadableRightEndsListOfRightsOnly) {
    TestTree tree;
    tree->putValue(QelGUID(1, 2).toString(), 1935);
    for (const char* const right : {"1", "all", "2"}) {
        tree->newChild(2082);
        tree->putValue(std::string(right), 0);
        tree->seekUp();
    }
    tree->putValue(std::string("start"), 1999);
    TypeParam back;
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_THAT(back.rights, ElementsAre(1));
    EXPECT_THAT(back.operations, ElementsAre("start"));
}

} // namespace
} // namespace Qel
