#include "QelFunctionalityCore/Security/QelPolicy.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/TestTree.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

QelPolicy policy() {
    QelPolicy made;
    made.policyID = QelGUID(1, 2);
    made.name = "limits";
    made.description = "what a user may have";
    made.assignments = std::map<QelGUID, int>{{QelGUID(3, 4), 5}};
    made.rules = QelPolicyRuleMap{{"memory", "64"}, {"processors", "4"}};
    return made;
}

void putRule(QelMessageIterator& cursor, const char* name, const char* value) {
    cursor.newChild(2273);
    if (name)
        cursor.putValue(std::string(name), 1010);
    if (value)
        cursor.putValue(std::string(value), 1018);
    cursor.seekUp();
}

TEST(QelPolicyTest, UnspecifiedFieldsRoundTripAsUnspecified) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelPolicy(), 0), 0);
    EXPECT_EQ(countChildren(*tree), 0);
    QelPolicy back = policy();
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_FALSE(back.policyID.isSpecified());
    EXPECT_FALSE(back.name.isSpecified());
    EXPECT_FALSE(back.description.isSpecified());
    EXPECT_FALSE(back.assignments.isSpecified());
    EXPECT_FALSE(back.rules.isSpecified());
}

TEST(QelPolicyTest, SpecifiedFieldsRoundTrip) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(policy(), 0), 0);
    EXPECT_EQ(childValue(*tree, 1026), "bGltaXRz");
    QelPolicy back;
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_TRUE(back.policyID == policy().policyID);
    EXPECT_TRUE(back.name == policy().name);
    EXPECT_TRUE(back.description == policy().description);
    EXPECT_TRUE(back.assignments == policy().assignments);
    EXPECT_TRUE(back.rules == policy().rules);
}

TEST(QelPolicyTest, EmptySpecifiedMapsRoundTripAsSpecified) {
    TestTree tree;
    QelPolicy written;
    written.assignments = std::map<QelGUID, int>();
    written.rules = QelPolicyRuleMap();
    ASSERT_EQ(tree->putObj(written, 0), 0);
    EXPECT_EQ(countChildren(*tree), 2);
    QelPolicy back;
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_TRUE(back.assignments.isSpecified());
    EXPECT_TRUE(back.rules.isSpecified());
}

TEST(QelPolicyTest, AssignmentHasObjectAndLevel) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(policy(), 0), 0);
    ASSERT_EQ(tree->seek(2275), 0);
    ASSERT_EQ(tree->seek(2277), 0);
    EXPECT_EQ(childValue(*tree, 2285), QelGUID(3, 4).toString());
    EXPECT_EQ(childValue(*tree, 2286), "5");
}

TEST(QelPolicyTest, OnlyRulesAreInNamespace292) {
    TestTree tree;
    ASSERT_EQ(tree->putObject(policy(), QelPolicy::Writer(), 1115), 0);
    tree->newChild(1026);
    EXPECT_EQ(tree->curNamespaceID(), 0);
    tree->seekUp();
    ASSERT_EQ(tree->seek(1115), 0);
    ASSERT_EQ(tree->seek(2276), 0);
    EXPECT_EQ(tree->curNamespaceID(), 0);
    ASSERT_EQ(tree->seek(2273), 0);
    EXPECT_EQ(tree->curNamespaceID(), 292);
    ASSERT_EQ(tree->seek(1010), 0);
    EXPECT_EQ(tree->curNamespaceID(), 292);
}

TEST(QelPolicyTest, UnreadableFieldStopsReader) {
    for (const int id : {1010, 1026, 1496}) {
        TestTree tree;
        tree->putValue(std::string("!"), id);
        tree->newChild(2276);
        tree->seekUp();
        QelPolicy back = policy();
        EXPECT_NE(tree->getObj(back, 0), 0) << id;
        EXPECT_EQ(back.policyID.isSpecified(), false) << id;
        EXPECT_EQ(back.name.isSpecified(), id == 1010) << id;
        EXPECT_TRUE(back.rules.isSpecified()) << "fields after it are not read";
    }
}

TEST(QelPolicyTest, UnreadableEntryLeavesMapUnspecified) {
    TestTree assignments;
    assignments->newChild(2275);
    assignments->newChild(2277);
    assignments->putValue(QelGUID(3, 4).toString(), 2285);
    assignments->seekRoot();
    QelPolicy back = policy();
    EXPECT_EQ(assignments->getObj(back, 0), -1);
    EXPECT_FALSE(back.assignments.isSpecified());

    TestTree rules;
    rules->newChild(2276);
    putRule(*rules, "memory", nullptr);
    rules->seekUp();
    back = policy();
    EXPECT_EQ(rules->getObj(back, 0), -1);
    EXPECT_FALSE(back.rules.isSpecified());
}

TEST(QelPolicyTest, OnlyEffectivePolicyReportsFailedWrite) {
    EXPECT_EQ(TestSupport::writeWithoutValues(policy()), 0);
    EXPECT_EQ(TestSupport::writeWithoutValues(QelObjectToPolicyAssignment()), 0);
    EXPECT_EQ(TestSupport::writeWithoutValues(QelEffectivePolicyAssignment()), -1);
}

TEST(QelPolicyRuleMapTest, RuleRequiresNameAndValue) {
    TestTree tree;
    putRule(*tree, "memory", "64");
    QelPolicyRuleMap rules;
    EXPECT_EQ(QelPolicyRuleMapReader()(*tree, rules), 0);
    EXPECT_THAT(rules, ElementsAre(Pair("memory", "64")));
    putRule(*tree, nullptr, "4");
    EXPECT_EQ(QelPolicyRuleMapReader()(*tree, rules), -1);
}

TEST(QelObjectToPolicyAssignmentTest, RequiresObjectButNotLevel) {
    TestTree tree;
    tree->putValue(std::string("high"), 2286);
    QelObjectToPolicyAssignment back;
    back.policyLevel = 3;
    EXPECT_NE(tree->getObj(back, 0), 0);
    tree->putValue(QelGUID(1, 2).toString(), 1010);
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.object, QelGUID(1, 2));
    EXPECT_EQ(back.policyLevel, 3);
}

TEST(QelEffectivePolicyAssignmentTest, OmitsUnspecifiedRules) {
    TestTree tree;
    QelEffectivePolicyAssignment written;
    written.policyID = QelGUID(1, 2);
    ASSERT_EQ(tree->putObj(written, 0), 0);
    EXPECT_EQ(countChildren(*tree), 1);
    QelEffectivePolicyAssignment back;
    back.rules = QelPolicyRuleMap{{"memory", "64"}};
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.policyID, QelGUID(1, 2));
    EXPECT_FALSE(back.rules.isSpecified());
}

TEST(QelEffectivePolicyAssignmentTest, RequiresPolicy) {
    TestTree tree;
    tree->newChild(2276);
    tree->seekUp();
    QelEffectivePolicyAssignment back;
    EXPECT_NE(tree->getObj(back, 0), 0);
    EXPECT_FALSE(back.rules.isSpecified()) << "the policy is read first";
}

TEST(QelEffectivePolicyAssignmentTest, PresentRulesAreSpecifiedEvenIfUnreadable) {
    TestTree tree;
    tree->putValue(QelGUID(1, 2).toString(), 2285);
    tree->newChild(2276);
    putRule(*tree, "memory", "64");
    putRule(*tree, "processors", nullptr);
    tree->seekUp();
    QelEffectivePolicyAssignment back;
    EXPECT_EQ(tree->getObj(back, 0), -1);
    EXPECT_TRUE(back.rules.isSpecified());
    EXPECT_THAT(back.rules.get(), ElementsAre(Pair("memory", "64")));
}

} // namespace
} // namespace Qel
