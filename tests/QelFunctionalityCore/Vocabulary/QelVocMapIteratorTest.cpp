#include "QelFunctionalityCore/Vocabulary/QelVocMapIterator.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Vocabulary/VocTestSupport.h"
#include "support/AllocationCounter.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<Voc> sample{
    {"net", "2", {{"traffic", {"hardware"}}}, {{"bytes", {"counter"}}, {"usage", {"counter", "network"}}}},
    {"base", "1", {{"cpu", {"hardware"}}, {"users"}}, {{"usage", {"counter"}}, {"load"}}},
    {"empty", "1"},
    {"net", "1", {{"packets"}}, {{"errors"}}},
};

class QelVocMapIteratorTest : public testing::Test {
protected:
    TestMessage message{makeMap(sample)};
    QelVocMapIterator at{message.get()};
};

TEST(QelVocMapIteratorDeathTest, NullMessageTerminatesProcess) {
    EXPECT_DEATH(QelVocMapIterator(static_cast<QelMessage*>(nullptr)), "core/src/QelFunctionalityCore/QelVoc:");
}

TEST_F(QelVocMapIteratorTest, IteratesVocabulariesByNameAndVersion) {
    EXPECT_THAT(vocabulariesOf(at), ElementsAre("base 1", "empty 1", "net 1", "net 2"));
    EXPECT_EQ(at.firstVocabulary(), 0);
    EXPECT_EQ(at.curID(), 1871);
    EXPECT_EQ(childValue(at, 1026), "base");
}

TEST_F(QelVocMapIteratorTest, IteratesAllVocabulariesAsOneList) {
    EXPECT_THAT(categoriesOf(at), ElementsAre("cpu", "users", "packets", "traffic"));
    EXPECT_THAT(parametersOf(at), ElementsAre("vocversion", "usage", "load", "vocversion", "vocversion", "errors",
                                              "vocversion", "bytes", "usage"));
    EXPECT_THAT(parametersOf(at, {"counter"}), ElementsAre("usage", "bytes", "usage"));
    EXPECT_THAT(categoriesOf(at, {"hardware"}), ElementsAre("cpu", "traffic"));
    EXPECT_THAT(parametersOf(at, {"none"}), IsEmpty());
}

TEST_F(QelVocMapIteratorTest, LastCategoryIsFollowedByFirstOfNextVocabulary) {
    ASSERT_EQ(at.seekCategory("users"), 0);
    EXPECT_EQ(at.nextCategory(), 0);
    EXPECT_EQ(idOf(at), "packets");
    EXPECT_EQ(textOf(at.getVocID()), "net 1");
}

TEST_F(QelVocMapIteratorTest, VirtualOperationsIterateMapThroughBasePointer) {
    const QelVocIterator& base = at;
    EXPECT_EQ(base.processParameter({"network"}, true), 0);
    EXPECT_EQ(textOf(at.getVocID()), "net 2");
    EXPECT_EQ(base.processCategory({}, true), 0);
    EXPECT_EQ(textOf(at.getVocID()), "base 1");
    EXPECT_EQ(base.processCategory({"hardware"}, false), 0);
    EXPECT_EQ(idOf(base), "traffic");
    EXPECT_EQ(base.processCategory({"hardware"}, false), -1);
}

TEST_F(QelVocMapIteratorTest, SeekFindsFirstMatchingVocabulary) {
    EXPECT_EQ(at.seekParameter("usage"), 0);
    EXPECT_EQ(textOf(at.getVocID()), "base 1");
    EXPECT_EQ(at.seekParameter("errors"), 0);
    EXPECT_EQ(textOf(at.getVocID()), "net 1");
    EXPECT_EQ(at.seekCategory("traffic"), 0);
    EXPECT_EQ(textOf(at.getVocID()), "net 2");
    EXPECT_EQ(at.seekCategory("usage"), -1);
    EXPECT_EQ(at.seekParameter("none"), -1);
}

TEST_F(QelVocMapIteratorTest, SeekSkipsVocabularyIfParameterIsOutsideRestriction) {
    at.setRestrictSet({"network"});
    EXPECT_EQ(at.seekParameter("usage"), 0);
    EXPECT_EQ(textOf(at.getVocID()), "net 2");
}

TEST_F(QelVocMapIteratorTest, SkipsVocabulariesWithoutIdentity) {
    putVocabulary(message.cursor(), {"nameless version", "", {}, {{"hidden"}}});
    QelVocMapIterator again(message.get());
    EXPECT_THAT(vocabulariesOf(again), ElementsAre("base 1", "empty 1", "net 1", "net 2"));
    EXPECT_EQ(again.seekParameter("hidden"), -1);
}

TEST_F(QelVocMapIteratorTest, LastOfVocabulariesWithEqualIdentityIsVisited) {
    putVocabulary(message.cursor(), {"base", "1", {}, {{"later"}}});
    QelVocMapIterator again(message.get());
    EXPECT_THAT(vocabulariesOf(again), ElementsAre("base 1", "empty 1", "net 1", "net 2"));
    EXPECT_EQ(again.seekParameter("later"), 0);
    EXPECT_EQ(again.seekParameter("load"), -1);
}

TEST_F(QelVocMapIteratorTest, FilterSelectsByNameAndVersion) {
    const QelVocIDSet filter{{"net", "2"}, {"base", "9"}, {"none", "1"}};
    const QelVocMapIterator filtered(message.get(), &filter);
    EXPECT_THAT(vocabulariesOf(filtered), ElementsAre("net 2"));
    const QelVocIDSet everything;
    EXPECT_EQ(vocabulariesOf(QelVocMapIterator(message.get(), &everything)).size(), 4U);
}

TEST_F(QelVocMapIteratorTest, RunTimeFilterHidesByNameForAllVersions) {
    at.setVocFilter({{"net", "of no matter"}});
    EXPECT_THAT(vocabulariesOf(at), ElementsAre("net 1", "net 2"));
    EXPECT_THAT(categoriesOf(at), ElementsAre("packets", "traffic"));
    EXPECT_EQ(at.seekParameter("load"), -1);
    at.setVocFilter({{"none", "1"}});
    EXPECT_THAT(vocabulariesOf(at), IsEmpty());
    EXPECT_EQ(at.firstParameter(), -1);
    EXPECT_EQ(at.seekRoot(), -1);
    at.setVocFilter({});
    EXPECT_EQ(vocabulariesOf(at).size(), 4U);
}

TEST_F(QelVocMapIteratorTest, RootIsCurrentVocabulary) {
    EXPECT_EQ(at.seekRoot(), 0);
    EXPECT_EQ(childValue(at, 1026), "base");
    ASSERT_EQ(at.seekParameter("errors"), 0);
    EXPECT_EQ(at.seekRoot(), 0);
    EXPECT_EQ(at.curID(), 1871);
    EXPECT_EQ(textOf(at.getVocID()), "net 1");
}

TEST_F(QelVocMapIteratorTest, RootAtEndIsFirstVisibleVocabulary) {
    EXPECT_THAT(parametersOf(at, {"none"}), IsEmpty());
    EXPECT_EQ(at.nextVocabulary(), -1);
    EXPECT_EQ(at.seekRoot(), 0);
    EXPECT_EQ(textOf(at.getVocID()), "base 1");
    EXPECT_THAT(vocabulariesOf(at), testing::SizeIs(4));
    at.setVocFilter({{"net", ""}});
    EXPECT_EQ(at.seekRoot(), 0);
    EXPECT_EQ(textOf(at.getVocID()), "net 1");
}

TEST_F(QelVocMapIteratorTest, NewIteratorSkipsHiddenVocabulary) {
    at.setVocFilter({{"empty", ""}});
    EXPECT_EQ(at.seekRoot(), 0);
    EXPECT_EQ(textOf(at.getVocID()), "empty 1");
}

TEST_F(QelVocMapIteratorTest, CopyHasPositionAndFilters) {
    at.setVocFilter({{"net", ""}});
    at.setRestrictSet({"counter"});
    ASSERT_EQ(at.firstParameter(), 0);
    const std::unique_ptr<QelVocMapIterator> copy(at.newIterator());
    EXPECT_EQ(idOf(*copy), "bytes");
    EXPECT_EQ(textOf(copy->getVocID()), "net 2");
    EXPECT_EQ(copy->nextParameter(), 0);
    EXPECT_EQ(copy->nextParameter(), -1);
    EXPECT_EQ(idOf(at), "bytes");
    EXPECT_THAT(vocabulariesOf(*copy), ElementsAre("net 1", "net 2"));
    ASSERT_EQ(copy->seekParameter("none"), -1);
    const std::unique_ptr<QelVocMapIterator> ended(copy->newIterator());
    EXPECT_EQ(ended->nextVocabulary(), -1);
    EXPECT_EQ(ended->firstVocabulary(), 0);
}

TEST_F(QelVocMapIteratorTest, EmptyMapHasNoVocabularies) {
    const TestMessage none;
    const QelVocMapIterator nothing(none.get());
    EXPECT_EQ(nothing.firstVocabulary(), -1);
    EXPECT_EQ(nothing.nextVocabulary(), -1);
    EXPECT_EQ(nothing.seekRoot(), -1);
    EXPECT_EQ(nothing.firstCategory(), -1);
    EXPECT_EQ(nothing.nextParameter(), -1);
    EXPECT_EQ(nothing.seekParameter("load"), -1);
}

TEST_F(QelVocMapIteratorTest, SeekDoesNotAllocate) {
    const std::string last = "usage";
    EXPECT_EQ(allocationsOf([&] { EXPECT_EQ(at.seekParameter(last), 0); }), 0U);
    const std::string none = "none";
    EXPECT_EQ(allocationsOf([&] { EXPECT_EQ(at.seekParameter(none), -1); }), 0U);
}

} // namespace
} // namespace Qel
