#include "QelMessage/QelWireTable.h"

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelRecordType.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::HasSubstr;

struct Part : QelRecord<Part> {
    int number = 0;

    static const QelWireLayout& wire;
};

enum class Colour : int { red = 1, blue = 2 };

/// A record with a field of each kind.
struct Whole : QelRecord<Whole, Part> {
    std::string required = "r";
    std::string optional;
    std::string encoded;
    int ignored = 5;
    long time = 0;
    long long big = 0;
    unsigned small = 0;
    double real = 0;
    bool truth = false;
    bool flag = false;
    Colour colour = Colour::red;
    Part part;
    boost::shared_ptr<Part> pointer;
    std::vector<int> list;
    std::set<std::string> wrapped;
    std::vector<Part> parts;
    int given = -1;
    std::string byHand;

    static const QelWireLayout& wire;
};

/// Fields with a reading order that differs from the writing order.
struct Reordered : QelRecord<Reordered> {
    int first = 0;
    int second = 0;

    static const QelWireLayout& wire;
};

constexpr bool isGiven(int number) {
    return number != -1;
}
int readByHand(const QelMessageIterator& cursor, Whole& whole) {
    return cursor.getValue(whole.byHand, 1240);
}
int writeByHand(QelMessageIterator& cursor, const Whole& whole) {
    return whole.byHand == "refused" ? 7 : cursor.putValue(whole.byHand, 1240);
}

} // namespace

template <> struct Wire<Part> : WireWords<Part> {
    static constexpr int nsId = 292, typeId = 117;
    static constexpr QelWireField fields[] = {field<&R::number>(1010, required, always)};
};
const QelWireLayout& Part::wire = wireLayoutOf<Part>;

template <> struct Wire<Whole> : WireWords<Whole> {
    static constexpr QelWireField fields[] = {
        base<Part>(),
        field<&R::required>(1001, WireWords::required, always),
        field<&R::optional>(1002, WireWords::optional, ifSet),
        field<&R::encoded>(1496, WireWords::optional, ifSet, base64),
        field<&R::ignored>(1005, WireWords::ignored, ifSet),
        field<&R::time>(1004, WireWords::optional, ifSet, WireWords::time),
        field<&R::big>(1066, WireWords::optional, ifSet),
        field<&R::small>(1030, WireWords::optional, ifSet),
        field<&R::real>(1041, WireWords::optional, ifSet),
        field<&R::truth>(1705, WireWords::optional, ifSet),
        Wire::flag<&R::flag>(2066),
        field<&R::colour>(1007, WireWords::optional, always),
        field<&R::part>(1300, WireWords::optional, always),
        field<&R::pointer>(1301, WireWords::optional, ifSet),
        Wire::list<&R::list>(1029, WireWords::optional),
        Wire::wrapped<&R::wrapped>(1980, 1156, WireWords::optional, always),
        Wire::list<&R::parts>(1115, WireWords::optional),
        fieldIf<&R::given, isGiven>(1259, WireWords::ignored),
        step<&readByHand, &writeByHand>("byHand", 1240, WireWords::ignored),
    };
};
const QelWireLayout& Whole::wire = wireLayoutOf<Whole>;

template <> struct Wire<Reordered> : WireWords<Reordered> {
    static constexpr QelWireField fields[] = {
        field<&R::first>(1010, required, always),
        field<&R::second>(1011, required, always),
    };
    static constexpr int readOrder[] = {1011, 1010};
};
const QelWireLayout& Reordered::wire = wireLayoutOf<Reordered>;

namespace {

class QelWireTableTest : public RecordTest {};

Whole filled() {
    Whole whole;
    whole.number = 3;
    whole.required = "text";
    whole.optional = "o";
    whole.encoded = std::string("\0\1", 2);
    whole.ignored = -6;
    whole.time = 1'700'000'000;
    whole.big = 1LL << 50;
    whole.small = 4'294'967'295U;
    whole.real = 0.1;
    whole.truth = true;
    whole.flag = true;
    whole.colour = Colour::blue;
    whole.part.number = 8;
    whole.pointer.reset(new Part{.number = 9});
    whole.list = {3, 1, 3};
    whole.wrapped = {"b", "a"};
    whole.parts = {Part{.number = 1}, Part{.number = 2}};
    whole.given = 0;
    whole.byHand = "hand";
    return whole;
}

TEST_F(QelWireTableTest, EveryKindOfFieldRoundTrips) {
    const Whole back = roundTrip(filled());
    EXPECT_EQ(back.number, 3);
    EXPECT_EQ(back.required, "text");
    EXPECT_EQ(back.optional, "o");
    EXPECT_EQ(back.encoded, std::string("\0\1", 2));
    EXPECT_EQ(back.ignored, -6);
    EXPECT_EQ(back.time, 1'700'000'000);
    EXPECT_EQ(back.big, 1LL << 50);
    EXPECT_EQ(back.small, 4'294'967'295U);
    EXPECT_EQ(back.real, 0.1);
    EXPECT_TRUE(back.truth);
    EXPECT_TRUE(back.flag);
    EXPECT_EQ(back.colour, Colour::blue);
    EXPECT_EQ(back.part.number, 8);
    ASSERT_NE(back.pointer, nullptr);
    EXPECT_EQ(back.pointer->number, 9);
    EXPECT_THAT(back.list, ElementsAre(3, 1, 3));
    EXPECT_THAT(back.wrapped, ElementsAre("a", "b"));
    ASSERT_EQ(back.parts.size(), 2U);
    EXPECT_EQ(back.parts[1].number, 2);
    EXPECT_EQ(back.given, 0);
    EXPECT_EQ(back.byHand, "hand");
}

TEST_F(QelWireTableTest, UnsetFieldsAreNotWritten) {
    Whole whole;
    whole.ignored = 0;
    ASSERT_EQ(write(whole), 0);
    for (const int id : {1002, 1496, 1005, 1004, 1066, 1030, 1041, 1705, 2066, 1301, 1029, 1115, 1259})
        EXPECT_EQ(countChildren(message, id), 0) << id;
    for (const int id : {1010, 1001, 1007, 1300, 1980})
        EXPECT_EQ(countChildren(message, id), 1) << id;
}

TEST_F(QelWireTableTest, FieldsAreWrittenInTableOrder) {
    ASSERT_EQ(write(filled()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 1001, 1002, 1496, 1005, 1004, 1066, 1030, 1041, 1705, 2066, 1007,
                                               1300, 1301, 1029, 1029, 1029, 1980, 1115, 1115, 1259, 1240));
}

TEST_F(QelWireTableTest, ReportsAMissingRequiredElement) {
    message.putValue(1, 1010);
    Whole whole;
    EXPECT_EQ(read(whole), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("/configuration: cannot read Whole: element e1001 (required) is missing"));
}

TEST_F(QelWireTableTest, ReportsAMalformedOptionalElement) {
    Whole whole = filled();
    ASSERT_EQ(write(whole), 0);
    message.deleteChild(1030);
    message.putValue("many", 1030);
    whole.small = 77;
    EXPECT_EQ(read(whole), -1);
    EXPECT_EQ(whole.small, 77U);
    EXPECT_THAT(getErrorMessage(), HasSubstr("element uid (small) is malformed"));
}

TEST_F(QelWireTableTest, MalformedIgnoredElementLeavesTheFieldUnchanged) {
    Whole whole;
    ASSERT_EQ(write(filled()), 0);
    message.deleteChild(1005);
    message.putValue("x", 1005);
    EXPECT_EQ(read(whole), 0);
    EXPECT_EQ(whole.ignored, 5);
}

TEST_F(QelWireTableTest, NumberOutOfRangeIsMalformed) {
    ASSERT_EQ(write(filled()), 0);
    message.deleteChild(1030);
    message.putValueLongLong(1LL << 32, 1030);
    Whole whole;
    EXPECT_EQ(read(whole), -1);
}

TEST_F(QelWireTableTest, FlagIsFalseWithoutItsElement) {
    Whole whole;
    ASSERT_EQ(write(whole), 0);
    whole.flag = true;
    EXPECT_EQ(read(whole), 0);
    EXPECT_FALSE(whole.flag);
}

TEST_F(QelWireTableTest, ReportsTheInnermostFailure) {
    ASSERT_EQ(write(filled()), 0);
    ASSERT_EQ(message.seek(1300), 0);
    message.deleteChild(1010);
    message.seekUp();
    Whole whole;
    EXPECT_EQ(read(whole), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("cannot read Part: element id (number) is missing"));
}

TEST_F(QelWireTableTest, FailureKeepsEarlierFields) {
    message.putValue(1, 1011);
    Reordered record;
    EXPECT_EQ(read(record), -1);
    EXPECT_EQ(record.second, 1) << "1011 is read first";
}

TEST_F(QelWireTableTest, FailureStopsReadingInReadingOrder) {
    message.putValue(1, 1010);
    Reordered record;
    EXPECT_EQ(read(record), -1);
    EXPECT_EQ(record.first, 0) << "1010 is read last";
}

TEST_F(QelWireTableTest, MalformedItemFailsAndKeepsEarlierItems) {
    ASSERT_EQ(write(filled()), 0);
    message.putValue("x", 1029);
    Whole whole;
    EXPECT_EQ(read(whole), -1);
    EXPECT_THAT(whole.list, ElementsAre(3, 1, 3));
    EXPECT_EQ(message.curID(), recordElement);
}

TEST_F(QelWireTableTest, NestedRecordGetsATypeAndABaseDoesNot) {
    ASSERT_EQ(write(filled()), 0);
    EXPECT_EQ(message.curType(), "") << "the type of the base is not set on the record's element";
    for (const int id : {1300, 1301, 1115}) {
        ASSERT_EQ(message.seek(id), 0);
        EXPECT_EQ(message.curType(), "env:os") << id;
        message.seekUp();
    }
}

TEST_F(QelWireTableTest, ReportsAFailedStepWhenWriting) {
    Whole whole = filled();
    whole.byHand = "refused";
    EXPECT_EQ(write(whole), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("cannot write Whole: element key (byHand) was rejected"));
}

TEST_F(QelWireTableTest, MissingElementLeavesThePointerUnchanged) {
    Whole whole = filled();
    whole.pointer.reset();
    const Whole back = roundTrip(whole);
    EXPECT_EQ(back.pointer, nullptr);
}

TEST(QelWireLayoutTest, DescribesNamesKindsAndElements) {
    const QelWireLayout& layout = Whole::wire;
    const auto& fields = layout.fields;
    EXPECT_EQ(layout.nsId, 0);
    EXPECT_EQ(layout.typeId, 50);
    EXPECT_EQ(fields[0].codec->kind, QelWireKind::base);
    EXPECT_EQ(fields[0].codec->layout(), &Part::wire);
    EXPECT_EQ(fields[1].name, "required");
    EXPECT_EQ(fields[1].codec->kind, QelWireKind::text);
    EXPECT_EQ(fields[5].form, QelWireForm::time);
    EXPECT_EQ(fields[6].codec->kind, QelWireKind::longInteger);
    EXPECT_EQ(fields[10].codec->kind, QelWireKind::presence);
    EXPECT_EQ(fields[14].codec->kind, QelWireKind::sequence);
    EXPECT_EQ(fields[14].codec->item->kind, QelWireKind::integer);
    EXPECT_EQ(fields[15].codec->kind, QelWireKind::set);
    EXPECT_EQ(fields[16].codec->item->layout(), &Part::wire);
    EXPECT_EQ(fields[18].codec->kind, QelWireKind::step);
    EXPECT_EQ(fields[18].name, "byHand");
}

TEST_F(QelWireTableTest, RecordTypeRewritesWithoutKnowingTheClass) {
    const QelRecordType type = makeRecordType<Part>("Part", &Part::wire);
    EXPECT_EQ(type.nsId, 292);
    EXPECT_EQ(type.typeId, 117);
    message.putValue(5, 1010);
    const TestMessage otherTree;
    QelMessageIterator* const other = &otherTree.cursor();
    other->newChild(1007);
    const QelRecordType::Results results = type.rewrite(message, *other);
    EXPECT_EQ(results.read, 0);
    EXPECT_EQ(results.write, 0);
    EXPECT_EQ(other->curType(), "env:os");
    EXPECT_EQ(childValue(*other, 1010), "5");

    message.deleteChild(1010);
    EXPECT_EQ(type.rewrite(message, *other).read, -1);
}

} // namespace
} // namespace Qel
