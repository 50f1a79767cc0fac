#include "QelFunctionalityCore/Network/QelResource.h"

#include "QelCore/QelIPConversions.h"
#include "QelFunctionalityCore/Network/NetworkRecordTest.h"

namespace Qel {

void PrintTo(const range<unsigned>& one, std::ostream* out) {
    *out << '[' << ipToStr(one.start) << ',' << ipToStr(one.end) << ']';
}

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;
using Range = range<unsigned>;

constexpr const char* leastAddress = "0.0.0.0";
constexpr const char* greatestAddress = "255.255.255.255";

Range addresses(const char* first, const char* last) {
    return {strToIp(first), strToIp(last)};
}

QelResourceIpPool poolOf(const std::vector<Range>& ranges) {
    QelResourceIpPool pool;
    for (const Range& each : ranges)
        pool.ranges.insert(each);
    return pool;
}

TEST(QelResourceTypeTest, MapsTypesToNames) {
    EXPECT_EQ(IDResourceNameMap.at(QelResourceType::ip), "resource_ip");
    EXPECT_EQ(IDResourceNameMap.at(QelResourceType::none), "");
    EXPECT_EQ(ResourceNameIDMap.at("resource_ip"), QelResourceType::ip);
    EXPECT_EQ(ResourceNameIDMap.at(""), QelResourceType::none);
    EXPECT_EQ(IDResourceNameMap.size(), 2U);
    EXPECT_EQ(ResourceNameIDMap.size(), 2U);
    EXPECT_EQ(static_cast<int>(QelResourceType::ip), 1);
}

TEST(QelResourceTypeTest, ConstructorsSetType) {
    EXPECT_EQ(QelResource().type, QelResourceType::none);
    EXPECT_EQ(QelResourceIp().type, QelResourceType::ip);
    EXPECT_EQ(QelResourceIp().value, 0U);
    EXPECT_EQ(QelResourceIp(5).value, 5U);
    EXPECT_EQ(QelResourcePool().type, QelResourceType::none);
    EXPECT_EQ(QelResourceIpPool().type, QelResourceType::ip);
    EXPECT_TRUE(QelResourceIpPool().ranges.empty());
}

class QelResourceTest : public NetworkRecordTest {
protected:
    void putRange(const std::string& start, const std::string& end) {
        message.newChild(1662);
        put(1597, start);
        put(1663, end);
        message.seekUp();
    }
    /// Returns a pool read from the element.
    std::vector<Range> readRanges(int expected = 0) {
        QelResourceIpPool pool;
        EXPECT_EQ(read(pool), expected);
        EXPECT_EQ(message.curID(), 1021) << "the cursor is restored";
        return {pool.ranges.begin(), pool.ranges.end()};
    }
};

TEST_F(QelResourceTest, BaseResourceWritesNothing) {
    EXPECT_EQ(roundTrip(QelResource(QelResourceType::ip)).type, QelResourceType::none);
    EXPECT_THAT(childIDs(message), IsEmpty());
}

TEST_F(QelResourceTest, WritesAddressAsString) {
    EXPECT_EQ(roundTrip(QelResourceIp(strToIp("10.0.0.7"))).value, strToIp("10.0.0.7"));
    EXPECT_THAT(childIDs(message), ElementsAre(1262));
    EXPECT_EQ(value(1262), "10.0.0.7");
}

TEST_F(QelResourceTest, RequiresAddress) {
    QelResourceIp resource(5);
    EXPECT_EQ(read(resource), -1);
    EXPECT_EQ(resource.value, 5U);
    put(1262, "elsewhere");
    EXPECT_EQ(read(resource), 0);
    EXPECT_EQ(resource.value, 0U);
}

TEST_F(QelResourceTest, PoolWithoutTypeWritesEmptyName) {
    EXPECT_EQ(roundTrip(QelResourcePool()).type, QelResourceType::none);
    EXPECT_THAT(childIDs(message), ElementsAre(1007));
    EXPECT_EQ(value(1007), "");
}

TEST_F(QelResourceTest, PoolWritesTypeByName) {
    EXPECT_EQ(roundTrip(QelResourcePool(QelResourceType::ip)).type, QelResourceType::ip);
    EXPECT_EQ(value(1007), "resource_ip");
}

TEST_F(QelResourceTest, MissingTypeResetsTypeOfDerivedPool) {
    QelResourceIpPool pool;
    EXPECT_EQ(read(pool), 0);
    EXPECT_EQ(pool.type, QelResourceType::none);
}

TEST_F(QelResourceTest, RejectsUnknownType) {
    put(1007, "resource_disk");
    QelResourcePool pool(QelResourceType::ip);
    EXPECT_EQ(read(pool), -1);
    EXPECT_EQ(pool.type, QelResourceType::ip);
    EXPECT_THAT(getErrorMessage(), HasSubstr("element type (type) is malformed"));
    QelResourceIpPool derived;
    EXPECT_EQ(read(derived), -1);

    newElement();
    EXPECT_EQ(write(QelResourcePool(static_cast<QelResourceType>(7))), -1);
    derived.type = static_cast<QelResourceType>(7);
    derived.ranges.insert({5, 6});
    EXPECT_EQ(write(derived), -1);
    EXPECT_THAT(childIDs(message), IsEmpty());
}

TEST_F(QelResourceTest, SingleAddressIsOneElementAndRangeHasTwoChildren) {
    EXPECT_EQ(write(poolOf({{5, 5}, {7, 8}})), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1007, 1262, 1662));
    EXPECT_EQ(value(1262), "0.0.0.5");
    EXPECT_THAT(childrenIn(1662), ElementsAre(1597, 1663));
    EXPECT_EQ(valueIn(1662, 1597), "0.0.0.7");
    EXPECT_EQ(valueIn(1662, 1663), "0.0.0.8");
}

TEST_F(QelResourceTest, SeparateAddressesAreSeparateElements) {
    EXPECT_EQ(write(poolOf({{1, 1}, {3, 3}})), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1007, 1262, 1262));
}

TEST_F(QelResourceTest, RoundTripsPool) {
    const std::vector<Range> ranges{addresses("0.0.0.1", "9.255.255.255"), addresses("10.0.0.5", "10.0.0.5"),
                                    addresses("255.0.0.0", "255.255.255.254")};
    EXPECT_EQ(roundTrip(poolOf(ranges)).ranges, poolOf(ranges).ranges);
}

TEST_F(QelResourceTest, MergesAdjacentRangesInAnyOrder) {
    put(1262, "10.0.0.9");
    putRange("10.0.0.1", "10.0.0.4");
    put(1262, "10.0.0.5");
    putRange("10.0.0.3", "10.0.0.3");
    EXPECT_THAT(readRanges(), ElementsAre(addresses("10.0.0.1", "10.0.0.5"), addresses("10.0.0.9", "10.0.0.9")));
}

TEST_F(QelResourceTest, IgnoresUnknownChildren) {
    put(1026, "a name");
    put(1262, "10.0.0.1");
    putRange("10.0.0.2", "10.0.0.3");
    putIn(1663, 1597, "0.0.0.0");
    put(1007, "resource_ip");
    EXPECT_THAT(readRanges(), ElementsAre(addresses("10.0.0.1", "10.0.0.3")));
}

TEST_F(QelResourceTest, InvalidRangeFailsAndKeepsEarlierRanges) {
    const std::pair<const char*, const char*> bad[] = {
        {leastAddress, "10.0.0.1"}, {"10.0.0.1", greatestAddress}, {"10.0.0.2", "10.0.0.1"}, {"10.0.0.1", "nowhere"}};
    for (const auto& [start, end] : bad) {
        newElement();
        put(1262, "10.0.0.77");
        putRange(start, end);
        put(1262, "10.0.0.99");
        EXPECT_THAT(readRanges(-1), ElementsAre(addresses("10.0.0.77", "10.0.0.77"))) << start << ' ' << end;
        EXPECT_THAT(getErrorMessage(), HasSubstr("cannot read QelResourceIpPool: element range (ranges) is malformed"));
    }
}

TEST_F(QelResourceTest, RangeRequiresBothEnds) {
    putIn(1662, 1597, "10.0.0.1");
    EXPECT_THAT(readRanges(-1), IsEmpty());
    newElement();
    putIn(1662, 1663, "10.0.0.1");
    EXPECT_THAT(readRanges(-1), IsEmpty());
}

TEST_F(QelResourceTest, ReadingAgainAddsRanges) {
    QelResourceIpPool pool = poolOf({addresses("10.0.0.1", "10.0.0.2")});
    put(1262, "10.0.0.3");
    EXPECT_EQ(read(pool), 0);
    EXPECT_THAT(pool.ranges, ElementsAre(addresses("10.0.0.1", "10.0.0.3")));
}

using QelResourceDeathTest = QelResourceTest;

TEST_F(QelResourceDeathTest, SingleExtremeAddressTerminates) {
    for (const char* const extreme : {leastAddress, greatestAddress, "no address", ""}) {
        newElement();
        put(1262, extreme);
        QelResourceIpPool pool;
        EXPECT_DEATH(static_cast<void>(read(pool)), "core/src/QelCore/QelContainers.*570.*insert") << extreme;
    }
}

TEST_F(QelResourceTest, ReadsManyDescendingAddressesInLinearTime) {
    // Inserted one by one, these would move 20 billion ranges and take minutes.
    constexpr unsigned count = 200'000;
    for (unsigned left = count; left > 0; --left) {
        message.newChild(1262);
        message.putValue(std::to_string(2 * left), 0);
        message.seekUp();
    }
    QelResourceIpPool pool;
    EXPECT_EQ(read(pool), 0);
    EXPECT_EQ(pool.ranges.size(), count);
}

// --- Pairs

class QelPoolResourcePairTest : public NetworkRecordTest {
protected:
    static QelPoolResourcePair full() {
        QelPoolResourcePair pair;
        pair.pool.reset(new QelResourceIpPool(poolOf({addresses("10.0.0.1", "10.0.0.9")})));
        pair.resource.reset(new QelResourceIp(strToIp("10.0.0.3")));
        return pair;
    }
    [[nodiscard]] std::string typeOf(int id) const {
        EXPECT_EQ(message.seek(id), 0);
        std::string type = message.curType();
        message.seekUp();
        return type;
    }
};

TEST_F(QelPoolResourcePairTest, RoundTripsBothClasses) {
    const QelPoolResourcePair back = roundTrip(full());
    const auto* const pool = dynamic_cast<QelResourceIpPool*>(back.pool.get());
    ASSERT_THAT(pool, NotNull());
    EXPECT_THAT(pool->ranges, ElementsAre(addresses("10.0.0.1", "10.0.0.9")));
    const auto* const resource = dynamic_cast<QelResourceIp*>(back.resource.get());
    ASSERT_THAT(resource, NotNull());
    EXPECT_EQ(resource->value, strToIp("10.0.0.3"));
    EXPECT_THAT(childIDs(message), ElementsAre(1974, 1665));
    EXPECT_EQ(typeOf(1974), "resource:ip_resource_pool");
    EXPECT_EQ(typeOf(1665), "resource:ip_resource");
}

TEST_F(QelPoolResourcePairTest, NullPointersWriteNothing) {
    EXPECT_EQ(write(QelPoolResourcePair()), 0);
    EXPECT_THAT(childIDs(message), IsEmpty());
    QelPoolResourcePair pair = full();
    EXPECT_EQ(read(pair), 0);
    EXPECT_THAT(pair.pool, NotNull()) << "a missing member is unchanged";
}

TEST_F(QelPoolResourcePairTest, IgnoresUntypedOrMalformedMember) {
    message.putChild(1974);
    putIn(1665, 1262, "10.0.0.1");
    QelPoolResourcePair pair;
    EXPECT_EQ(read(pair), 0);
    EXPECT_THAT(pair.pool, IsNull());
    EXPECT_THAT(pair.resource, IsNull());

    newElement();
    ASSERT_EQ(write(full()), 0);
    message.seek(1665);
    message.deleteChild(1262);
    message.seekUp();
    EXPECT_EQ(read(pair), 0);
    EXPECT_THAT(pair.pool, NotNull());
    EXPECT_THAT(pair.resource, IsNull());
}

TEST_F(QelPoolResourcePairTest, UnwritableMemberDoesNotFailPair) {
    QelPoolResourcePair pair = full();
    pair.pool->type = static_cast<QelResourceType>(7);
    EXPECT_EQ(write(pair), 0);
    EXPECT_THAT(childrenIn(1665), ElementsAre(1262));
}

TEST_F(QelPoolResourcePairTest, RoundTripsBaseClasses) {
    QelPoolResourcePair pair;
    pair.pool.reset(new QelResourcePool);
    pair.resource.reset(new QelResource);
    const QelPoolResourcePair back = roundTrip(pair);
    EXPECT_EQ(typeOf(1974), "resource:resource_pool");
    EXPECT_EQ(typeOf(1665), "resource:resource");
    ASSERT_THAT(back.pool, NotNull());
    EXPECT_TRUE(isExactly<QelResourcePool>(*back.pool));
    EXPECT_EQ(QelDerivedParserFactory<QelResource>::defaultFactory(), &factoryQelResource);
    EXPECT_EQ(QelDerivedParserFactory<QelResourcePool>::defaultFactory(), &factoryQelResourcePool);
}

} // namespace
} // namespace Qel
