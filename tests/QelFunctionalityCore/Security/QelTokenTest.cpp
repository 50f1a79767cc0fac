#include "QelFunctionalityCore/Security/QelToken.h"

#include <cstdlib>

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Security/LocalConfig.h"
#include "QelFunctionalityCore/Security/QelLocalSID.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const QelSID sidA("S-1-5-1");
const QelSID sidB("S-1-5-2");
const QelSID sidC("S-1-5-3");

QelSID emptySID() {
    QelSID sid;
    EXPECT_EQ(sid.fromBinary(nullptr, 0), 0);
    return sid;
}

QelToken tokenOf(const QelSID& sid, const std::set<QelSID>& groups = {}, const std::set<QelSID>& denied = {},
                 const std::set<std::string>& privileges = {}) {
    QelToken token;
    token.sid = sid;
    token.groups = groups;
    token.denied = denied;
    token.privileges = privileges;
    return token;
}

QelToken fullToken() {
    QelToken token = tokenOf(sidA, {sidA, sidB}, {sidC}, {"read", "write"});
    QelAuthName name;
    name.name = "anna";
    name.realm = QelGUID(1, 2);
    token.authName = name;
    return token;
}

void putSIDs(QelMessageIterator& cursor, int container, const std::vector<QelSID>& sids) {
    cursor.newChild(container);
    for (const QelSID& sid : sids) {
        cursor.newChild(1911);
        cursor.putObj(sid, 0);
        cursor.seekUp();
    }
    cursor.seekUp();
}

void expectSame(const QelToken& a, const QelToken& b) {
    EXPECT_EQ(a.sid, b.sid);
    EXPECT_EQ(a.groups, b.groups);
    EXPECT_EQ(a.denied, b.denied);
    EXPECT_EQ(a.privileges, b.privileges);
}

TEST(QelTokenTest, NewTokenIsNobody) {
    const QelToken token;
    EXPECT_EQ(token.sid.toString(), "S-1-0-0");
    EXPECT_THAT(token.groups, IsEmpty());
    EXPECT_THAT(token.denied, IsEmpty());
    EXPECT_THAT(token.privileges, IsEmpty());
    EXPECT_FALSE(token.authName.isSpecified());
}

TEST(QelTokenTest, WritesFieldsInOrder) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(fullToken(), 1944), 0);
    ASSERT_EQ(tree->seek(1944), 0);
    EXPECT_EQ(tree->curType(), "env:token");
    EXPECT_THAT(childIDs(*tree), ElementsAre(1025, 2011, 2012, 2013, 1026));
    ASSERT_EQ(tree->seek(2011), 0);
    EXPECT_EQ(countChildren(*tree, 1911), 2);
    tree->seekUp();
    ASSERT_EQ(tree->seek(2013), 0);
    EXPECT_EQ(childValue(*tree, 2014), "read");
}

TEST(QelTokenTest, AllFieldsRoundTrip) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(fullToken(), 1944), 0);
    QelToken read;
    ASSERT_EQ(tree->getObj(read, 1944), 0);
    expectSame(read, fullToken());
    ASSERT_TRUE(read.authName.isSpecified());
    EXPECT_EQ(read.authName->name.get(), "anna");
}

TEST(QelTokenTest, WritesEmptySetsAsEmptyElementsAndOmitsUnspecifiedName) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelToken(), 0), 0);
    EXPECT_EQ(countChildren(*tree), 4);
    for (const int id : {2011, 2012, 2013}) {
        ASSERT_EQ(tree->seek(id), 0);
        EXPECT_EQ(countChildren(*tree), 0);
        tree->seekUp();
    }
    EXPECT_NE(tree->seekPresence(1026), 0);
}

TEST(QelTokenTest, MissingSidIsRejectedAndLeavesTokenUnchanged) {
    TestTree tree;
    putSIDs(*tree, 2011, {sidC});
    QelToken read = fullToken();
    EXPECT_EQ(tree->getObj(read, 0), -1);
    tree->putValue(std::string("no SID"), 1025);
    EXPECT_EQ(tree->getObj(read, 0), -1);
    expectSame(read, fullToken());
}

TEST(QelTokenTest, MissingFieldsBecomeEmpty) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(sidC, 1025), 0);
    QelToken read = fullToken();
    EXPECT_EQ(tree->getObj(read, 0), 0);
    expectSame(read, tokenOf(sidC));
    EXPECT_FALSE(read.authName.isSpecified());
}

TEST(QelTokenTest, UnreadableItemEndsListButNotRead) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(sidC, 1025), 0);
    putSIDs(*tree, 2011, {sidA, sidB});
    ASSERT_EQ(tree->seek(2011), 0);
    ASSERT_EQ(tree->firstChild(1911), 0);
    ASSERT_EQ(tree->nextSibling(1911), 0);
    tree->putValue(std::string("no SID"), 0);
    tree->seekUp();
    tree->seekUp();
    putSIDs(*tree, 2012, {sidB});
    QelToken read;
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_THAT(read.groups, ElementsAre(sidA));
    EXPECT_THAT(read.denied, ElementsAre(sidB));
}

TEST(QelTokenTest, UnreadableNameBecomesUnspecified) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(sidC, 1025), 0);
    tree->putChild(1026);
    QelToken read = fullToken();
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_FALSE(read.authName.isSpecified());
}

TEST(QelTokenTest, WriterRejectsEmptySids) {
    TestTree tree;
    EXPECT_EQ(tree->putObj(tokenOf(emptySID()), 0), -1);
    EXPECT_EQ(tree->putObj(tokenOf(sidA, {emptySID()}), 0), 1);
    EXPECT_EQ(tree->putObj(tokenOf(sidA, {}, {emptySID()}), 0), 1);
}

TEST(QelTokenTest, AgentTokenHasAgentSidAndLocalAdministrators) {
    const LocalConfig config(localEID);
    const QelToken agent = QelToken::getAgentToken();
    const QelSID own = QelLocalSID(0, QelLocalSID::type4, localEID).getSID();
    EXPECT_EQ(agent.sid, own);
    EXPECT_EQ(agent.groups, (std::set<QelSID>{own, QelLocalSID(0, QelLocalSID::type2, localEID).getSID()}));
    EXPECT_THAT(agent.denied, IsEmpty());
    EXPECT_THAT(agent.privileges, IsEmpty());
    EXPECT_FALSE(agent.authName.isSpecified());
    EXPECT_TRUE(agent.isLocalAdministrators());
}

TEST(QelTokenTest, AgentTokenReflectsChangeOfLocalIdentity) {
    QelToken first;
    {
        const LocalConfig config(localEID);
        first = QelToken::getAgentToken();
    }
    const LocalConfig config(masterEID);
    EXPECT_NE(QelToken::getAgentToken().sid, first.sid);
}

TEST(QelTokenTest, AgentWithoutLocalIdentityHasDefaultSidAndIsLocalAdministrator) {
    const QelToken agent = QelToken::getAgentToken();
    EXPECT_EQ(agent.sid.toString(), "S-1-0-0");
    EXPECT_THAT(agent.groups, ElementsAre(agent.sid));
    EXPECT_TRUE(agent.isLocalAdministrators());
    EXPECT_FALSE(tokenOf(sidA).isLocalAdministrators());
}

TEST(QelTokenTest, SetCurrentReturnsPreviousToken) {
    const QelToken atStart = QelToken::setCurrent(fullToken());
    expectSame(QelToken::getCurrent(), fullToken());
    expectSame(QelToken::setCurrent(tokenOf(sidC)), fullToken());
    expectSame(QelToken::getCurrent(), tokenOf(sidC));
    expectSame(QelToken::setCurrent(QelToken::getCurrent()), tokenOf(sidC));
    expectSame(QelToken::setCurrent(atStart), tokenOf(sidC));
    expectSame(QelToken::getCurrent(), atStart);
}

// Runs in a separate process, because only the first use initialises the token.
TEST(QelTokenDeathTest, CurrentTokenIsInitialisedOnceAtFirstUse) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto checkFirstUse = [] {
        QelSID first;
        {
            const LocalConfig config(localEID);
            first = QelToken::getAgentToken().sid;
            if (!(QelToken::getCurrent().sid == first))
                std::_Exit(1);
        }
        const LocalConfig config(masterEID);
        std::_Exit(QelToken::getCurrent().sid == first ? 0 : 2);
    };
    EXPECT_EXIT(checkFirstUse(), testing::ExitedWithCode(0), "");
}

TEST(QelTokenTest, RestrictByEqualTokenChangesNothing) {
    QelToken token = fullToken();
    token.restrict(fullToken());
    expectSame(token, fullToken());
    token.restrict(token);
    expectSame(token, fullToken());
}

TEST(QelTokenTest, RestrictByTokenWithoutGroupsDeniesAllGroups) {
    QelToken token = tokenOf(sidA, {sidA, sidB});
    token.restrict(tokenOf(sidC));
    expectSame(token, tokenOf(sidA, {}, {sidA, sidB}));
}

TEST(QelTokenTest, RestrictDeniesGroupsOfOneTokenOnly) {
    QelToken token = tokenOf(sidC, {sidB});
    token.restrict(tokenOf(sidC, {sidA}));
    expectSame(token, tokenOf(sidC, {}, {sidA, sidB}));
}

TEST(QelTokenTest, RestrictUnitesDeniedSets) {
    QelToken token = tokenOf(sidC, {}, {sidA});
    token.restrict(tokenOf(sidC, {}, {sidB}));
    expectSame(token, tokenOf(sidC, {}, {sidA, sidB}));
}

TEST(QelTokenTest, RestrictKeepsCommonPrivileges) {
    QelToken token = tokenOf(sidC, {}, {}, {"a", "b"});
    token.restrict(tokenOf(sidC, {}, {}, {"b", "c"}));
    EXPECT_THAT(token.privileges, ElementsAre("b"));
}

TEST(QelTokenTest, RestrictKeepsSidAndNameEvenIfSidIsDenied) {
    QelToken token = fullToken();
    token.restrict(tokenOf(sidC, {}, {sidA}));
    EXPECT_EQ(token.sid, sidA);
    EXPECT_TRUE(token.authName.isSpecified());
}

TEST(QelTokenTest, SidOrGroupMakesEnvironmentAdministrator) {
    const QelSID administrators = QelLocalSID(0, QelLocalSID::type2, masterEID).getSID();
    EXPECT_TRUE(tokenOf(administrators).isEnvAdministrators(masterEID));
    EXPECT_TRUE(tokenOf(sidA, {sidB, administrators}).isEnvAdministrators(masterEID));
    EXPECT_FALSE(tokenOf(sidA, {sidB}, {administrators}).isEnvAdministrators(masterEID));
    EXPECT_FALSE(tokenOf(administrators).isEnvAdministrators(localEID));
    EXPECT_FALSE(tokenOf(QelLocalSID(0, QelLocalSID::type4, masterEID).getSID()).isEnvAdministrators(masterEID));
}

TEST(QelTokenTest, LocalAdministratorsAreThoseOfLocalEnvironment) {
    const LocalConfig config(localEID);
    const QelSID administrators = QelLocalSID(0, QelLocalSID::type2, localEID).getSID();
    EXPECT_TRUE(tokenOf(administrators).isLocalAdministrators());
    EXPECT_TRUE(tokenOf(sidA, {administrators}).isLocalAdministrators());
    EXPECT_FALSE(tokenOf(sidA, {sidB}).isLocalAdministrators());
    EXPECT_FALSE(tokenOf(QelSID()).isLocalAdministrators());
}

// Membership depends on SID and groups only.  The denied set restricts operations and is checked elsewhere.
TEST(QelTokenTest, DeniedSetDoesNotAffectAdministrators) {
    const LocalConfig config(localEID);
    const QelSID administrators = QelLocalSID(0, QelLocalSID::type2, localEID).getSID();
    for (const QelToken& token :
         {tokenOf(administrators, {}, {administrators}), tokenOf(sidA, {administrators}, {administrators, sidA})}) {
        EXPECT_TRUE(token.isEnvAdministrators(localEID));
        EXPECT_TRUE(token.isLocalAdministrators());
    }
}

} // namespace
} // namespace Qel
