// Maps: each entry contains its key, and its value or the fields of its value.

#include <gmock/gmock.h>

#include "QelMessage/QelWireTable.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

/// A record with a complex type, as the value of a map.
struct Price : QelRecord<Price> {
    int amount = 0;

    static const QelWireLayout& wire;
};
struct PriceList : QelRecord<PriceList> {
    std::map<std::string, int> amounts;
    std::map<std::string, Price> prices;

    static const QelWireLayout& wire;
};

} // namespace

template <> struct Wire<Price> : WireWords<Price> {
    static constexpr int nsId = 292, typeId = 117;
    static constexpr QelWireField fields[] = {field<&R::amount>(1010, required, always)};
};
const QelWireLayout& Price::wire = wireLayoutOf<Price>;

template <> struct Wire<PriceList> : WireWords<PriceList> {
    static constexpr QelWireField fields[] = {
        map<&R::amounts>(1307, 1240, 1018, optional),
        wrappedMap<&R::prices>(2276, 2273, 1011, 0, optional, always),
    };
};
const QelWireLayout& PriceList::wire = wireLayoutOf<PriceList>;

namespace {

class QelWireMapTest : public RecordTest {};

TEST_F(QelWireMapTest, MapEntryContainsItsKeyAndValue) {
    PriceList list;
    list.amounts = {{"adult", 9}, {"child", 4}};
    list.prices = {{"a", Price{.amount = 1}}};
    const PriceList back = roundTrip(list);
    EXPECT_THAT(back.amounts, ElementsAre(Pair("adult", 9), Pair("child", 4)));
    EXPECT_EQ(back.prices.at("a").amount, 1);
    ASSERT_EQ(message.seek(2276), 0);
    ASSERT_EQ(message.seek(2273), 0);
    EXPECT_EQ(message.curType(), "") << "an entry does not have the type of its value";
    EXPECT_EQ(childValue(message, 1011), "a");
    EXPECT_EQ(childValue(message, 1010), "1");
}

TEST_F(QelWireMapTest, FirstEntryOfAKeyWins) {
    for (const int price : {9, 4}) {
        message.newChild(1307);
        message.putValue("adult", 1240);
        message.putValue(price, 1018);
        message.seekUp();
    }
    PriceList list;
    EXPECT_EQ(read(list), 0);
    EXPECT_THAT(list.amounts, ElementsAre(Pair("adult", 9)));
}

TEST_F(QelWireMapTest, MalformedEntryStopsTheMap) {
    for (const char* const price : {"1", "x", "3"}) {
        message.newChild(1307);
        message.putValue(std::string(price), 1240);
        message.putValue(std::string(price), 1018);
        message.seekUp();
    }
    PriceList list;
    EXPECT_EQ(read(list), -1);
    EXPECT_THAT(list.amounts, ElementsAre(Pair("1", 1)));
    EXPECT_EQ(message.curID(), recordElement);
}

TEST_F(QelWireMapTest, EntryWithoutAValueFails) {
    message.newChild(1307);
    message.putValue("adult", 1240);
    message.seekUp();
    PriceList list;
    EXPECT_EQ(read(list), -1);
    EXPECT_THAT(list.amounts, IsEmpty());
    EXPECT_EQ(message.curID(), recordElement);
}

} // namespace
} // namespace Qel
