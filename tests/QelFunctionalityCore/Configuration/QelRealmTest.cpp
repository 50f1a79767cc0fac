#include "QelFunctionalityCore/Configuration/QelRealm.h"

#include <gtest/gtest.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

QelRealm realm(const QelGUID& id, int type, const std::string& name, bool readOnly = false) {
    QelRealm made;
    made.id = id;
    made.type = type;
    made.name = name;
    made.readOnly = readOnly;
    return made;
}

TEST(QelRealmTest, DefaultIsEmpty) {
    const QelRealm fresh;
    EXPECT_FALSE(fresh.id.isValid());
    EXPECT_EQ(fresh.type, 0);
    EXPECT_TRUE(fresh.name.empty());
    EXPECT_FALSE(fresh.readOnly);
}

TEST(QelRealmTest, ReadOnlyFlagSurvivesRoundTrip) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(realm(QelGUID(1, 2), 3, "users", true), 1957), 0);
    ASSERT_EQ(tree->seek(1957), 0);
    EXPECT_EQ(tree->curType(), "env:realm");
    EXPECT_EQ(countChildren(*tree), 4);
    EXPECT_EQ(childValue(*tree, 2116), "");
    tree->seekUp();

    QelRealm read;
    ASSERT_EQ(tree->getObj(read, 1957), 0);
    EXPECT_TRUE(read.readOnly);
    EXPECT_EQ(read.id, QelGUID(1, 2));
    EXPECT_EQ(read.type, 3);
    EXPECT_EQ(read.name, "users");
}

TEST(QelRealmTest, WritableRealmHasNoFlagElement) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(realm(QelGUID(1, 2), 3, "users"), 0), 0);
    EXPECT_NE(tree->seekPresence(2116), 0);
    QelRealm read = realm(QelGUID(), 0, "", true);
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_FALSE(read.readOnly);
}

TEST(QelRealmTest, FlagIsFirstAndIdLast) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(realm(QelGUID(1, 2), 3, "users", true), 0), 0);
    ASSERT_EQ(tree->firstChild(), 0);
    for (const int id : {2116, 1026, 1007, 1010}) {
        EXPECT_EQ(tree->curID(), id);
        EXPECT_EQ(tree->nextSibling() == 0, id != 1010);
    }
}

TEST(QelRealmTest, NameAndTypeAreRequired) {
    TestTree withoutName;
    withoutName->putValue(QelGUID(1, 2).toString(), 1010);
    withoutName->putChild(2116);
    withoutName->putValue(3, 1007);
    QelRealm read;
    EXPECT_EQ(withoutName->getObj(read, 0), -1);
    // The ID and the flag are read before the name, the type after it.
    EXPECT_EQ(read.id, QelGUID(1, 2));
    EXPECT_TRUE(read.readOnly);
    EXPECT_EQ(read.type, 0);

    TestTree withoutType;
    withoutType->putValue("users", 1026);
    EXPECT_EQ(withoutType->getObj(read, 0), -1);
    withoutType->putValue("many", 1007);
    EXPECT_EQ(withoutType->getObj(read, 0), -1);
    EXPECT_EQ(read.name, "users");
}

TEST(QelRealmTest, IdMayBeMissingOrUnreadable) {
    TestTree tree;
    tree->putValue("users", 1026);
    tree->putValue(3, 1007);
    QelRealm read = realm(QelGUID(1, 2), 0, "");
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.id, QelGUID(1, 2));
    tree->putValue("no identifier", 1010);
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.id, QelGUID(1, 2));
}

TEST(QelRealmTest, SetCopiesOnlyName) {
    QelRealm target = realm(QelGUID(1, 2), 3, "old");
    EXPECT_EQ(target.set(realm(QelGUID(1, 2), 3, "new")), 0);
    EXPECT_EQ(target.name, "new");
    EXPECT_EQ(target.id, QelGUID(1, 2));
    EXPECT_EQ(target.type, 3);
    EXPECT_FALSE(target.readOnly);
}

TEST(QelRealmTest, SetRejectsOtherDifferences) {
    const QelRealm original = realm(QelGUID(1, 2), 3, "old");
    for (const QelRealm& other :
         {realm(QelGUID(1, 3), 3, "new"), realm(QelGUID(1, 2), 4, "new"), realm(QelGUID(1, 2), 3, "new", true)}) {
        clearErrorMessage();
        QelRealm target = original;
        EXPECT_EQ(target.set(other), -1);
        EXPECT_EQ(target.name, "old");
        EXPECT_EQ(getErrorMessage(), "Couldn't change read-only parameters");
    }
}

TEST(QelRealmTest, SetFailsOnReadOnlyRealmEvenWithoutChange) {
    clearErrorMessage();
    QelRealm target = realm(QelGUID(1, 2), 3, "same", true);
    EXPECT_EQ(target.set(realm(QelGUID(1, 2), 3, "same")), -1);
    EXPECT_EQ(getErrorMessage(), "Couldn't change read-only parameters");
}

TEST(QelRealmTest, WellKnownRealmsDifferInLastByteOfSecondHalf) {
    const QelGUID* const known[] = {
        &QelRealm::sessionRealmID,        &QelRealm::foreignSecurityPrincipalRealmID,
        &QelRealm::externalSystemRealmID, &QelRealm::sqlRealmID,
        &QelRealm::internalRealmID,       &QelRealm::autoRealmID,
    };
    unsigned long long last = 2;
    for (const QelGUID* id : known)
        EXPECT_EQ(*id, QelGUID(0, static_cast<long long>(last++ << 56)));
    EXPECT_FALSE(QelRealm::systemRealmID.isValid());
    EXPECT_EQ(QelRealm::sessionRealmID.toString(), "00000000-0000-0000-0000-000000000002");
}

TEST(QelRealmTest, UntypedElementIsReadAsPlainRealm) {
    TestTree tree;
    tree->putValue("users", 1026);
    tree->putValue(3, 1007);
    boost::shared_ptr<QelRealm> read;
    EXPECT_EQ(tree->getObject(read, QelReaderDerived<QelRealm>(false), 0), -1);
    ASSERT_EQ(tree->getObject(read, QelReaderDerived<QelRealm>(true), 0), 0);
    EXPECT_EQ(read->name, "users");
    EXPECT_EQ(QelDerivedParserFactory<QelRealm>::defaultFactory(), &factoryQelRealm);
}

TEST(QelRealmTest, RealmListIsSequenceOfElements) {
    QelRealmList realms;
    realms.emplace_back(new QelRealm(realm(QelGUID(1, 2), 3, "first")));
    realms.emplace_back(new QelRealm(realm(QelGUID(1, 3), 3, "second")));
    TestTree tree;
    ASSERT_EQ(tree->putObject(realms, (QelWriterDerivedList<int, QelRealm>(1957)), 0), 0);
    QelRealmList read;
    ASSERT_EQ(tree->getObject(read, (QelReaderDerivedList<int, QelRealm>(1957, QelReaderRequired, true)), 0), 0);
    ASSERT_EQ(read.size(), 2u);
    EXPECT_EQ(read[0]->name, "first");
    EXPECT_EQ(read[1]->id, QelGUID(1, 3));
}

} // namespace

} // namespace Qel
