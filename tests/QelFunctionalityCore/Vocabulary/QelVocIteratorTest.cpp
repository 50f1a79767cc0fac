#include "QelFunctionalityCore/Vocabulary/QelVocIterator.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Vocabulary/VocTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

const Voc sample{"",
                 "1",
                 {{"cpu", {"hardware"}}, {"memory", {"hardware", "limits"}}, {"users", {"access"}}},
                 {{"load", {"cpu"}},
                  {"usage", {"cpu", "counter", "shown"}},
                  {"free", {"memory", "counter"}},
                  {"usage", {"memory", "counter"}}}};

class QelVocIteratorTest : public testing::Test {
protected:
    TestMessage message{makeVocabulary(sample)};
    QelVocIterator at{message.get()};
};

TEST_F(QelVocIteratorTest, StartsAtRootOfMessage) {
    EXPECT_EQ(at.curName(), "/");
    EXPECT_EQ(at.seekRoot(), 0);
    EXPECT_EQ(at.curID(), 1044);
    EXPECT_EQ(at.firstChild(1017), 0);
    EXPECT_EQ(at.seekRoot(), 0) << "from anywhere";
    EXPECT_EQ(at.curID(), 1044);
}

TEST_F(QelVocIteratorTest, SeekRootFailsWithoutVocabulary) {
    const TestMessage other;
    const QelVocIterator none(other.get());
    EXPECT_EQ(none.seekRoot(), -1);
    other.cursor().newChild(1307);
    EXPECT_EQ(none.seekRoot(), -1);
    EXPECT_EQ(none.curName(), "/") << "the position is unchanged";
    EXPECT_THAT(categoriesOf(none), IsEmpty());
    EXPECT_THAT(parametersOf(none), IsEmpty());
    EXPECT_EQ(none.seekParameter("load"), -1);
}

TEST_F(QelVocIteratorTest, IteratesInDocumentOrder) {
    EXPECT_THAT(categoriesOf(at), ElementsAre("cpu", "memory", "users"));
    EXPECT_THAT(parametersOf(at), ElementsAre("vocversion", "load", "usage", "free", "usage"));
}

TEST_F(QelVocIteratorTest, ItemBelongsToSetIfItHasAllCategories) {
    ASSERT_EQ(at.seekParameter("usage"), 0); // cpu, counter, shown
    EXPECT_TRUE(at.belongsTo(Categories{"cpu", "counter"}));
    EXPECT_TRUE(at.belongsTo(Categories{"cpu", "counter", "shown"}));
    EXPECT_FALSE(at.belongsTo(Categories{"cpu", "memory"}));
    EXPECT_TRUE(at.belongsTo("shown"));
    EXPECT_TRUE(at.belongsTo(Categories{}));
    ASSERT_EQ(at.seekParameter("load"), 0); // cpu
    EXPECT_FALSE(at.belongsTo(Categories{"cpu", "counter"}));
    EXPECT_EQ(idOf(at), "load") << "the cursor returns to the item";
}

TEST_F(QelVocIteratorTest, ItemWithoutCategoriesBelongsToEmptySetOnly) {
    ASSERT_EQ(at.seekParameter("vocversion"), 0);
    EXPECT_TRUE(at.belongsTo(Categories{}));
    EXPECT_FALSE(at.belongsTo("cpu"));
    EXPECT_EQ(idOf(at), "vocversion");
}

TEST_F(QelVocIteratorTest, IterationFiltersByAllCategories) {
    EXPECT_THAT(parametersOf(at, {"counter"}), ElementsAre("usage", "free", "usage"));
    EXPECT_THAT(parametersOf(at, {"counter", "memory"}), ElementsAre("free", "usage"));
    EXPECT_THAT(parametersOf(at, {"counter", "access"}), IsEmpty());
    EXPECT_THAT(categoriesOf(at, {"hardware"}), ElementsAre("cpu", "memory"));
    EXPECT_THAT(categoriesOf(at, {"limits"}), ElementsAre("memory"));
}

TEST_F(QelVocIteratorTest, EmptySetMatchesFirstItem) {
    EXPECT_EQ(at.firstParameter(Categories{}), 0);
    EXPECT_EQ(idOf(at), "vocversion");
    EXPECT_EQ(at.firstCategory(Categories{}), 0);
    EXPECT_EQ(idOf(at), "cpu");
}

TEST_F(QelVocIteratorTest, SingleCategoryIsSetOfOne) {
    EXPECT_EQ(at.firstParameter("memory"), 0);
    EXPECT_EQ(idOf(at), "free");
    EXPECT_EQ(at.nextParameter("memory"), 0);
    EXPECT_EQ(idOf(at), "usage");
    EXPECT_EQ(at.firstCategory("hardware"), 0);
    EXPECT_EQ(at.nextCategory("hardware"), 0);
    EXPECT_EQ(idOf(at), "memory");
    EXPECT_EQ(at.nextCategory("hardware"), -1);
}

TEST_F(QelVocIteratorTest, FailedFirstStopsAtVocabularyAndFailedNextAtLastElement) {
    EXPECT_EQ(at.firstParameter("none"), -1);
    EXPECT_EQ(at.curID(), 1044);
    ASSERT_EQ(at.firstParameter("shown"), 0);
    EXPECT_EQ(at.nextParameter("shown"), -1);
    EXPECT_EQ(idOf(at), "usage");
    EXPECT_EQ(at.nextSibling(), -1);
}

TEST_F(QelVocIteratorTest, RestrictionIsDefaultFilter) {
    at.setRestrictSet({"memory"});
    EXPECT_EQ(at.firstParameter(), 0);
    EXPECT_EQ(idOf(at), "free");
    EXPECT_EQ(at.nextParameter(), 0);
    EXPECT_EQ(at.nextParameter(), -1);
    at.setRestrictSet({"limits"});
    EXPECT_EQ(at.firstCategory(), 0);
    EXPECT_EQ(idOf(at), "memory");
    EXPECT_EQ(at.nextCategory(), -1);
    EXPECT_EQ(at.firstCategory("access"), 0) << "an explicit category replaces the restriction";

    const Categories counters{"counter", "cpu"};
    const QelVocIterator restricted(message.get(), &counters);
    EXPECT_EQ(restricted.firstParameter(), 0);
    EXPECT_EQ(idOf(restricted), "usage");
    EXPECT_EQ(restricted.nextParameter(), -1);
}

TEST_F(QelVocIteratorTest, SeekFindsByID) {
    EXPECT_EQ(at.seekCategory("memory"), 0);
    EXPECT_EQ(idOf(at), "memory");
    EXPECT_EQ(at.curID(), 1264);
    EXPECT_EQ(at.seekParameter("free"), 0);
    EXPECT_EQ(at.curID(), 1017);
    EXPECT_EQ(at.seekParameter("memory"), -1) << "a category is not a parameter";
    EXPECT_EQ(at.curID(), 1044);
    EXPECT_EQ(at.seekParameter("fre"), -1) << "IDs are compared as a whole";
    EXPECT_EQ(at.seekParameter("freed"), -1);
}

TEST_F(QelVocIteratorTest, SeekConsidersOnlyFirstElementWithID) {
    at.setRestrictSet({"memory"});
    EXPECT_EQ(at.seekParameter("usage"), -1) << "a later parameter with that ID matches but is not considered";
    EXPECT_EQ(idOf(at), "usage") << "the cursor stays at the first one";
    EXPECT_EQ(at.seekParameter("free"), 0);
    at.setRestrictSet({"limits"});
    EXPECT_EQ(at.seekCategory("cpu"), -1);
    EXPECT_EQ(at.seekCategory("memory"), 0);
}

TEST_F(QelVocIteratorTest, ItemsWithoutIDAreIteratedButNotFound) {
    at.seekRoot();
    at.putChild(1017);
    EXPECT_EQ(at.seekParameter(""), -1);
    EXPECT_THAT(parametersOf(at), ElementsAre("vocversion", "load", "usage", "free", "usage", "(none)"));
    std::string id = "kept";
    EXPECT_EQ(at.getID(id), -1);
    EXPECT_EQ(id, "kept");
}

TEST_F(QelVocIteratorTest, CopyHasPositionAndRestriction) {
    at.setRestrictSet({"memory"});
    ASSERT_EQ(at.firstParameter(), 0);
    const std::unique_ptr<QelVocIterator> copy(at.newIterator());
    EXPECT_EQ(idOf(*copy), "free");
    EXPECT_EQ(copy->nextParameter(), 0);
    EXPECT_EQ(copy->nextParameter(), -1);
    EXPECT_EQ(idOf(at), "free") << "positions are independent";
    const std::unique_ptr<QelMessageIterator> plain(at.newIterator(false));
    EXPECT_EQ(childValue(*plain, 1010), "free");
}

} // namespace
} // namespace Qel
