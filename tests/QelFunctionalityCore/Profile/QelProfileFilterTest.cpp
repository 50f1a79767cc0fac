#include "QelFunctionalityCore/Profile/QelProfileFilter.h"

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>

#include "ProfileSamples.h"
#include "QelFunctionalityCore/TestTree.h"
#include "support/ScriptedCursor.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int profileID = 1307;

/// A filter with these sections specified.
template <class... Section> QelProfile filterOf(Section... sections) {
    QelProfile filter;
    ((filter.*sections).specify(true), ...);
    return filter;
}

/// A message with the cursor in a profile's element.
class QelProfileFilterTest : public testing::Test {
protected:
    QelProfileFilterTest() { tree->newChild(profileID); }

    int writeFilter(const QelProfile& filter) { return tree->putObject(filter, QelProfile::filterWriter(), 0); }
    int readFilter(QelProfile& filter) { return tree->getObject(filter, QelProfile::filterReader(), 0); }
    void putProfile(const QelProfile& stored) { ASSERT_EQ(tree->putObj(stored, 0), 0); }
    int readDifference(const QelProfile& filter) {
        return tree->getObject(profile, QelProfile::differenceReader(boost::make_shared<QelProfile>(filter)), 0);
    }
    int readIntersection(const QelProfile& filter) {
        return tree->getObject(profile, QelProfile::intersectionReader(boost::make_shared<QelProfile>(filter)), 0);
    }
    void expectCursorRestored() { EXPECT_EQ(tree->curID(), profileID); }
    void expectCursorInBrowse() {
        EXPECT_EQ(tree->curID(), 2185);
        tree->seekUp();
        expectCursorRestored();
    }

    TestTree tree;
    QelProfile profile;
};

// --- Writing

TEST_F(QelProfileFilterTest, WritesSectionsAsEmptyElements) {
    const QelProfile full = fullProfile();
    QelProfile filter = full;
    filter.browse.specify(false);
    ASSERT_EQ(writeFilter(filter), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1911, 2187, 2184, 2186, 2188));
    for (const int id : {2187, 2184, 2186, 2188}) {
        EXPECT_EQ(childValue(*tree, id), "") << id;
        ASSERT_EQ(tree->seek(id), 0);
        EXPECT_EQ(countChildren(*tree), 0) << id;
        tree->seekUp();
    }
    expectCursorRestored();
}

TEST_F(QelProfileFilterTest, WritesScreensAsOneEmptyElement) {
    QelProfile filter;
    filter.screen = settingsOf<QelScreenSettings>({"s", "t"});
    ASSERT_EQ(writeFilter(filter), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(2188));
    ASSERT_EQ(tree->seek(2188), 0);
    EXPECT_EQ(countChildren(*tree), 0);
}

TEST_F(QelProfileFilterTest, WritesNamesOfBrowseLists) {
    QelProfile filter;
    filter.browse = settingsOf<QelBrowseSettings>({"a", "b"});
    ASSERT_EQ(writeFilter(filter), 0);
    EXPECT_EQ(tree->curID(), 2185) << "the cursor stays in the element";
    EXPECT_THAT(childIDs(*tree), ElementsAre(2200, 2200));
    ASSERT_EQ(tree->seek(2200), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(2209));
    EXPECT_EQ(childValue(*tree, 2209), "a");
    ASSERT_EQ(tree->nextSibling(), 0);
    EXPECT_EQ(childValue(*tree, 2209), "b");
}

TEST_F(QelProfileFilterTest, NestsLaterSectionsInElementOfBrowseLists) {
    ASSERT_EQ(
        writeFilter(filterOf(&QelProfile::screen, &QelProfile::browse, &QelProfile::desktop, &QelProfile::personal)),
        0);
    EXPECT_EQ(tree->curID(), 2185);
    EXPECT_THAT(childIDs(*tree), ElementsAre(2186, 2188));
    tree->seekUp();
    EXPECT_THAT(childIDs(*tree), ElementsAre(2187, 2185));
    expectCursorRestored();
}

TEST_F(QelProfileFilterTest, SidSuppressesName) {
    QelProfile filter{QelAuthName()};
    ASSERT_EQ(writeFilter(filter), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1630));
    TestTree other;
    filter.sid = QelSID("S-1-5-42");
    ASSERT_EQ(other->putObject(filter, QelProfile::filterWriter(), 0), 0);
    EXPECT_THAT(childIDs(*other), ElementsAre(1911));
}

TEST_F(QelProfileFilterTest, EmptySidFailsWriteBeforeSections) {
    QelProfile filter = fullProfile();
    filter.sid.get().fromBinary(nullptr, 0);
    EXPECT_EQ(writeFilter(filter), -1);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1911));
}

TEST_F(QelProfileFilterTest, RejectedElementFailsWrite) {
    for (const int rejected : {2187, 2184, 2209, 2186, 2188}) {
        const TestSupport::TestMessage message;
        TestSupport::ScriptedCursor cursor(
            message.cursor(), TestSupport::fails(TestSupport::ScriptedCursor::Operation::put, {rejected}, 5));
        EXPECT_EQ(cursor.putObject(fullProfile(), QelProfile::filterWriter(), 0), -1) << rejected;
        EXPECT_NE(message.cursor().seekPresence(rejected), 0) << rejected;
    }
}

TEST_F(QelProfileFilterTest, RejectedNameFailsWriteOfItem) {
    const TestSupport::TestMessage message;
    TestSupport::ScriptedCursor cursor(message.cursor(),
                                       TestSupport::fails(TestSupport::ScriptedCursor::Operation::put, {2217}, 5));
    EXPECT_EQ(cursor.putObject(screenInfo("s"), QelScreenInfo::filterWriter(), 0), -1);
}

// --- Reading

TEST_F(QelProfileFilterTest, ReadsPresentSectionAsSpecified) {
    tree->putValue("no settings at all", 2187);
    profile.personal = personalSettings("Ann");
    EXPECT_EQ(readFilter(profile), 0);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2187));
    EXPECT_EQ(profile.personal->personalName, "");
    EXPECT_EQ(profile.personal->personalText, "");
}

TEST_F(QelProfileFilterTest, IgnoresContentOfSections) {
    putProfile(fullProfile());
    EXPECT_EQ(readFilter(profile), 0);
    EXPECT_EQ(profile.sid->toString(), "S-1-5-42");
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2187, 2184, 2185, 2186, 2188));
    EXPECT_EQ(profile.personal->personalName, "");
    EXPECT_THAT(profile.browse->items, IsEmpty());
    EXPECT_THAT(profile.screen->items, IsEmpty());
    expectCursorRestored();
}

TEST_F(QelProfileFilterTest, MissingSectionsAreUnchanged) {
    profile = fullProfile();
    EXPECT_EQ(readFilter(profile), 0);
    EXPECT_EQ(profile.personal->personalName, "Ann");
    EXPECT_THAT(namesOf(profile.browse.get()), ElementsAre("a", "b"));
}

TEST_F(QelProfileFilterTest, IgnoresWrittenNames) {
    QelProfile filter;
    filter.browse = settingsOf<QelBrowseSettings>({"a", "b"});
    ASSERT_EQ(writeFilter(filter), 0);
    tree->seekUp();
    EXPECT_EQ(readFilter(profile), 0);
    EXPECT_TRUE(profile.browse.isSpecified());
    EXPECT_THAT(profile.browse->items, IsEmpty());
}

TEST_F(QelProfileFilterTest, IgnoresSectionsNestedInElementOfBrowseLists) {
    ASSERT_EQ(writeFilter(filterOf(&QelProfile::browse, &QelProfile::desktop, &QelProfile::screen)), 0);
    tree->seekUp();
    EXPECT_EQ(readFilter(profile), 0);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2185));
}

TEST_F(QelProfileFilterTest, ValidatesAndDiscardsItemsNextToSection) {
    tree->putChild(2185);
    tree->putChild(2188);
    tree->putObject(browseInfo("a"), QelBrowseInfo::filterWriter(), 2200);
    tree->putObject(screenInfo("s"), QelScreenInfo::filterWriter(), 2219);
    EXPECT_EQ(readFilter(profile), 0);
    EXPECT_THAT(profile.browse->items, IsEmpty());
    EXPECT_THAT(profile.screen->items, IsEmpty());
    expectCursorRestored();
}

TEST_F(QelProfileFilterTest, RejectsItemWithoutNameNextToBrowseLists) {
    tree->putChild(2185);
    tree->putChild(2186);
    tree->putChild(2188);
    tree->putChild(2200);
    EXPECT_EQ(readFilter(profile), -1);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2185, 2186));
    expectCursorRestored();
}

TEST_F(QelProfileFilterTest, RejectsItemWithoutNameNextToScreens) {
    tree->putChild(2188);
    tree->putChild(2219);
    EXPECT_EQ(readFilter(profile), -1);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2188));
}

TEST_F(QelProfileFilterTest, IgnoresItemsWithoutTheirSection) {
    tree->putChild(2200);
    tree->putChild(2219);
    EXPECT_EQ(readFilter(profile), 0);
    EXPECT_FALSE(profile.hasSettings());
}

TEST_F(QelProfileFilterTest, ReadsOwner) {
    ASSERT_EQ(writeFilter(QelProfile{QelAuthName()}), 0);
    EXPECT_EQ(readFilter(profile), 0);
    EXPECT_TRUE(profile.authName.isSpecified());
    EXPECT_FALSE(profile.sid.isSpecified());

    ASSERT_EQ(tree->putObj(QelSID("S-1-5-42"), 1911), 0);
    profile = QelProfile();
    EXPECT_EQ(readFilter(profile), 0);
    EXPECT_TRUE(profile.sid.isSpecified());
    EXPECT_FALSE(profile.authName.isSpecified());
}

TEST_F(QelProfileFilterTest, MalformedOwnerFailsBeforeSections) {
    for (const int id : {1911, 1630}) {
        tree->putValue("malformed", id);
        tree->putChild(2187);
        EXPECT_EQ(readFilter(profile), -1) << id;
        EXPECT_FALSE(profile.hasSettings()) << id;
        ASSERT_EQ(tree->deleteChild(id), 0);
    }
}

// --- Difference and intersection

TEST_F(QelProfileFilterTest, FilterWithoutSectionsReadsWholeProfile) {
    putProfile(fullProfile());
    const auto expectAll = [&](int result) {
        EXPECT_EQ(result, 0);
        EXPECT_EQ(profile.sid->toString(), "S-1-5-42");
        EXPECT_THAT(sectionsOf(profile), ElementsAre(2187, 2184, 2185, 2186, 2188));
        expectCursorRestored();
        profile = QelProfile();
    };
    expectAll(tree->getObject(profile, QelProfile::differenceReader(nullptr), 0));
    expectAll(tree->getObject(profile, QelProfile::intersectionReader(nullptr), 0));
    expectAll(readDifference(QelProfile(QelSID("S-1-5-7"))));
    expectAll(readIntersection(QelProfile(QelAuthName())));
}

TEST_F(QelProfileFilterTest, FilterWithSectionsSkipsOwner) {
    putProfile(fullProfile());
    EXPECT_EQ(readDifference(filterOf(&QelProfile::personal)), 0);
    EXPECT_EQ(readIntersection(filterOf(&QelProfile::personal)), 0);
    EXPECT_FALSE(profile.sid.isSpecified());
    EXPECT_FALSE(profile.authName.isSpecified());
}

TEST_F(QelProfileFilterTest, DifferenceReadsSectionsNotInFilter) {
    QelProfile stored;
    stored.personal = personalSettings("Ann");
    stored.interface = QelInterfaceSettings();
    putProfile(stored);
    EXPECT_EQ(readDifference(filterOf(&QelProfile::personal)), 0);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2184));
}

TEST_F(QelProfileFilterTest, IntersectionReadsSectionsInFilter) {
    QelProfile stored;
    stored.personal = personalSettings("Ann");
    stored.interface = QelInterfaceSettings();
    putProfile(stored);
    EXPECT_EQ(readIntersection(filterOf(&QelProfile::personal, &QelProfile::desktop)), 0);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2187));
    EXPECT_EQ(profile.personal->personalName, "Ann");
}

TEST_F(QelProfileFilterTest, EachSectionIsInDifferenceOrIntersection) {
    putProfile(fullProfile());
    const auto expectSplit = [&](auto section, int id) {
        const QelProfile filter = filterOf(section);
        EXPECT_EQ(readIntersection(filter), 0);
        EXPECT_THAT(sectionsOf(profile), ElementsAre(id));
        profile = QelProfile();
        EXPECT_EQ(readDifference(filter), 0);
        EXPECT_EQ(sectionsOf(profile).size(), 4U);
        EXPECT_THAT(sectionsOf(profile), testing::Not(testing::Contains(id)));
        profile = QelProfile();
        expectCursorRestored();
    };
    expectSplit(&QelProfile::personal, 2187);
    expectSplit(&QelProfile::interface, 2184);
    expectSplit(&QelProfile::browse, 2185);
    expectSplit(&QelProfile::desktop, 2186);
    expectSplit(&QelProfile::screen, 2188);
}

TEST_F(QelProfileFilterTest, IntersectionSelectsBrowseListsByNameAndMissesLaterSections) {
    putProfile(fullProfile());
    QelProfile filter = fullProfile();
    filter.browse = settingsOf<QelBrowseSettings>({"b", "c"});
    EXPECT_EQ(readIntersection(filter), 0);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2187, 2184, 2185));
    EXPECT_THAT(namesOf(profile.browse.get()), ElementsAre("b"));
    expectCursorInBrowse();
}

TEST_F(QelProfileFilterTest, EmptyBrowseListsRestoreCursor) {
    QelProfile stored = fullProfile();
    stored.browse = QelBrowseSettings();
    putProfile(stored);
    EXPECT_EQ(readIntersection(fullProfile()), 0);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2187, 2184, 2185, 2186, 2188));
    expectCursorRestored();
}

TEST_F(QelProfileFilterTest, ScreensAreNotSelectedByName) {
    putProfile(fullProfile());
    QelProfile filter;
    filter.screen = settingsOf<QelScreenSettings>({"s"});
    EXPECT_EQ(readIntersection(filter), 0);
    EXPECT_THAT(namesOf(profile.screen.get()), ElementsAre("s", "t"));
}

TEST_F(QelProfileFilterTest, NamesInUnspecifiedSectionApplyToDifference) {
    putProfile(fullProfile());
    QelProfile filter = filterOf(&QelProfile::personal);
    filter.browse.get() = settingsOf<QelBrowseSettings>({"a"});
    EXPECT_EQ(readDifference(filter), 0);
    EXPECT_THAT(sectionsOf(profile), ElementsAre(2184, 2185));
    EXPECT_THAT(namesOf(profile.browse.get()), ElementsAre("b"));
    expectCursorInBrowse();
}

TEST_F(QelProfileFilterTest, MalformedSectionFailsAndKeepsEarlierSections) {
    for (const int bad : {2187, 2184, 2186, 2188}) {
        TestTree other;
        ASSERT_EQ(other->putObj(fullProfile(), 0), 0);
        ASSERT_EQ(other->seek(bad), 0);
        ASSERT_EQ(other->firstChild(), 0);
        ASSERT_EQ(other->deleteFromChild(), 0);
        if (bad == 2188)
            other->putChild(2219);
        other->seekRoot();
        std::vector<int> before;
        for (const int id : {2187, 2184, 2185, 2186, 2188}) {
            if (id == bad)
                break;
            before.push_back(id);
        }
        const auto everything = filterOf(&QelProfile::personal, &QelProfile::interface, &QelProfile::browse,
                                         &QelProfile::desktop, &QelProfile::screen);
        QelProfile read;
        EXPECT_EQ(readFiltered(*other, read, &everything, QelFilterMode::intersection), -1) << bad;
        EXPECT_EQ(sectionsOf(read), before) << bad;
        EXPECT_EQ(other->curName(), "/");
    }
}

TEST_F(QelProfileFilterTest, ListWithoutNameFailsProfile) {
    putProfile(fullProfile());
    ASSERT_EQ(tree->seek(2185), 0);
    tree->putChild(2200);
    tree->seekUp();
    QelProfile filter;
    filter.browse = settingsOf<QelBrowseSettings>({"a"});
    EXPECT_EQ(readIntersection(filter), -1);
    EXPECT_FALSE(profile.browse.isSpecified());
    EXPECT_THAT(namesOf(profile.browse.get()), ElementsAre("a"));
}

TEST_F(QelProfileFilterTest, CanReadIntoFilterItself) {
    QelProfile stored;
    stored.browse = settingsOf<QelBrowseSettings>({"a", "b", "c"});
    putProfile(stored);
    const auto filter = boost::make_shared<QelProfile>(filterOf(&QelProfile::personal));
    filter->browse.get() = settingsOf<QelBrowseSettings>({"a"});
    EXPECT_EQ(tree->getObject(*filter, QelProfile::differenceReader(filter), 0), 0);
    EXPECT_THAT(namesOf(filter->browse.get()), ElementsAre("a", "b", "c"));
}

} // namespace

} // namespace Qel
