#include "QelFunctionalityCore/Host/QelUser.h"

#include <gmock/gmock.h>

#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int memberName = 1026;
constexpr int groupNumber = 1027;
constexpr int primaryGroup = 1028;
constexpr int supplementaryGroup = 1029;

QelUser root() {
    QelUser user;
    user.name = "root";
    user.id = 0;
    return user;
}

TEST(QelUserTest, MinimalUserIsWrittenAsNameAndEmptyPrimaryGroup) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(root(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1030, 1026, primaryGroup));
    QelUser read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.id, 0U);
    EXPECT_EQ(read.name, "root");
    EXPECT_TRUE(read.groupId.isEmpty());
    EXPECT_THAT(read.groups, IsEmpty());
}

TEST(QelUserTest, AllFieldsRoundTripInOrder) {
    QelUser user = root();
    user.groupId.id = 0;
    user.groups.resize(2);
    user.groups[0].name = "wheel";
    user.groups[1].id = 4;
    user.comment = "super user";
    user.password = std::string("\0\xFF", 2);
    user.shell = "/bin/sh";
    user.home = "/root";
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(user, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()),
                ElementsAre(1030, 1026, primaryGroup, supplementaryGroup, supplementaryGroup, 1031, 1032, 1033, 1034));
    EXPECT_EQ(childValue(message.cursor(), 1032), "AP8=");
    QelUser read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.groupId.id, 0U);
    ASSERT_EQ(read.groups.size(), 2U);
    EXPECT_EQ(read.groups[0].name, "wheel");
    EXPECT_EQ(read.groups[1].id, 4U);
    EXPECT_EQ(read.password, user.password);
    EXPECT_EQ(read.home, "/root");
}

TEST(QelUserTest, RequiresNameOrNumber) {
    const TestMessage message;
    message.cursor().putValue("/root", 1034);
    QelUser read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    EXPECT_EQ(read.home, "");
}

TEST(QelUserTest, RejectsEmptySupplementaryGroup) {
    const TestMessage message;
    message.cursor().putValue("root", 1026);
    message.cursor().putChild(supplementaryGroup);
    QelUser read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelUserTest, MissingOrEmptyPrimaryGroupKeepsPreviousValue) {
    const TestMessage message;
    message.cursor().putValue("root", 1026);
    QelUser read;
    read.groupId.name = "kept";
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    message.cursor().putChild(primaryGroup);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.groupId.name, "kept");
}

TEST(QelUserTest, UnreadablePrimaryGroupFailsRead) {
    const TestMessage message;
    message.cursor().putValue("root", 1026);
    message.cursor().newChild(primaryGroup);
    message.cursor().putValue("no number", groupNumber);
    message.cursor().seekUp();
    message.cursor().putValue("/root", 1034);
    QelUser read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    EXPECT_EQ(read.home, "");
    EXPECT_EQ(message.cursor().curName(), "/");
}

TEST(QelUserTest, UnreadablePasswordKeepsPreviousValueAndReadContinues) {
    const TestMessage message;
    message.cursor().putValue("root", 1026);
    message.cursor().putValue("?", 1032);
    message.cursor().putValue("/root", 1034);
    QelUser read;
    read.password = "kept";
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.password, "kept");
    EXPECT_EQ(read.home, "/root");
}

TEST(QelGroupTest, MemberNamesAreNestedElements) {
    QelGroup group;
    group.group.name = "wheel";
    group.group.id = 10;
    group.members = {"root", "adm"};
    group.memberGroups = {"sudo"};
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(group, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(groupNumber, memberName, 1025, 1025, 1737));
    ASSERT_EQ(message.cursor().seek(1025), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(memberName));
    EXPECT_EQ(childValue(message.cursor(), memberName), "adm");
    message.cursor().seekUp();
    QelGroup read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.group.id, 10U);
    EXPECT_THAT(read.members, ElementsAre("adm", "root"));
    EXPECT_THAT(read.memberGroups, ElementsAre("sudo"));
}

TEST(QelGroupTest, MembersAreOptional) {
    const TestMessage message;
    message.cursor().putValue(0, groupNumber);
    QelGroup read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_THAT(read.members, IsEmpty());
}

TEST(QelGroupTest, MemberRequiresName) {
    for (const int item : {1025, 1737}) {
        const TestMessage message;
        message.cursor().putValue(0, groupNumber);
        message.cursor().putValue("root", item);
        QelGroup read;
        EXPECT_EQ(message.cursor().getObj(read, 0), -1) << item;
    }
}

TEST(QelGroupTest, RequiresNameOrNumber) {
    const TestMessage message;
    QelGroup read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

} // namespace
} // namespace Qel
