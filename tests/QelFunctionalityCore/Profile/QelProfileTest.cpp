#include "QelFunctionalityCore/Profile/QelProfile.h"

#include <gmock/gmock.h>

#include "ProfileSamples.h"
#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/TestTree.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

QelAuthName authName(const std::string& name) {
    QelAuthName made;
    made.name = name;
    return made;
}

TEST(QelProfileTest, NewProfileHasOwnerAndNoSettings) {
    const QelProfile byName(authName("ann"));
    EXPECT_FALSE(byName.hasSettings());
    EXPECT_FALSE(byName.sid.isSpecified());
    EXPECT_TRUE(byName.authName.isSpecified());
    EXPECT_EQ(byName.authName->name.get(), "ann");
    EXPECT_EQ(byName.localID, -1);

    const QelProfile bySid(QelSID("S-1-5-42"));
    EXPECT_FALSE(bySid.hasSettings());
    EXPECT_TRUE(bySid.sid.isSpecified());
    EXPECT_EQ(bySid.sid->toString(), "S-1-5-42");
    EXPECT_FALSE(bySid.authName.isSpecified());
    EXPECT_EQ(bySid.localID, -1);
}

TEST(QelProfileTest, DefaultProfileHasOwner) {
    EXPECT_EQ(QelProfile::getDefaultProfile(authName("ann"))->authName->name.get(), "ann");
    EXPECT_EQ(QelProfile::getDefaultProfile(QelSID("S-1-5-42"))->sid->toString(), "S-1-5-42");
    EXPECT_FALSE(QelProfile::getDefaultProfile(QelSID("S-1-5-42"))->hasSettings());
}

TEST(QelProfileTest, AnySectionCountsAsSettings) {
    const auto has = [](auto section) {
        QelProfile profile;
        (profile.*section).specify(true);
        return profile.hasSettings();
    };
    EXPECT_TRUE(has(&QelProfile::personal));
    EXPECT_TRUE(has(&QelProfile::interface));
    EXPECT_TRUE(has(&QelProfile::browse));
    EXPECT_TRUE(has(&QelProfile::desktop));
    EXPECT_TRUE(has(&QelProfile::screen));
    EXPECT_FALSE(has(&QelProfile::sid));
    EXPECT_FALSE(has(&QelProfile::authName));
}

TEST(QelProfileTest, WritesFieldsInOrder) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(fullProfile(), 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1911, 2187, 2184, 2185, 2186, 2188));
}

TEST(QelProfileTest, SidSuppressesNameOnWrite) {
    QelProfile profile(authName("ann"));
    profile.sid = QelSID("S-1-5-42");
    TestTree tree;
    ASSERT_EQ(tree->putObj(profile, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1911));
}

TEST(QelProfileTest, WritesNameWithoutSid) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelProfile(authName("ann")), 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1630));
    QelProfile read;
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.authName->name.get(), "ann");
    EXPECT_FALSE(read.sid.isSpecified());
}

TEST(QelProfileTest, SidSuppressesNameOnRead) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(authName("bob"), 1630), 0);
    ASSERT_EQ(tree->putObj(QelSID("S-1-5-42"), 1911), 0);
    QelProfile read(authName("ann"));
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.sid->toString(), "S-1-5-42");
    EXPECT_TRUE(read.authName.isSpecified());
    EXPECT_EQ(read.authName->name.get(), "ann");
}

TEST(QelProfileTest, MalformedSidFailsBeforeOtherFields) {
    TestTree tree;
    tree->putValue("no sid", 1911);
    ASSERT_EQ(tree->putObj(authName("ann"), 1630), 0);
    ASSERT_EQ(tree->putObj(personalSettings("Ann"), 2187), 0);
    QelProfile read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
    EXPECT_FALSE(read.sid.isSpecified());
    EXPECT_FALSE(read.authName.isSpecified());
    EXPECT_FALSE(read.hasSettings());
    EXPECT_THAT(getErrorMessage(), HasSubstr("element sid (sid) is malformed"));
}

TEST(QelProfileTest, RejectsMalformedName) {
    TestTree tree;
    tree->putChild(1630);
    ASSERT_EQ(tree->putObj(personalSettings("Ann"), 2187), 0);
    QelProfile read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
    EXPECT_FALSE(read.authName.isSpecified());
    EXPECT_FALSE(read.hasSettings());
}

TEST(QelProfileTest, EmptySidFailsWrite) {
    QelProfile profile = fullProfile();
    profile.sid.get().fromBinary(nullptr, 0);
    TestTree tree;
    EXPECT_EQ(tree->putObj(profile, 0), -1);
    EXPECT_NE(tree->seekPresence(2187), 0);
}

TEST(QelProfileTest, MalformedSectionKeepsEarlierSections) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(fullProfile(), 0), 0);
    ASSERT_EQ(tree->seek(2185), 0);
    tree->putChild(2200);
    tree->seekUp();
    QelProfile read;
    EXPECT_EQ(tree->getObj(read, 0), -1);
    EXPECT_THAT(sectionsOf(read), ElementsAre(2187, 2184));
    EXPECT_EQ(tree->curName(), "/");
}

TEST(QelProfileTest, MissingSectionsAreUnchanged) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(personalSettings("Ann"), 2187), 0);
    QelProfile read = fullProfile();
    EXPECT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.personal->personalName, "Ann");
    EXPECT_THAT(sectionsOf(read), ElementsAre(2187, 2184, 2185, 2186, 2188));
    EXPECT_TRUE(read.sid.isSpecified());
    EXPECT_THAT(namesOf(read.browse.get()), ElementsAre("a", "b"));
}

TEST(QelProfileTest, MalformedSectionRemainsSpecified) {
    TestTree tree;
    tree->newChild(2187);
    tree->putValue("Bob", 2191);
    tree->seekUp();
    QelProfile read = fullProfile();
    EXPECT_EQ(tree->getObj(read, 0), -1) << "missing second string";
    EXPECT_TRUE(read.personal.isSpecified());
    EXPECT_EQ(read.personal->personalName, "Bob") << "fields read before the failure";
}

TEST(QelProfileTest, SpecifiedEmptyBrowseListsAreEmptyElement) {
    QelProfile profile;
    profile.browse = QelBrowseSettings();
    TestTree tree;
    ASSERT_EQ(tree->putObj(profile, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(2185));
    ASSERT_EQ(tree->seek(2185), 0);
    EXPECT_EQ(countChildren(*tree), 0);
    tree->seekUp();
    QelProfile read;
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_TRUE(read.browse.isSpecified());
    EXPECT_THAT(read.browse->items, IsEmpty());
    EXPECT_FALSE(read.screen.isSpecified());
}

TEST(QelProfileTest, LocalIDIsCopiedButNotSent) {
    QelProfile profile = fullProfile();
    profile.localID = 5;
    const QelProfile copy = profile;
    EXPECT_EQ(copy.localID, 5);
    TestTree tree;
    ASSERT_EQ(tree->putObj(profile, 0), 0);
    QelProfile read;
    ASSERT_EQ(tree->getObj(read, 0), 0);
    EXPECT_EQ(read.localID, -1);
}

// --- Merging

TEST(QelProfileMergeTest, ReplacesListsByName) {
    QelProfile here;
    here.browse = settingsOf<QelBrowseSettings>({"b", "c"});
    QelProfile other;
    other.browse = QelBrowseSettings();
    other.browse.get().items = {browseInfo("a", 1), browseInfo("b", 2)};
    EXPECT_EQ(here.merge(other), 0);
    EXPECT_THAT(namesOf(here.browse.get()), ElementsAre("a", "b", "c"));
    EXPECT_EQ(here.browse->items.find(browseInfo("b"))->value2210, 2);
    EXPECT_THAT(namesOf(other.browse.get()), ElementsAre("a", "b"));
}

TEST(QelProfileMergeTest, DoesNotMergeColumns) {
    QelBrowseInfo wide("a");
    wide.columns2216.resize(3);
    QelBrowseInfo narrow("a");
    narrow.columns2211.resize(1);
    QelProfile here;
    here.browse = QelBrowseSettings();
    here.browse.get().items = {wide};
    QelProfile other;
    other.browse = QelBrowseSettings();
    other.browse.get().items = {narrow};
    EXPECT_EQ(here.merge(other), 0);
    EXPECT_EQ(here.browse->items.begin()->columns2216.size(), 0U);
    EXPECT_EQ(here.browse->items.begin()->columns2211.size(), 1U);
}

TEST(QelProfileMergeTest, SpecifiedEmptyListsSpecifySectionAndKeepItems) {
    QelProfile here;
    here.browse.get() = settingsOf<QelBrowseSettings>({"b", "c"});
    ASSERT_FALSE(here.browse.isSpecified());
    QelProfile other;
    other.browse = QelBrowseSettings();
    EXPECT_EQ(here.merge(other), 0);
    EXPECT_TRUE(here.browse.isSpecified());
    EXPECT_THAT(namesOf(here.browse.get()), ElementsAre("b", "c"));
}

TEST(QelProfileMergeTest, UnspecifiedListsChangeNothing) {
    QelProfile here;
    QelProfile other;
    other.browse.get() = settingsOf<QelBrowseSettings>({"a"});
    other.screen.get() = settingsOf<QelScreenSettings>({"s"});
    EXPECT_EQ(here.merge(other), 0);
    EXPECT_FALSE(here.hasSettings());
    EXPECT_THAT(here.browse->items, IsEmpty());
    EXPECT_THAT(here.screen->items, IsEmpty());
}

TEST(QelProfileMergeTest, ReplacesOtherSections) {
    QelProfile here;
    here.personal = personalSettings("Ann");
    here.personal.get().localID = 1;
    here.desktop = QelDesktopSettings();
    here.desktop.get().actions.resize(2);
    QelProfile other;
    other.personal = personalSettings("Bob");
    other.personal.get().localID = 2;
    other.interface = QelInterfaceSettings();
    EXPECT_EQ(here.merge(other), 0);
    EXPECT_EQ(here.personal->personalName, "Bob");
    EXPECT_EQ(here.personal->localID, 2);
    EXPECT_EQ(here.desktop->actions.size(), 2U);
    EXPECT_THAT(sectionsOf(here), ElementsAre(2187, 2184, 2186));
}

TEST(QelProfileMergeTest, CopiesOwnerButNeverOverwritesIt) {
    QelProfile other(authName("bob"));
    other.sid = QelSID("S-1-5-43");

    QelProfile bySid(QelSID("S-1-5-42"));
    EXPECT_EQ(bySid.merge(other), 0);
    EXPECT_EQ(bySid.sid->toString(), "S-1-5-42");
    EXPECT_EQ(bySid.authName->name.get(), "bob") << "SID and name independently";
    EXPECT_TRUE(bySid.authName.isSpecified());

    QelProfile byName(authName("ann"));
    EXPECT_EQ(byName.merge(other), 0);
    EXPECT_EQ(byName.authName->name.get(), "ann");
    EXPECT_EQ(byName.sid->toString(), "S-1-5-43");

    QelProfile unowned;
    EXPECT_EQ(byName.merge(unowned), 0);
    EXPECT_TRUE(byName.sid.isSpecified());
    EXPECT_EQ(unowned.merge(QelProfile()), 0);
    EXPECT_FALSE(unowned.sid.isSpecified());
    EXPECT_FALSE(unowned.authName.isSpecified());
}

TEST(QelProfileMergeTest, MergeWithItselfChangesNothing) {
    QelProfile profile = fullProfile();
    EXPECT_EQ(profile.merge(profile), 0);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2187, 2184, 2185, 2186, 2188));
    EXPECT_THAT(namesOf(profile.browse.get()), ElementsAre("a", "b"));
    EXPECT_THAT(namesOf(profile.screen.get()), ElementsAre("s", "t"));
}

} // namespace

} // namespace Qel
