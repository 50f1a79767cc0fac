#include "QelFunctionalityCore/Files/QelUserCredentials.h"

#include <gmock/gmock.h>

#include "FilesTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int name = 1025;
constexpr int uid = 1030;
constexpr int group = 1029;
constexpr int gid = 1027;
constexpr int flags = 1176;

void putNestedGid(const TestTree& tree, const std::string& number) {
    tree->newChild(gid);
    tree->putValue(number, uid);
    tree->seekUp();
}

TEST(QelUserCredentialsTest, NameIsPreferredToNumber) {
    QelUserCredentials credentials;
    credentials.name = "anna";
    credentials.uid = 1000;
    const TestTree tree;
    writeTo(tree, credentials);
    EXPECT_EQ(childValue(*tree, name), "anna");
    EXPECT_EQ(countChildren(*tree, uid), 0);
}

TEST(QelUserCredentialsTest, NumberIsWrittenWithoutName) {
    QelUserCredentials credentials;
    credentials.uid = 0;
    const TestTree tree;
    writeTo(tree, credentials);
    EXPECT_EQ(countChildren(*tree, name), 0);
    EXPECT_EQ(childValue(*tree, uid), "0");
    EXPECT_EQ(readFrom<QelUserCredentials>(tree).uid, 0U);
}

TEST(QelUserCredentialsTest, NumbersAboveSignedRangeSurviveRoundTrip) {
    QelUserCredentials credentials;
    credentials.uid = 0xFFFFFFFE;
    const TestTree tree;
    writeTo(tree, credentials);
    EXPECT_EQ(childValue(*tree, uid), "-2");
    EXPECT_EQ(readFrom<QelUserCredentials>(tree).uid, 0xFFFFFFFE);
}

TEST(QelUserCredentialsTest, DefaultWritesOnlyFlags) {
    const TestTree tree;
    writeTo(tree, QelUserCredentials());
    EXPECT_EQ(countChildren(*tree), 1);
    EXPECT_EQ(childValue(*tree, flags), "0");
}

TEST(QelUserCredentialsTest, NumberIsIgnoredIfNameIsPresent) {
    const TestTree tree;
    tree->putValue(std::string("anna"), name);
    tree->putValue(7, uid);
    const QelUserCredentials credentials = readFrom<QelUserCredentials>(tree);
    EXPECT_EQ(credentials.name, "anna");
    EXPECT_EQ(credentials.uid, QelUserCredentials::noUid);
}

TEST(QelUserCredentialsTest, UnreadableNumberOrFlagsAreUnchanged) {
    const TestTree tree;
    tree->putValue(std::string("seven"), uid);
    tree->putValue(std::string("many"), flags);
    QelUserCredentials credentials;
    credentials.uid = 5;
    credentials.flags = 6;
    EXPECT_EQ(tree->getObj(credentials, 0), 0);
    EXPECT_EQ(credentials.uid, 5U);
    EXPECT_EQ(credentials.flags, 6);
}

TEST(QelUserCredentialsTest, GroupNamesArePreferredToNumbers) {
    QelUserCredentials credentials;
    credentials.groups = {"wheel", "disk"};
    credentials.gids = {6, 10};
    const TestTree tree;
    writeTo(tree, credentials);
    EXPECT_EQ(countChildren(*tree, group), 2);
    EXPECT_EQ(countChildren(*tree, gid), 0);
    putNestedGid(tree, "6");
    const QelUserCredentials read = readFrom<QelUserCredentials>(tree);
    EXPECT_THAT(read.groups, ElementsAre("wheel", "disk"));
    EXPECT_THAT(read.gids, IsEmpty());
}

TEST(QelUserCredentialsTest, GroupNumbersAreWrittenInItem) {
    QelUserCredentials credentials;
    credentials.gids = {6, 10};
    const TestTree tree;
    writeTo(tree, credentials);
    EXPECT_EQ(countChildren(*tree, gid), 2);
    EXPECT_EQ(childValue(*tree, gid), "6");
    EXPECT_THAT(readFrom<QelUserCredentials>(tree).gids, IsEmpty());
}

TEST(QelUserCredentialsTest, GroupNumbersAreReadFromElementInsideItem) {
    const TestTree tree;
    putNestedGid(tree, "6");
    putNestedGid(tree, "10");
    EXPECT_THAT(readFrom<QelUserCredentials>(tree).gids, ElementsAre(6, 10));
}

TEST(QelUserCredentialsTest, UnreadableGroupEndsListButNotReading) {
    const TestTree tree;
    putNestedGid(tree, "6");
    putNestedGid(tree, "six");
    putNestedGid(tree, "10");
    tree->putValue(3, flags);
    const QelUserCredentials read = readFrom<QelUserCredentials>(tree);
    EXPECT_THAT(read.gids, ElementsAre(6));
    EXPECT_EQ(read.flags, 3);
}

TEST(QelUserCredentialsTest, EmptyElementIsReadAsNoUser) {
    const TestTree tree;
    const QelUserCredentials credentials = readFrom<QelUserCredentials>(tree);
    EXPECT_EQ(credentials.name, "");
    EXPECT_EQ(credentials.uid, QelUserCredentials::noUid);
    EXPECT_EQ(credentials.flags, 0);
}

TEST(QelUserCredentialsTest, GetUidReturnsWhetherNumberIsPresent) {
    const TestTree tree;
    unsigned number = 12;
    EXPECT_NE(QelUserCredentials::getUid(*tree, number), 0);
    EXPECT_EQ(number, 12U);
    tree->putValue(1000, uid);
    EXPECT_EQ(QelUserCredentials::getUid(*tree, number), 0);
    EXPECT_EQ(number, 1000U);
}

} // namespace
} // namespace Qel
