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

// Sort keys descend with the identifiers, except that 2 and 3 have equal keys.  The key of 1 is negative as an int.
std::optional<std::uint32_t> descendingKeys(const QelEID& eid) {
    if (eid == one)
        return 0x80000000U;
    if (eid == two || eid == three)
        return 10;
    return std::nullopt;
}

// Saves and restores the global state.
class QelEnvIDComparatorTest : public testing::Test {
protected:
    ~QelEnvIDComparatorTest() override {
        sort_order_by_veid = 0;
        QelEnvIDComparator::setSortKeySource(m_savedSource);
    }

    static void sortByKeys(int on = 1) {
        sort_order_by_veid = on;
        QelEnvIDComparator::setSortKeySource(descendingKeys);
    }

    const QelEnvIDComparator less{};

private:
    // The library sets a source during load.
    const QelEnvIDComparator::SortKeySource m_savedSource = QelEnvIDComparator::setSortKeySource(nullptr);
};

TEST_F(QelEnvIDComparatorTest, OrdersByIdentifierByDefault) {
    EXPECT_TRUE(less(one, two));
    EXPECT_FALSE(less(two, one));
    EXPECT_FALSE(less(one, one));
}

TEST_F(QelEnvIDComparatorTest, DisabledSettingIgnoresSortKeys) {
    sortByKeys(0);
    EXPECT_TRUE(less(one, two));
    EXPECT_FALSE(less(two, one));
}

TEST_F(QelEnvIDComparatorTest, EnabledSettingOrdersByUnsignedSortKey) {
    sortByKeys();
    EXPECT_TRUE(less(two, one));
    EXPECT_FALSE(less(one, two));
}

TEST_F(QelEnvIDComparatorTest, AnyNonzeroValueEnablesSetting) {
    sortByKeys(-1);
    EXPECT_TRUE(less(two, one));
}

TEST_F(QelEnvIDComparatorTest, EqualKeysFallBackToIdentifiers) {
    sortByKeys();
    EXPECT_TRUE(less(two, three));
    EXPECT_FALSE(less(three, two));
    EXPECT_FALSE(less(two, two));
}

TEST_F(QelEnvIDComparatorTest, UnknownEnvironmentFallsBackToIdentifiers) {
    sortByKeys();
    EXPECT_TRUE(less(one, unknown));
    EXPECT_FALSE(less(unknown, one));
    EXPECT_TRUE(less(two, unknown));
    EXPECT_FALSE(less(two, QelEID()));
    EXPECT_TRUE(less(QelEID(), one));
    EXPECT_TRUE(less(unknown, QelEID(5, 0)));
}

TEST_F(QelEnvIDComparatorTest, EnabledSettingHasNoEffectWithoutKeySource) {
    sort_order_by_veid = 1;
    EXPECT_TRUE(less(one, two));
    EXPECT_FALSE(less(two, one));
}

TEST_F(QelEnvIDComparatorTest, SetUsesSettingAtInsertion) {
    EXPECT_THAT(QelEIDList({three, two, one}), testing::ElementsAre(one, two, three));
    sortByKeys();
    EXPECT_THAT(QelEIDList({three, two, one}), testing::ElementsAre(two, three, one));
}

} // namespace
} // namespace Qel
