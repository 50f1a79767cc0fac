#include "QelFunctionalityCore/Security/QelDirRealm.h"

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/TestTree.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const QelGUID realmID(1, 2);

QelDirRealm realm() {
    QelDirRealm made;
    made.id = realmID;
    made.name = "directory";
    made.address = "ldap.example.org";
    made.port = 389;
    made.baseDN = "dc=example,dc=org";
    made.searchDN = "ou=people,dc=example,dc=org";
    made.loginType.loginName = "reader";
    return made;
}

void expectSameDirectory(const QelDirRealm& a, const QelDirRealm& b) {
    EXPECT_EQ(a.name, b.name);
    EXPECT_EQ(a.address, b.address);
    EXPECT_EQ(a.port, b.port);
    EXPECT_EQ(a.baseDN, b.baseDN);
    EXPECT_EQ(a.searchDN, b.searchDN);
    EXPECT_TRUE(a.loginType.loginName == b.loginType.loginName);
}

TEST(QelDirRealmTest, NewRealmHasDirectoryTypeAndIsNotValid) {
    EXPECT_EQ(QelDirRealm().type, 1);
    EXPECT_FALSE(QelDirRealm().isValid());
}

TEST(QelDirRealmTest, IsValidWithServerAndSearchDnWithinBaseDn) {
    EXPECT_TRUE(realm().isValid());
    QelDirRealm made = realm();
    made.searchDN = "DC=Example,DC=Org";
    EXPECT_TRUE(made.isValid()) << "equal except for case";
    made.searchDN = "dc=example";
    EXPECT_FALSE(made.isValid()) << "shorter";
    made.searchDN = "dc=example,dc=net";
    EXPECT_FALSE(made.isValid()) << "same length";
    made.searchDN = "dc=example,dc=org,c=de";
    EXPECT_FALSE(made.isValid()) << "the base DN is a prefix only";
    made.baseDN.clear();
    EXPECT_TRUE(made.isValid()) << "an empty base DN contains everything";
    made = realm();
    made.address.clear();
    EXPECT_FALSE(made.isValid());
    made = realm();
    made.port = 0;
    EXPECT_FALSE(made.isValid());
}

TEST(QelDirRealmTest, WritesLoginThenRealmThenServer) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(realm(), 1957), 0);
    ASSERT_EQ(tree->seek(1957), 0);
    EXPECT_EQ(tree->curType(), "directory:dir_realm");
    EXPECT_THAT(childIDs(*tree), ElementsAre(1630, 1026, 1007, 1010, 1687, 1704, 1958, 1959));
    tree->seekUp();
    QelDirRealm back;
    ASSERT_EQ(tree->getObj(back, 1957), 0);
    EXPECT_EQ(back.id, realmID);
    expectSameDirectory(back, realm());
}

TEST(QelDirRealmTest, WriterRejectsInvalidRealm) {
    QelDirRealm made = realm();
    made.searchDN = "dc=org";
    TestTree tree;
    clearErrorMessage();
    EXPECT_EQ(tree->putObj(made, 0), -1);
    EXPECT_EQ(countChildren(*tree), 0);
    EXPECT_THAT(getErrorMessage(), HasSubstr("cannot write QelDirRealm"));
}

TEST(QelDirRealmTest, WriterStopsAtFirstFailureButIgnoresThatOfLogin) {
    const TestSupport::TestMessage message;
    TestSupport::ScriptedCursor cursor(message.cursor(),
                                       TestSupport::fails(TestSupport::ScriptedCursor::Operation::put));
    EXPECT_EQ(cursor.putObj(realm(), 0), -1);
    EXPECT_EQ(message.cursor().seekPresence(1630), 0) << "a failure to write the login is ignored";
    EXPECT_EQ(TestSupport::writeWithoutValues(realm().loginType), 0);
}

TEST(QelDirRealmTest, ReaderRejectsOtherType) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(realm(), 0), 0);
    tree->deleteChild(1007);
    tree->putValue(2, 1007);
    QelDirRealm back;
    EXPECT_EQ(tree->getObj(back, 0), -1);
    EXPECT_EQ(back.type, 2) << "fields read before the failure are kept";
    EXPECT_EQ(back.name, "directory");
    EXPECT_EQ(back.loginType.loginName.get(), "reader");
    EXPECT_EQ(back.address, "");
}

TEST(QelDirRealmTest, RequiresAllFields) {
    for (const int id : {1026, 1007, 1687, 1704, 1958, 1959}) {
        TestTree tree;
        ASSERT_EQ(tree->putObj(realm(), 0), 0);
        tree->deleteChild(id);
        QelDirRealm back;
        EXPECT_EQ(tree->getObj(back, 0), -1) << id;
        EXPECT_EQ(back.address, id > 1687 ? "ldap.example.org" : "");
        EXPECT_EQ(back.port, id > 1704 ? 389 : 0);
        EXPECT_EQ(back.baseDN, id > 1958 ? "dc=example,dc=org" : "");
        EXPECT_EQ(back.searchDN, "");
    }
}

TEST(QelDirRealmTest, EmptyAddressAndPortZeroStopReader) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(realm(), 0), 0);
    tree->deleteChild(1704);
    tree->putValue(0, 1704);
    QelDirRealm back;
    EXPECT_EQ(tree->getObj(back, 0), -1);
    EXPECT_EQ(back.address, "ldap.example.org");
    EXPECT_EQ(back.baseDN, "");
    tree->deleteChild(1687);
    tree->putChild(1687);
    QelDirRealm none;
    EXPECT_EQ(tree->getObj(none, 0), -1);
    EXPECT_EQ(none.port, 0);
}

TEST(QelDirRealmTest, ReaderRejectsSearchDnOutsideBaseDn) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(realm(), 0), 0);
    tree->deleteChild(1959);
    tree->putValue(std::string("ou=people,dc=example,dc=net"), 1959);
    QelDirRealm back;
    clearErrorMessage();
    EXPECT_EQ(tree->getObj(back, 0), -1);
    EXPECT_EQ(back.searchDN, "ou=people,dc=example,dc=net");
    EXPECT_THAT(getErrorMessage(), HasSubstr("cannot read QelDirRealm"));
}

TEST(QelDirRealmTest, LoginIsOptional) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(realm(), 0), 0);
    tree->deleteChild(1630);
    QelDirRealm back;
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_FALSE(back.loginType.loginName.isSpecified());
}

TEST(QelDirRealmTest, TypeDeterminesClass) {
    TestTree tree;
    const boost::shared_ptr<QelRealm> written(new QelDirRealm(realm()));
    ASSERT_EQ(tree->putObject(written, QelWriterDerived<QelRealm>(), 1957), 0);
    boost::shared_ptr<QelRealm> back;
    ASSERT_EQ(tree->getObject(back, QelReaderDerived<QelRealm>(true), 1957), 0);
    const auto directory = boost::dynamic_pointer_cast<QelDirRealm>(back);
    ASSERT_TRUE(directory);
    expectSameDirectory(*directory, realm());
}

TEST(QelDirRealmTest, SetCopiesNameAndDirectory) {
    QelDirRealm other = realm();
    other.name = "new";
    other.address = "10.0.0.1";
    other.port = 636;
    other.baseDN = "dc=net";
    other.searchDN = "dc=example,dc=net";
    other.loginType.loginName = "writer";
    other.loginType.realm = QelGUID(7, 8);
    QelDirRealm target = realm();
    ASSERT_EQ(target.set(other), 0);
    expectSameDirectory(target, other);
    EXPECT_EQ(target.loginType.realm.get(), QelGUID(7, 8));
}

TEST(QelDirRealmTest, SetDefaultsLoginRealmToOther) {
    QelDirRealm target = realm();
    ASSERT_EQ(target.set(realm()), 0);
    EXPECT_TRUE(target.loginType.realm.isSpecified());
    EXPECT_EQ(target.loginType.realm.get(), realmID);
}

class QelDirRealmSetErrorTest : public testing::Test {
protected:
    void expectSetFails(const QelRealm& other, const char* message) {
        clearErrorMessage();
        EXPECT_EQ(target.set(other), -1);
        EXPECT_EQ(getErrorMessage(), message);
        expectSameDirectory(target, realm());
        EXPECT_FALSE(target.loginType.realm.isSpecified());
    }

    static QelDirRealm renamed() {
        QelDirRealm other = realm();
        other.name = "other";
        other.address = "other";
        return other;
    }

    QelDirRealm target = realm();
};

TEST_F(QelDirRealmSetErrorTest, SetRejectsPlainRealm) {
    QelRealm plain;
    plain.id = realmID;
    plain.type = 1;
    plain.name = "other";
    expectSetFails(plain, "Invalid realm type");
}

TEST_F(QelDirRealmSetErrorTest, SetRejectsInvalidRealm) {
    QelDirRealm other = renamed();
    other.port = 0;
    expectSetFails(other, "Invalid realm parameters");
}

TEST_F(QelDirRealmSetErrorTest, SetRejectsChangedIdOrTypeAndReadOnlyRealm) {
    QelDirRealm other = renamed();
    other.id = QelGUID(9, 9);
    expectSetFails(other, "Couldn't change read-only parameters");
    other = renamed();
    other.readOnly = true;
    expectSetFails(other, "Couldn't change read-only parameters");
    other = renamed();
    other.type = 2;
    expectSetFails(other, "Couldn't change read-only parameters");
}

TEST(QelDirRealmLoginTypeTest, WritesDomainBeforeNameBothInBase64) {
    TestTree tree;
    QelDirRealm::LoginType login;
    EXPECT_EQ(tree->putObj(login, 1630), 0);
    login.loginName = "reader";
    login.domain = "example";
    login.realm = realmID;
    ASSERT_EQ(tree->putObj(login, 0), 0);
    ASSERT_EQ(tree->seek(1630), 0);
    EXPECT_THAT(childIDs(*tree), IsEmpty());
    tree->deleteFromChild();
    EXPECT_THAT(childIDs(*tree), ElementsAre(1374, 1026, 1957));
    EXPECT_EQ(childValue(*tree, 1374), "ZXhhbXBsZQ==");
    EXPECT_EQ(childValue(*tree, 1026), "cmVhZGVy");
}

TEST(QelDirRealmLoginTypeTest, MissingOrUnreadableFieldsBecomeUnspecified) {
    TestTree tree;
    tree->putValue(std::string("!"), 1026);
    tree->putValue(std::string("no identifier"), 1957);
    QelDirRealm::LoginType login;
    login.loginName = "old";
    login.domain = "old";
    login.realm = realmID;
    EXPECT_EQ(tree->getObj(login, 0), 0);
    EXPECT_FALSE(login.loginName.isSpecified());
    EXPECT_FALSE(login.domain.isSpecified());
    EXPECT_FALSE(login.realm.isSpecified());
}

} // namespace
} // namespace Qel
