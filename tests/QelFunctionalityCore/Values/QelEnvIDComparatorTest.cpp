#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/Values/QelEIDList.h"

namespace Qel {
namespace {

const QelEID one(1, 0);
const QelEID two(2, 0);
const QelEID three(3, 0);
const QelEID unknown(4, 0);

// Larger identifiers have smaller keys, but for 3, whose key is that of 2; the key of 1 is negative as an int.
std::optional<std::uint32_t> descendingKeys(const QelEID& eid) {
    if (eid == one)
        return 0x80000000U;
    if (eid == two || eid == three)
        return 10;
    return std::nullopt;
}

// Restores what other tests start from.
class QelEnvIDComparatorTest : public testing::Test {
protected:
    ~QelEnvIDComparatorTest() override {
        sort_order_by_veid = 0;
        QelEnvIDComparator::setSortKeySource(m_sourceAtStart);
    }

    static void sortByKeys(int on = 1) {
        sort_order_by_veid = on;
        QelEnvIDComparator::setSortKeySource(descendingKeys);
    }

    const QelEnvIDComparator less{};

private:
    // The library has set one while it was loaded.
    const QelEnvIDComparator::SortKeySource m_sourceAtStart = QelEnvIDComparator::setSortKeySource(nullptr);
};

TEST_F(QelEnvIDComparatorTest, OrdersByIdentifierAtStart) {
    EXPECT_TRUE(less(one, two));
    EXPECT_FALSE(less(two, one));
    EXPECT_FALSE(less(one, one));
}

TEST_F(QelEnvIDComparatorTest, AsksForNoKeysWhileTheSettingIsOff) {
    sortByKeys(0);
    EXPECT_TRUE(less(one, two));
    EXPECT_FALSE(less(two, one));
}

TEST_F(QelEnvIDComparatorTest, OrdersByUnsignedSortKeyWithTheSettingOn) {
    sortByKeys();
    EXPECT_TRUE(less(two, one));
    EXPECT_FALSE(less(one, two));
}

TEST_F(QelEnvIDComparatorTest, AnyValueButZeroSwitchesTheSettingOn) {
    sortByKeys(-1);
    EXPECT_TRUE(less(two, one));
}

TEST_F(QelEnvIDComparatorTest, EqualKeysFallBackToIdentifiers) {
    sortByKeys();
    EXPECT_TRUE(less(two, three));
    EXPECT_FALSE(less(three, two));
    EXPECT_FALSE(less(two, two));
}

TEST_F(QelEnvIDComparatorTest, APairWithAnUnknownEnvironmentFallsBackToIdentifiers) {
    sortByKeys();
    EXPECT_TRUE(less(one, unknown));
    EXPECT_FALSE(less(unknown, one));
    EXPECT_TRUE(less(two, unknown));
    EXPECT_FALSE(less(two, QelEID()));
    EXPECT_TRUE(less(QelEID(), one));
    EXPECT_TRUE(less(unknown, QelEID(5, 0)));
}

TEST_F(QelEnvIDComparatorTest, WithoutASourceOfKeysTheSettingChangesNothing) {
    sort_order_by_veid = 1;
    EXPECT_TRUE(less(one, two));
    EXPECT_FALSE(less(two, one));
}

TEST_F(QelEnvIDComparatorTest, ASetIsBuiltInTheOrderOfTheDay) {
    EXPECT_THAT(QelEIDList({three, two, one}), testing::ElementsAre(one, two, three));
    sortByKeys();
    EXPECT_THAT(QelEIDList({three, two, one}), testing::ElementsAre(two, three, one));
}

} // namespace
} // namespace Qel
