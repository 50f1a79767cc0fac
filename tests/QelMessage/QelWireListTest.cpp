// List variants: required items, values in a child of the item, lists that a read replaces.

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelWireTable.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// A record with required lists.
struct RequiredLists : QelRecord<RequiredLists> {
    std::vector<int> items;
    std::vector<int> wrapped;

    static const QelWireLayout& wire;
};

/// A record whose wrapper elements must contain items: a failure for the required list, ignored for the other.
struct FilledLists : QelRecord<FilledLists> {
    std::vector<int> items;
    std::vector<int> spare;

    static const QelWireLayout& wire;
};

/// Lists whose items hold their values in a child, and a list that a read clears first.
struct House : QelRecord<House> {
    std::vector<std::string> tenants;
    std::set<std::string> pets;
    std::vector<int> rooms;

    static const QelWireLayout& wire;
};

constexpr int tenant = 1025;
constexpr int pet = 1737;
constexpr int nameOf = 1026;
constexpr int room = 1115;

} // namespace

template <> struct Wire<RequiredLists> : WireWords<RequiredLists> {
    static constexpr QelWireField fields[] = {
        list<&R::items>(1029, required),
        wrapped<&R::wrapped>(1980, 1156, required, always),
    };
};
const QelWireLayout& RequiredLists::wire = wireLayoutOf<RequiredLists>;

template <> struct Wire<FilledLists> : WireWords<FilledLists> {
    static constexpr QelWireField fields[] = {
        wrapped<&R::items>(1980, 1156, required, always).nonEmpty(),
        wrapped<&R::spare>(1029, 1010, ignored, always).nonEmpty(),
    };
};
const QelWireLayout& FilledLists::wire = wireLayoutOf<FilledLists>;

template <> struct Wire<House> : WireWords<House> {
    static constexpr QelWireField fields[] = {
        list<&R::tenants>(tenant, optional).withValue(nameOf),
        list<&R::pets>(pet, optional).withValue(nameOf),
        list<&R::rooms>(room, optional).cleared(),
    };
};
const QelWireLayout& House::wire = wireLayoutOf<House>;

namespace {

class QelWireListTest : public RecordTest {};

TEST_F(QelWireListTest, RequiredListNeedsItemsButARequiredWrapperMayBeEmpty) {
    message.putChild(1980);
    RequiredLists record;
    EXPECT_EQ(read(record), -1);
    message.putValue(4, 1029);
    EXPECT_EQ(read(record), 0);
    EXPECT_THAT(record.items, ElementsAre(4));
    EXPECT_THAT(record.wrapped, IsEmpty());
    message.deleteChild(1980);
    EXPECT_EQ(read(record), -1);
}

TEST_F(QelWireListTest, MalformedItemStopsTheList) {
    for (const char* const number : {"1", "x", "3"})
        message.putValue(std::string(number), 1029);
    RequiredLists record;
    EXPECT_EQ(read(record), -1);
    EXPECT_THAT(record.items, ElementsAre(1));
    EXPECT_EQ(message.curID(), recordElement);
}

TEST_F(QelWireListTest, NonEmptyWrapperNeedsItemsUnlessIgnored) {
    message.putChild(1980);
    message.putChild(1029);
    FilledLists record;
    EXPECT_EQ(read(record), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("cannot read FilledLists: element paths (items) is malformed"));
    ASSERT_EQ(message.seek(1980), 0);
    message.putValue(4, 1156);
    message.seekUp();
    EXPECT_EQ(read(record), 0);
    EXPECT_THAT(record.items, ElementsAre(4));
    EXPECT_THAT(record.spare, IsEmpty());
}

TEST_F(QelWireListTest, ItemsMayHoldTheirValuesInAChild) {
    House house;
    house.tenants = {"b", "a"};
    house.pets = {"dog", "cat"};
    ASSERT_EQ(write(house), 0);
    ASSERT_EQ(message.seek(tenant), 0);
    EXPECT_EQ(childValue(message, nameOf), "b");
    message.seekUp();
    House back;
    EXPECT_EQ(read(back), 0);
    EXPECT_THAT(back.tenants, ElementsAre("b", "a"));
    EXPECT_THAT(back.pets, ElementsAre("cat", "dog"));
    message.putValue("value of the item", pet);
    EXPECT_EQ(read(back), -1);
}

TEST_F(QelWireListTest, ClearedListKeepsOnlyTheLastRead) {
    House house;
    house.rooms = {1, 2};
    ASSERT_EQ(write(house), 0);
    House back;
    back.rooms = {9};
    EXPECT_EQ(read(back), 0);
    EXPECT_THAT(back.rooms, ElementsAre(1, 2));
    message.deleteChild(room);
    message.deleteChild(room);
    EXPECT_EQ(read(back), 0);
    EXPECT_THAT(back.rooms, IsEmpty());
}

TEST_F(QelWireListTest, LayoutReportsTheValueElementOfAnItem) {
    const auto& fields = House::wire.fields;
    EXPECT_EQ(fields[0].value, nameOf);
    EXPECT_EQ(fields[1].value, nameOf);
    EXPECT_EQ(fields[2].value, 0);
}

} // namespace
} // namespace Qel
