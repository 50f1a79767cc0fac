#include "QelMessage/QelNames.h"

#include <limits>
#include <ostream>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelMessage/QelDefaultMap.h"

namespace Qel {

namespace {

using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::SizeIs;

/// One kind of names with its functions.
struct Kind {
    std::string letter;
    std::span<const QelNames::Entry> (*entries)() noexcept;
    std::string (*name)(int);
    int (*id)(std::string_view) noexcept;
};

void PrintTo(const Kind& kind, std::ostream* out) {
    *out << kind.letter;
}

const Kind elementKind{"e", QelNames::elements, QelNames::elementName, QelNames::elementID};
const Kind namespaceKind{"n", QelNames::namespaces, QelNames::namespaceName, QelNames::namespaceID};
const Kind typeKind{"t", QelNames::types, QelNames::typeName, QelNames::typeID};
const Kind attributeKind{"a", QelNames::attributes, QelNames::attributeName, QelNames::attributeID};

std::vector<std::string> namesOf(const Kind& kind) {
    std::vector<std::string> names;
    for (const QelNames::Entry& entry : kind.entries())
        names.emplace_back(entry.name);
    return names;
}

std::string text(Internal::CharArray name) {
    return std::string(name.text(), name.length());
}

class QelNamesTest : public ::testing::TestWithParam<Kind> {};

INSTANTIATE_TEST_SUITE_P(EveryKind, QelNamesTest,
                         ::testing::Values(elementKind, namespaceKind, typeKind, attributeKind),
                         [](const auto& test) { return "letter_" + test.param.letter; });

TEST_P(QelNamesTest, NamesAreDistinct) {
    const std::vector<std::string> names = namesOf(GetParam());
    EXPECT_THAT(std::set<std::string>(names.begin(), names.end()), SizeIs(names.size()));
}

TEST_P(QelNamesTest, NamesAreLowerCaseWordsJoinedByUnderscores) {
    EXPECT_THAT(namesOf(GetParam()), Each(MatchesRegex("[a-z][a-z0-9]*(_[a-z0-9]+)*")));
}

TEST_P(QelNamesTest, NoNameIsANumberedSpellingOrReservedByTheTextForm) {
    EXPECT_THAT(namesOf(GetParam()), Each(Not(MatchesRegex("[enta][0-9]+|message|xsi|xml.*"))));
}

TEST_P(QelNamesTest, EveryEntryIsFoundByIdAndByName) {
    for (const QelNames::Entry& entry : GetParam().entries()) {
        EXPECT_EQ(GetParam().name(entry.id), entry.name);
        EXPECT_EQ(GetParam().id(entry.name), entry.id);
    }
}

TEST_P(QelNamesTest, NumberedSpellingIsAcceptedForNamedIds) {
    for (const QelNames::Entry& entry : GetParam().entries())
        EXPECT_EQ(GetParam().id(GetParam().letter + std::to_string(entry.id)), entry.id);
}

TEST_P(QelNamesTest, NumberedSpellingOfUnnamedIdsRoundTrips) {
    std::set<int> named;
    for (const QelNames::Entry& entry : GetParam().entries())
        named.insert(entry.id);
    for (int id = 1; id < 2500; ++id) {
        if (named.contains(id))
            continue;
        const std::string numbered = GetParam().letter + std::to_string(id);
        EXPECT_EQ(GetParam().name(id), numbered);
        EXPECT_EQ(GetParam().id(numbered), id);
    }
}

TEST_P(QelNamesTest, LargestIntIsAnIdAndLargerNumbersAreNot) {
    EXPECT_EQ(GetParam().name(std::numeric_limits<int>::max()), GetParam().letter + "2147483647");
    EXPECT_EQ(GetParam().id(GetParam().letter + "2147483647"), std::numeric_limits<int>::max());
    EXPECT_EQ(GetParam().id(GetParam().letter + "2147483648"), 0);
}

TEST_P(QelNamesTest, NonPositiveIdHasNoName) {
    EXPECT_THAT(GetParam().name(0), IsEmpty());
    EXPECT_THAT(GetParam().name(-1), IsEmpty());
    EXPECT_THAT(GetParam().name(std::numeric_limits<int>::min()), IsEmpty());
}

TEST_P(QelNamesTest, NonCanonicalNumberHasNoId) {
    EXPECT_EQ(GetParam().id(""), 0);
    EXPECT_EQ(GetParam().id(GetParam().letter), 0);
    for (const char* number : {"0", "01", "-1", "+1", " 1", "1 ", "1x", "x1", "1.0", "0x1", "99999999999"})
        EXPECT_EQ(GetParam().id(GetParam().letter + number), 0) << number;
    EXPECT_EQ(GetParam().id(std::string_view("e1\0", 3)), 0);
    EXPECT_EQ(GetParam().id("1026"), 0);
    EXPECT_EQ(GetParam().id("E1026"), 0);
    EXPECT_EQ(GetParam().id("no_such_name"), 0);
}

TEST_P(QelNamesTest, LetterOfAnotherKindHasNoId) {
    for (const std::string letter : {"e", "n", "t", "a"}) {
        if (letter == GetParam().letter)
            continue;
        EXPECT_EQ(GetParam().id(letter + "7"), 0) << letter;
    }
}

TEST_P(QelNamesTest, PrefixOfANameIsAnotherName) {
    for (const QelNames::Entry& entry : GetParam().entries()) {
        EXPECT_EQ(GetParam().id(std::string(entry.name) + "x"), 0) << entry.name;
        EXPECT_NE(GetParam().id(entry.name.substr(0, entry.name.size() - 1)), entry.id) << entry.name;
    }
}

TEST(QelElementNamesTest, NumberedSpellingAndNameReferToOneElement) {
    EXPECT_EQ(QelNames::elementID("e1026"), 1026);
    EXPECT_EQ(QelNames::elementID("name"), 1026);
    EXPECT_EQ(QelNames::elementName(1026), "name");
}

TEST(QelElementNamesTest, ConfigurationPathsUseDataAndConfiguration) {
    EXPECT_EQ(QelNames::elementID("data"), 1307);
    EXPECT_EQ(QelNames::elementID("configuration"), 1021);
}

TEST(QelElementNamesTest, WellKnownElementsHaveTheirNames) {
    const std::vector<std::pair<int, std::string>> wellKnown{{1007, "type"},        {1010, "id"},
                                                             {1496, "description"}, {1624, "environment"},
                                                             {1866, "eid"},         {1870, "parent_eid"}};
    for (const auto& [id, name] : wellKnown)
        EXPECT_EQ(QelNames::elementName(id), name);
}

TEST(QelElementNamesTest, SectionsAndOptionsOfAConfigurationHaveNoId) {
    for (const char* name :
         {"system", "log_level", "log_func_name_level", "log_process_plugins", "log_ignore_plugins", "sorting_order"})
        EXPECT_EQ(QelNames::elementID(name), 0) << name;
}

TEST(QelNamespaceNamesTest, EnvironmentsHaveTheNamespaceEnv) {
    EXPECT_EQ(QelNames::namespaceName(292), "env");
    EXPECT_EQ(QelNames::namespaceID("env"), 292);
}

TEST(QelTypeNamesTest, EnvironmentsHaveTheTypeEnv) {
    EXPECT_EQ(QelNames::typeName(122), "env");
    EXPECT_EQ(QelNames::typeID("env"), 122);
}

TEST(QelTypeNamesTest, TypeIdWithoutAClassHasNoName) {
    EXPECT_TRUE(QelDefaultMap::findTypeID(50).empty());
}

TEST(QelAttributeNamesTest, AttributesHaveOnlyTheirNumberedSpelling) {
    EXPECT_THAT(QelNames::attributes(), IsEmpty());
    EXPECT_EQ(QelNames::attributeName(1010), "a1010");
}

TEST(QelDefaultMapTest, ReturnsTheNamesOfTheTables) {
    for (const QelNames::Entry& entry : QelNames::elements())
        EXPECT_EQ(text(QelDefaultMap::findElemID(entry.id)), entry.name);
    for (const QelNames::Entry& entry : QelNames::namespaces())
        EXPECT_EQ(text(QelDefaultMap::findNSID(entry.id)), entry.name);
    for (const QelNames::Entry& entry : QelNames::types())
        EXPECT_EQ(text(QelDefaultMap::findTypeID(entry.id)), entry.name);
}

TEST(QelDefaultMapTest, ReturnsAnEmptyStringForAnIdWithoutAName) {
    for (const int id : {std::numeric_limits<int>::min(), -1, 0, 50, 5000, std::numeric_limits<int>::max()}) {
        EXPECT_TRUE(QelDefaultMap::findElemID(id).empty()) << id;
        EXPECT_TRUE(QelDefaultMap::findNSID(id).empty()) << id;
        EXPECT_TRUE(QelDefaultMap::findTypeID(id).empty()) << id;
        EXPECT_NE(QelDefaultMap::findElemID(id).text(), nullptr) << id;
    }
}

TEST(QelDefaultMapTest, FreeFunctionsReturnTheSameNames) {
    EXPECT_EQ(text(getStringByElemIdDefault(1026)), "name");
    EXPECT_EQ(text(getStringByNSIdDefault(292)), "env");
    EXPECT_EQ(text(getStringByTypeIdDefault(122)), "env");
}

/// Looked up before main(), as the registries of derived records do.
const std::string namespaceAtLoad = text(QelDefaultMap::findNSID(299));
const int elementAtLoad = QelNames::elementID("configuration");

TEST(QelDefaultMapTest, NamesAreAvailableDuringStaticInitialisation) {
    EXPECT_EQ(namespaceAtLoad, QelNames::namespaceName(299));
    EXPECT_THAT(namespaceAtLoad, Not(IsEmpty()));
    EXPECT_EQ(elementAtLoad, 1021);
}

} // namespace

} // namespace Qel
