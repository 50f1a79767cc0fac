#include "QelFunctionalityCore/Network/QelIPPool.h"

#include <type_traits>

#include "QelFunctionalityCore/Network/NetworkRecordTest.h"
#include "QelFunctionalityCore/Network/QelIPPoolMBase.h"

namespace Qel {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

static_assert(std::is_abstract_v<QelIPPoolMBase> && std::is_base_of_v<QelFunctional, QelIPPoolMBase>);

const QelIPv6 first(std::string("2001:db8::1"));
const QelIPv6 last(std::string("2001:db8::ff"));

QelIPRange rangeOf(const QelIPv6& start, const QelIPv6& end, unsigned prefix) {
    QelIPRange made;
    made.start = start;
    made.end = end;
    made.prefix = prefix;
    return made;
}

using QelIPRangeTest = NetworkRecordTest;

TEST_F(QelIPRangeTest, RoundTripsStartAndEnd) {
    const QelIPRange back = roundTrip(rangeOf(first, last, 0));
    EXPECT_EQ(back.start, first);
    EXPECT_EQ(back.end, last);
    EXPECT_EQ(back.prefix, 0U);
    EXPECT_THAT(childIDs(message), ElementsAre(1597, 1663));
}

TEST_F(QelIPRangeTest, RoundTripsStartAndPrefix) {
    for (const unsigned prefix : {1U, 24U, 128U}) {
        newElement();
        const QelIPRange back = roundTrip(rangeOf(first, last, prefix));
        EXPECT_EQ(back.prefix, prefix);
        EXPECT_TRUE(back.end.isAny()) << "the prefix replaces the end";
        EXPECT_THAT(childIDs(message), ElementsAre(1597, 1784));
        EXPECT_EQ(value(1784), std::to_string(prefix));
    }
}

TEST_F(QelIPRangeTest, PrefixAbove128IsMask) {
    EXPECT_EQ(roundTrip(rangeOf(first, QelIPv6(), 4294967040)).prefix, 4294967040U);
    EXPECT_THAT(childIDs(message), ElementsAre(1597, 1784));
    EXPECT_EQ(value(1784), "255.255.255.0");
    newElement();
    EXPECT_EQ(roundTrip(rangeOf(first, QelIPv6(), 129)).prefix, 129U);
    EXPECT_EQ(value(1784), "0.0.0.129");
}

TEST_F(QelIPRangeTest, RequiresEndOrPrefix) {
    EXPECT_EQ(write(rangeOf(first, QelIPv6(), 0)), -1);
    EXPECT_THAT(childIDs(message), ElementsAre(1597));
    QelIPRange addresses;
    EXPECT_EQ(read(addresses), -1);
    put(1663, "::");
    put(1784, "0");
    EXPECT_EQ(read(addresses), -1);
}

TEST_F(QelIPRangeTest, RequiresStart) {
    put(1663, "10.0.0.9");
    put(1784, "24");
    QelIPRange addresses;
    EXPECT_EQ(read(addresses), -1);
    EXPECT_EQ(addresses.prefix, 0U) << "later fields are not read";
    put(1597, "10.0.0.1");
    EXPECT_EQ(read(addresses), 0);
    EXPECT_EQ(addresses.prefix, 24U);
    EXPECT_EQ(addresses.end, QelIPv6(QelIPv4(0x0A000009)));
}

class QelIPPoolTest : public NetworkRecordTest {
protected:
    /// Expects the record to be read without element `id`, but not with this malformed value of it.
    template <class Record> void expectOptionalButWellFormed(int id, const std::string& malformed) {
        newElement();
        Record record;
        EXPECT_EQ(read(record), 0) << id;
        put(id, malformed);
        EXPECT_EQ(read(record), -1) << id;
    }
};

TEST_F(QelIPPoolTest, RoundTripsAllFields) {
    QelIPPool pool;
    pool.netmask = "255.255.255.0";
    pool.nameServers = {QelIPv6(std::string("192.0.2.53")), first};
    pool.address2050 = last;
    pool.id = QelGUID(1, 2);
    pool.name = "front";
    pool.description = std::string("a\0b", 3);
    pool.ranges = {rangeOf(first, last, 0), rangeOf(first, QelIPv6(), 64)};
    pool.members = {QelGUID(3, 4), QelGUID(5, 6)};
    pool.disabled = true;
    const QelIPPool back = roundTrip(pool);
    EXPECT_EQ(back.netmask, pool.netmask);
    EXPECT_EQ(back.nameServers, pool.nameServers);
    EXPECT_EQ(back.address2050, last);
    EXPECT_EQ(back.id, pool.id);
    EXPECT_EQ(back.name, "front");
    EXPECT_EQ(back.description, pool.description);
    ASSERT_TRUE(back.ranges.isSpecified());
    ASSERT_THAT(back.ranges.get(), SizeIs(2));
    EXPECT_EQ(back.ranges.get()[1].prefix, 64U);
    EXPECT_EQ(back.members, pool.members);
    EXPECT_EQ(back.disabled, pool.disabled);
    EXPECT_THAT(childIDs(message), ElementsAre(1784, 1708, 2050, 1010, 1026, 1496, 2160, 2161, 1705));
    EXPECT_THAT(childrenIn(1708), ElementsAre(1281, 1281));
    EXPECT_EQ(valueIn(1708, 1281), "192.0.2.53") << "IPv4 addresses are written in dotted form";
    EXPECT_THAT(childrenIn(2160), ElementsAre(1662, 1662));
    EXPECT_THAT(childrenIn(2161), ElementsAre(1010, 1010));
    EXPECT_EQ(value(1496), "YQBi");
    EXPECT_EQ(value(1705), "1");
    ASSERT_EQ(message.seek(2160), 0);
    ASSERT_EQ(message.seek(1662), 0);
    EXPECT_EQ(message.curType(), "ip_pool:ip_range");
    message.seekUp();
    message.seekUp();
}

TEST_F(QelIPPoolTest, EmptyPoolWritesNothing) {
    const QelIPPool back = roundTrip(QelIPPool());
    EXPECT_THAT(childIDs(message), IsEmpty());
    EXPECT_FALSE(back.nameServers.isSpecified());
    EXPECT_FALSE(back.ranges.isSpecified());
    EXPECT_FALSE(back.members.isSpecified());
    EXPECT_FALSE(back.disabled.isSpecified());
}

TEST_F(QelIPPoolTest, RoundTripsSpecifiedEmptyLists) {
    QelIPPool pool;
    pool.nameServers.specify(true);
    pool.ranges.specify(true);
    pool.members.specify(true);
    pool.disabled = false;
    const QelIPPool back = roundTrip(pool);
    EXPECT_THAT(childIDs(message), ElementsAre(1708, 2160, 2161, 1705));
    EXPECT_THAT(childrenIn(1708), IsEmpty());
    EXPECT_THAT(childrenIn(2160), IsEmpty());
    EXPECT_EQ(back.nameServers, pool.nameServers);
    ASSERT_TRUE(back.ranges.isSpecified());
    EXPECT_THAT(back.ranges.get(), IsEmpty());
    EXPECT_EQ(back.members, pool.members);
    EXPECT_EQ(back.disabled, pool.disabled);
}

TEST_F(QelIPPoolTest, RejectsMalformedFields) {
    expectOptionalButWellFormed<QelIPPool>(1010, "no identifier");
    expectOptionalButWellFormed<QelIPPool>(1496, "?");
    expectOptionalButWellFormed<QelIPPool>(1705, "perhaps");
    newElement();
    putIn(2161, 1010, "no identifier");
    QelIPPool pool;
    EXPECT_EQ(read(pool), -1);
    EXPECT_FALSE(pool.members.isSpecified());
    newElement();
    putIn(2160, 1662, "");
    EXPECT_EQ(read(pool), -1) << "a range without a start";
}

TEST_F(QelIPPoolTest, MissingElementsLeaveFieldsUnchanged) {
    QelIPPool pool;
    pool.nameServers = {first};
    pool.ranges = {rangeOf(first, last, 0)};
    pool.members = {QelGUID(3, 4)};
    pool.disabled = true;
    EXPECT_EQ(read(pool), 0);
    ASSERT_TRUE(pool.nameServers.isSpecified());
    EXPECT_THAT(pool.nameServers.get(), ElementsAre(first));
    ASSERT_TRUE(pool.ranges.isSpecified());
    EXPECT_THAT(pool.ranges.get(), SizeIs(1));
    ASSERT_TRUE(pool.members.isSpecified());
    EXPECT_THAT(pool.members.get(), ElementsAre(QelGUID(3, 4)));
    ASSERT_TRUE(pool.disabled.isSpecified());
    EXPECT_TRUE(pool.disabled.get());
}

TEST_F(QelIPPoolTest, ReadsBaseFirst) {
    QelIPPoolAllocation allocation;
    put(1784, "24");
    EXPECT_EQ(read(allocation), -1);
    EXPECT_EQ(allocation.netmask, "24");
}

TEST_F(QelIPPoolTest, AllocationRequiresAddress) {
    QelIPPoolAllocation allocation;
    EXPECT_EQ(write(allocation), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1262));
    newElement();
    EXPECT_EQ(read(allocation), -1);
    allocation.netmask = "24";
    allocation.address = "10.0.0.7";
    EXPECT_EQ(roundTrip(allocation).address, "10.0.0.7");
    EXPECT_THAT(childIDs(message), ElementsAre(1784, 1262));
}

TEST_F(QelIPPoolTest, AllocationItemDoesNotRequireAddress) {
    QelIPPoolAllocationItem item;
    item.address = first;
    EXPECT_EQ(read(item), 0);
    EXPECT_EQ(item.address, first);
    EXPECT_EQ(write(item), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1262)) << "omits the invalid identifier and the time 0";
    newElement();
    item.id = QelGUID(1, 2);
    item.time = 1LL << 40;
    const QelIPPoolAllocationItem back = roundTrip(item);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 1262, 1004));
    EXPECT_EQ(back.time, item.time);
    expectOptionalButWellFormed<QelIPPoolAllocationItem>(1010, "no identifier");
}

TEST_F(QelIPPoolTest, UsageAlwaysWritesNumbers) {
    QelIPPoolUsage usage;
    EXPECT_EQ(write(usage), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1259, 1059));
    usage.count = 7;
    newElement();
    put(1259, "many");
    EXPECT_EQ(read(usage), 0);
    EXPECT_EQ(usage.count, 7);
    expectOptionalButWellFormed<QelIPPoolUsage>(1010, "no identifier");
}

TEST_F(QelIPPoolTest, MalformedAllocationEndsListOnly) {
    putIn(2178, 1262, "10.0.0.1");
    putIn(2178, 1010, "no identifier");
    putIn(2178, 1262, "10.0.0.3");
    QelIPPoolUsage usage;
    EXPECT_EQ(read(usage), 0);
    EXPECT_THAT(usage.allocations, SizeIs(1));
}

TEST_F(QelIPPoolTest, RoundTripsRequest) {
    QelAllocateIPParams request;
    request.id = QelGUID(1, 2);
    request.id2182 = QelGUID(3, 4);
    request.ids2183 = {QelGUID(5, 6), QelGUID(7, 8)};
    request.addresses = {"10.0.0.1", "", "2001:db8::1"};
    request.time = 5;
    request.count = 3;
    const QelAllocateIPParams back = roundTrip(request);
    EXPECT_EQ(back.id, request.id);
    EXPECT_EQ(back.id2182, request.id2182);
    EXPECT_EQ(back.ids2183, request.ids2183);
    EXPECT_EQ(back.addresses, request.addresses);
    EXPECT_EQ(back.time, 5);
    EXPECT_EQ(back.count, 3);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 2182, 2183, 2183, 1262, 1262, 1262, 1004, 1259));
}

TEST_F(QelIPPoolTest, EmptyRequestWritesNumbers) {
    EXPECT_EQ(write(QelAllocateIPParams()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1004, 1259));
    for (const int id : {1010, 2182, 2183})
        expectOptionalButWellFormed<QelAllocateIPParams>(id, "no identifier");
}

} // namespace
} // namespace Qel
