#include "QelFunctionalityCore/Configuration/QelAuthName.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

QelAuthName authName(const std::string& name, const std::string& domain, const QelGUID& realm = QelGUID(1, 2)) {
    QelAuthName made;
    made.name = name;
    made.domain = domain;
    made.realm = realm;
    return made;
}

TEST(QelAuthNameTest, DomainAndNameAreBase64AndPrecedeRealm) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(authName("root", "lan"), 0), 0);
    EXPECT_EQ(childValue(*tree, 1374), "bGFu");
    EXPECT_EQ(childValue(*tree, 1026), "cm9vdA==");
    EXPECT_EQ(childValue(*tree, 1957), QelGUID(1, 2).toString());
    ASSERT_EQ(tree->firstChild(), 0);
    EXPECT_EQ(tree->curID(), 1374);
    ASSERT_EQ(tree->nextSibling(), 0);
    EXPECT_EQ(tree->curID(), 1026);
}

TEST(QelAuthNameTest, UnspecifiedFieldsAreNotWrittenAndReadAsUnspecified) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelAuthName(), 0), 0);
    EXPECT_EQ(countChildren(*tree), 1);
    QelAuthName read = authName("old", "old");
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_FALSE(read.name.isSpecified());
    EXPECT_FALSE(read.domain.isSpecified());
}

TEST(QelAuthNameTest, SpecifiedEmptyNameStaysSpecified) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(authName("", ""), 0), 0);
    QelAuthName read;
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_TRUE(read.name.isSpecified());
    EXPECT_TRUE(read.domain.isSpecified());
}

TEST(QelAuthNameTest, MissingRealmFailsAfterNamesAreRead) {
    TestTree tree;
    tree->putValueBase64("root", 1026);
    QelAuthName read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
    EXPECT_EQ(read.name.get(), "root");
    tree->putValue("no identifier", 1957);
    EXPECT_EQ(tree->getObj(read, 0), -1);
}

TEST(QelAuthNameTest, OrdersByDomainThenName) {
    EXPECT_LT(authName("b", "a"), authName("a", "b"));
    EXPECT_LT(authName("a", "a"), authName("b", "a"));
    EXPECT_FALSE(authName("a", "a") < authName("a", "a"));
    QelAuthName withoutDomain = authName("z", "");
    withoutDomain.domain.specify(false);
    EXPECT_LT(withoutDomain, authName("a", ""));
    EXPECT_FALSE(authName("a", "") < withoutDomain);
}

TEST(QelAuthNameTest, SetKeepsFirstOfEqualNamesInDifferentRealms) {
    std::set<QelAuthName> names;
    names.insert(authName("root", "lan", QelGUID(1, 1)));
    names.insert(authName("root", "lan", QelGUID(2, 2)));
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(names.begin()->realm, QelGUID(1, 1));
}

boost::shared_ptr<QelNamedOpStrListProperty> property(const std::string& name, const std::string& value) {
    boost::shared_ptr<QelNamedOpStrListProperty> made(new QelNamedOpStrListProperty(name));
    made->get().push_back(value);
    return made;
}

QelSecurityPrincipal principal() {
    QelSecurityPrincipal made;
    static_cast<QelAuthName&>(made) = authName("alice", "lan");
    made.namesFirst.insert(authName("one", "lan"));
    made.namesFirst.insert(authName("two", "lan"));
    made.namesSecond.insert(authName("three", "lan"));
    made.namesThird.insert(authName("four", "lan"));
    made.properties.insert(property("mail", "alice@example.com"));
    made.properties.insert(property("phone", "1"));
    return made;
}

using Form = QelSecurityPrincipal::PropertyForm;

TEST(QelSecurityPrincipalTest, BothFormsSurviveRoundTrip) {
    for (const Form form : {Form::attributes, Form::properties}) {
        TestTree tree;
        ASSERT_EQ(tree->putObject(principal(), QelSecurityPrincipal::Writer(form), 0), 0);
        EXPECT_EQ(countChildren(*tree, 1029), 2);
        EXPECT_EQ(countChildren(*tree, 1737), 1);
        EXPECT_EQ(countChildren(*tree, 2121), 1);
        QelSecurityPrincipal read;
        ASSERT_EQ(tree->getObject(read, QelSecurityPrincipal::Reader(form), 0), 0);
        EXPECT_EQ(read.name.get(), "alice");
        EXPECT_EQ(read.namesFirst.size(), 2u);
        EXPECT_EQ(read.namesSecond.begin()->name.get(), "three");
        EXPECT_EQ(read.namesThird.begin()->name.get(), "four");
        ASSERT_EQ(read.properties.size(), 2u);
        EXPECT_EQ((*read.properties.begin())->getName(), "mail");
        EXPECT_THAT((*read.properties.begin())->get(), ::testing::ElementsAre("alice@example.com"));
    }
}

TEST(QelSecurityPrincipalTest, FormSelectsPropertyElement) {
    TestTree attributes;
    ASSERT_EQ(attributes->putObj(principal(), 0), 0);
    ASSERT_EQ(attributes->seek(1307), 0);
    EXPECT_EQ(countChildren(*attributes, 1918), 2);
    EXPECT_EQ(countChildren(*attributes, 1930), 0);

    TestTree properties;
    ASSERT_EQ(properties->putObject(principal(), QelSecurityPrincipal::Writer(Form::properties), 0), 0);
    ASSERT_EQ(properties->seek(1307), 0);
    EXPECT_EQ(countChildren(*properties, 1930), 2);
    properties->seekUp();

    QelSecurityPrincipal read;
    ASSERT_EQ(properties->getObj(read, 0), 0);
    EXPECT_TRUE(read.properties.empty());
}

TEST(QelSecurityPrincipalTest, EmptySetsAreNotWrittenAndMayBeMissing) {
    QelSecurityPrincipal bare;
    bare.realm = QelGUID(1, 2);
    TestTree tree;
    ASSERT_EQ(tree->putObj(bare, 0), 0);
    EXPECT_EQ(countChildren(*tree), 1);
    QelSecurityPrincipal read;
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.realm, QelGUID(1, 2));
}

TEST(QelSecurityPrincipalTest, UnreadableSetMemberFailsReadingBeforeName) {
    for (const int set : {1029, 1737, 2121}) {
        TestTree tree;
        tree->newChild(set);
        tree->seekUp();
        tree->putValueBase64("alice", 1026);
        tree->putValue(QelGUID(1, 2).toString(), 1957);
        QelSecurityPrincipal read;
        EXPECT_EQ(tree->getObj(read, 0), -1) << set;
        EXPECT_FALSE(read.name.isSpecified()) << set;
    }
}

TEST(QelSecurityPrincipalTest, UnreadablePropertyFailsReadingAndRestoresPosition) {
    TestTree tree;
    tree->newChild(1307);
    tree->newChild(1918);
    tree->seekUp();
    tree->seekUp();
    tree->putValue(QelGUID(1, 2).toString(), 1957);
    QelSecurityPrincipal read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
    EXPECT_EQ(tree->curName(), "/");
}

TEST(QelSecurityPrincipalTest, MissingRealmFailsReading) {
    TestTree tree;
    QelSecurityPrincipal read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
}

} // namespace

} // namespace Qel
