#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Vocabulary/VocTestSupport.h"
#include "support/AllocationCounter.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;

std::vector<std::string> shown(const QelVocMap& map) {
    const std::unique_ptr<QelVocMapIterator> at(map.read());
    return at ? vocabulariesOf(*at) : std::vector<std::string>{"(null)"};
}

const std::vector<Voc> sample{
    {"a", "1", {{"cpu"}}, {{"load", {"cpu"}}, {"usage"}}},
    {"b", "1", {}, {{"usage", {"cpu"}}, {"only b"}}},
    {"b", "2"},
};

class QelVocMapTest : public testing::Test {
protected:
    QelVocMap map{makeMap(sample)};
};

// ---- insert

class QelVocMapInsertTest : public testing::Test {
protected:
    int insert(const Voc& voc) const {
        const TestMessage source(makeMap({voc}));
        source.cursor().firstChild(1871);
        const int result = QelVocMap::insert(map.getMessage(), &source.cursor());
        EXPECT_EQ(source.cursor().curID(), 1871) << "the source cursor returns to its vocabulary";
        return result;
    }
    int insertPrototype(const QelVocID& id, QelMessage* message) const {
        return QelVocMap::insert(map.getMessage(), id, new QelVocPrototype(message));
    }
    [[nodiscard]] int vocabularies() const {
        const std::unique_ptr<QelMessageIterator> root(map.getMessage()->rootIterator());
        return countChildren(*root, 1871);
    }

    QelVocMap map{makeMap({})};
};

TEST_F(QelVocMapInsertTest, CopiesWholeVocabulary) {
    const Voc voc{"a", "1", {{"cpu", {"hardware"}}}, {{"load", {"cpu"}, "5"}}};
    EXPECT_EQ(insert(voc), 0);
    EXPECT_EQ(binaryOf(*map.getMessage()), binaryOf(*TestMessage(makeMap({voc})).get()));
}

TEST_F(QelVocMapInsertTest, IgnoresDuplicateIdentity) {
    EXPECT_EQ(insert({"a", "1", {}, {{"first"}}}), 0);
    EXPECT_EQ(insert({"b", "1"}), 0);
    const std::string before = binaryOf(*map.getMessage());
    EXPECT_EQ(insert({"b", "1"}), 0);
    EXPECT_EQ(insert({"a", "1", {}, {{"second"}}}), 0);
    EXPECT_EQ(binaryOf(*map.getMessage()), before);
}

TEST_F(QelVocMapInsertTest, AddsOtherVersion) {
    EXPECT_EQ(insert({"a", "1"}), 0);
    EXPECT_EQ(insert({"a", "2"}), 0);
    EXPECT_EQ(vocabularies(), 2);
    EXPECT_THAT(shown(map), ElementsAre("a 1", "a 2"));
}

TEST_F(QelVocMapInsertTest, RequiresVersion) {
    const std::string before = binaryOf(*map.getMessage());
    EXPECT_EQ(insert({"a", "", {}, {{"load"}}}), -1);
    EXPECT_EQ(insert({"a"}), -1);
    EXPECT_EQ(binaryOf(*map.getMessage()), before);
}

TEST_F(QelVocMapInsertTest, IgnoresVocabulariesWithoutIdentityInMap) {
    const std::unique_ptr<QelMessageIterator> root(map.getMessage()->rootIterator());
    putVocabulary(*root, {"a"});
    EXPECT_EQ(insert({"a", "1"}), 0);
    EXPECT_EQ(vocabularies(), 2);
    EXPECT_EQ(insert({"a", "1"}), 0);
    EXPECT_EQ(vocabularies(), 2);
}

TEST_F(QelVocMapInsertTest, CopiesDeeplyNestedParameter) {
    constexpr int depth = 100'000;
    const TestMessage source(makeMap({{"a", "1"}}));
    QelMessageIterator& at = source.cursor();
    at.firstChild(1871);
    at.newChild(1017);
    for (int level = 0; level < depth; ++level)
        at.newChild(1017);
    at.seekRoot();
    at.firstChild(1871);
    EXPECT_EQ(QelVocMap::insert(map.getMessage(), &at), 0);
    const std::unique_ptr<QelMessageIterator> copy(map.getMessage()->rootIterator());
    copy->firstChild(1871);
    copy->firstChild(1017);
    copy->nextSibling(1017);
    int levels = 0;
    while (copy->firstChild(1017) == 0)
        ++levels;
    EXPECT_EQ(levels, depth);
}

TEST_F(QelVocMapInsertTest, AddsPrototypeUnderGivenName) {
    EXPECT_EQ(insertPrototype({"local", "1"}, makeVocabulary({"", "1", {{"cpu"}}, {{"load"}}})), 0);
    EXPECT_THAT(shown(map), ElementsAre("local 1"));
    const std::unique_ptr<QelVocMapIterator> at(map.read());
    EXPECT_EQ(at->seekParameter("load"), 0);
    EXPECT_EQ(at->curNamespaceID(), 292);
    EXPECT_EQ(at->seekCategory("cpu"), 0);
    EXPECT_EQ(at->curNamespaceID(), 292);
}

TEST_F(QelVocMapInsertTest, IgnoresPrototypeWithDuplicateIdentity) {
    EXPECT_EQ(insert({"local", "1"}), 0);
    EXPECT_EQ(insertPrototype({"local", "1"}, makeVocabulary({"", "1", {}, {{"load"}}})), 0);
    EXPECT_EQ(vocabularies(), 1);
    EXPECT_FALSE(map.isFeatureEnabled("load"));
    EXPECT_EQ(insertPrototype({"local", "2"}, makeVocabulary({"", "2"})), 0);
    EXPECT_EQ(vocabularies(), 2);
}

TEST_F(QelVocMapInsertTest, PrototypeWithoutVocabularyAddsNameOnly) {
    EXPECT_EQ(insertPrototype({"local", "1"}, nullptr), 0);
    EXPECT_EQ(vocabularies(), 1);
    EXPECT_THAT(shown(map), IsEmpty());
}

// ---- erase

TEST_F(QelVocMapTest, EraseRemovesOneVersion) {
    EXPECT_EQ(map.erase({"b", "1"}), 0);
    EXPECT_THAT(shown(map), ElementsAre("a 1", "b 2"));
    EXPECT_EQ(map.erase({"b", "1"}), -1);
    EXPECT_EQ(map.erase({"none", "1"}), -1);
    EXPECT_EQ(map.erase({"b", "2"}), 0);
    EXPECT_EQ(map.erase({"a", "1"}), 0);
    EXPECT_EQ(map.erase({"a", "1"}), -1) << "the map is empty";
    EXPECT_THAT(shown(map), IsEmpty());
}

TEST_F(QelVocMapTest, EraseIgnoresHiddenVocabularies) {
    ASSERT_EQ(map.setRestrictVocSet({"a"}), 0);
    EXPECT_EQ(map.erase({"b", "1"}), -1);
    ASSERT_EQ(map.setRestrictVocSet({}), 0);
    EXPECT_EQ(map.erase({"b", "1"}), 0);

    QelVocMap loaded(makeMap(sample), {{"b", "2"}});
    EXPECT_EQ(loaded.erase({"b", "1"}), -1);
    EXPECT_EQ(loaded.erase({"b", "2"}), 0);
}

// ---- reads

TEST_F(QelVocMapTest, ReadsFailWithoutMessage) {
    QelVocMap none(nullptr);
    EXPECT_THAT(none.read(), IsNull());
    EXPECT_THAT(none.readCategory("cpu"), IsNull());
    EXPECT_THAT(none.readParameter("load"), IsNull());
    EXPECT_FALSE(none.isFeatureEnabled("load"));
    EXPECT_EQ(none.erase({"a", "1"}), -1);
    EXPECT_EQ(none.setRestrictVocSet({"a"}), -1);
    EXPECT_EQ(none.setRestrictVocSet({}), 0);
    none.reset(makeMap(sample));
    EXPECT_TRUE(none.isFeatureEnabled("load"));
    none.reset(nullptr);
    EXPECT_THAT(none.read(), IsNull());
}

TEST_F(QelVocMapTest, ReadCategoryRestrictsIterator) {
    const std::unique_ptr<QelVocIterator> at(map.readCategory("cpu"));
    ASSERT_THAT(at, NotNull());
    EXPECT_EQ(at->firstParameter(), 0);
    EXPECT_EQ(idOf(*at), "load");
    EXPECT_EQ(at->nextParameter(), 0);
    EXPECT_EQ(idOf(*at), "usage");
    EXPECT_EQ(at->nextParameter(), -1);
    const std::unique_ptr<QelVocIterator> both(map.readCategory(Categories{"cpu", "none"}));
    ASSERT_THAT(both, NotNull());
    EXPECT_EQ(both->firstParameter(), -1);
}

TEST_F(QelVocMapTest, ReadParameterReturnsIteratorAtParameter) {
    const std::unique_ptr<QelVocIterator> at(map.readParameter("only b"));
    ASSERT_THAT(at, NotNull());
    EXPECT_EQ(idOf(*at), "only b");
    EXPECT_THAT(map.readParameter("none"), IsNull());
}

TEST_F(QelVocMapTest, ParameterInVisibleVocabularyEnablesFeature) {
    EXPECT_TRUE(map.isFeatureEnabled("only b"));
    EXPECT_FALSE(map.isFeatureEnabled("cpu")) << "cpu is a category";
    ASSERT_EQ(map.setRestrictVocSet({"a"}), 0);
    EXPECT_FALSE(map.isFeatureEnabled("only b"));
    EXPECT_TRUE(map.isFeatureEnabled("load"));
    EXPECT_FALSE(QelVocMap(makeMap(sample), {{"b", "2"}}).isFeatureEnabled("only b"));
}

TEST_F(QelVocMapTest, ReadsValueTypeFromParameter) {
    const std::unique_ptr<QelVocIterator> at(map.readParameter("load"));
    at->putValue(0, "value_type");
    int type = 7;
    EXPECT_EQ(map.readValueType("load", type), 0);
    EXPECT_EQ(type, 0);
    type = 7;
    EXPECT_EQ(map.readValueType("usage", type), -1) << "the parameter has no value type";
    EXPECT_EQ(map.readValueType("none", type), -1);
    EXPECT_EQ(type, 7);
}

TEST_F(QelVocMapTest, ReadAllocationsDependOnVocabulariesNotParameters) {
    Voc large = sample[0];
    large.parameters.resize(500, {"another"});
    const QelVocMap other(makeMap({large, sample[1], sample[2]}));
    const auto cost = [](const QelVocMap& each) {
        return allocationsOf([&] { EXPECT_TRUE(each.isFeatureEnabled("only b")); });
    };
    EXPECT_EQ(cost(other), cost(map));
}

// ---- setRestrictVocSet

TEST_F(QelVocMapTest, RestrictionSelectsVocabulariesByName) {
    EXPECT_EQ(map.setRestrictVocSet({"b"}), 0);
    EXPECT_THAT(shown(map), ElementsAre("b 1", "b 2"));
    EXPECT_EQ(map.setRestrictVocSet({"a"}), 0) << "a hidden vocabulary can be selected";
    EXPECT_THAT(shown(map), ElementsAre("a 1"));
    EXPECT_EQ(map.setRestrictVocSet({}), 0);
    EXPECT_THAT(shown(map), ElementsAre("a 1", "b 1", "b 2"));
}

TEST_F(QelVocMapTest, UnknownNamesAreIgnoredAndRestrictionToThemSelectsEverything) {
    EXPECT_EQ(map.setRestrictVocSet({"a", "none"}), 0);
    EXPECT_THAT(shown(map), ElementsAre("a 1"));
    EXPECT_EQ(map.setRestrictVocSet({"none"}), 0);
    EXPECT_THAT(shown(map), ElementsAre("a 1", "b 1", "b 2"));
}

TEST_F(QelVocMapTest, EmptyMapCannotBeRestrictedToName) {
    QelVocMap empty(makeMap({}));
    EXPECT_EQ(empty.setRestrictVocSet({"a"}), -1);
    EXPECT_EQ(empty.setRestrictVocSet({}), 0);
}

TEST_F(QelVocMapTest, RestrictionMustBeWithinLoadSet) {
    QelVocMap loaded(makeMap(sample), {{"a", "1"}, {"b", "2"}});
    EXPECT_THAT(shown(loaded), ElementsAre("a 1", "b 2"));
    EXPECT_EQ(loaded.setRestrictVocSet({"b"}), 0);
    EXPECT_THAT(shown(loaded), ElementsAre("b 2"));
    EXPECT_EQ(loaded.setRestrictVocSet({"a", "none"}), -1);
    EXPECT_THAT(shown(loaded), ElementsAre("b 2")) << "the restriction is unchanged";
    EXPECT_EQ(loaded.setRestrictVocSet({std::string(300, 'x')}), -1) << "longer than any vocabulary name";
    EXPECT_EQ(loaded.setRestrictVocSet({"a"}), 0);
    EXPECT_THAT(shown(loaded), ElementsAre("a 1"));
    EXPECT_EQ(loaded.setRestrictVocSet({}), 0);
    EXPECT_THAT(shown(loaded), ElementsAre("a 1", "b 2"));
}

TEST_F(QelVocMapTest, LoadSetAppliesEvenIfVocabularyIsMissing) {
    QelVocMap loaded(makeMap({}), {{"a", "1"}});
    EXPECT_EQ(loaded.setRestrictVocSet({"b"}), -1);
    EXPECT_EQ(loaded.setRestrictVocSet({"a"}), 0);
    EXPECT_THAT(shown(loaded), IsEmpty());
}

} // namespace
} // namespace Qel
