#include "QelMessage/QelWireTable.h"

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelRecordType.h"
#include "support/TestMessage.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

struct Part {
    int number = 0;

    using Reader = QelRecordReader<Part>;
    using Writer = QelRecordWriter<Part>;
    using reader_type = Reader;
    using writer_type = Writer;
};

enum class Colour : int { red = 1, blue = 2 };

/// One field of each kind that a table can state.
struct Whole : Part {
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

    using Reader = QelRecordReader<Whole>;
    using Writer = QelRecordWriter<Whole>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Fields that bits of a mask tell to be set.
struct Masked {
    std::string name;
    int number = 0;
    unsigned mask = 0;

    using reader_type = QelRecordReader<Masked>;
    using writer_type = QelRecordWriter<Masked>;
};

/// Fields read in another order than they are written.
struct Reordered {
    int first = 0;
    int second = 0;
    using reader_type = QelRecordReader<Reordered>;
    using writer_type = QelRecordWriter<Reordered>;
};

/// A record that needs its items.
struct Needy {
    std::vector<int> items;
    std::vector<int> wrapped;
    using reader_type = QelRecordReader<Needy>;
    using writer_type = QelRecordWriter<Needy>;
};

/// A record that takes no element without items, and one that then takes none at all.
struct Greedy {
    std::vector<int> items;
    std::vector<int> spare;
    using reader_type = QelRecordReader<Greedy>;
    using writer_type = QelRecordWriter<Greedy>;
};

/// A family of two, and a record that holds them in every way.
struct Animal {
    virtual ~Animal() = default;
    std::string name;
    using Reader = QelRecordReader<Animal>;
    using Writer = QelRecordWriter<Animal>;
    using reader_type = Reader;
    using writer_type = Writer;
};
struct Bird : Animal {
    int wings = 2;
    using Reader = QelRecordReader<Bird>;
    using Writer = QelRecordWriter<Bird>;
    using reader_type = Reader;
    using writer_type = Writer;
};
struct Zoo {
    boost::shared_ptr<Animal> star;
    std::vector<boost::shared_ptr<Animal>> animals;
    std::vector<boost::shared_ptr<Animal>> guests;
    std::map<std::string, int> prices;
    std::map<std::string, Part> parts;
    using reader_type = QelRecordReader<Zoo>;
    using writer_type = QelRecordWriter<Zoo>;
};

/// A bool that may be unset.
class Maybe {
public:
    [[nodiscard]] bool isSpecified() const { return m_specified; }
    [[nodiscard]] bool get() const { return m_value; }
    Maybe& operator=(bool value) {
        m_value = value;
        m_specified = true;
        return *this;
    }

private:
    bool m_value = false;
    bool m_specified = false;
};

/// Bit masks and flags, those that a read replaces and those that it only adds to.
struct Masks {
    int mask = 0;
    unsigned wrapped = 0;
    int added = 0;
    bool flag = false;
    Maybe given{};
    using reader_type = QelRecordReader<Masks>;
    using writer_type = QelRecordWriter<Masks>;
};

/// Fields that don't take every value.
struct Choosy {
    int even = 4;
    std::string text = "old";
    using reader_type = QelRecordReader<Choosy>;
    using writer_type = QelRecordWriter<Choosy>;
};
constexpr bool isEven(int number) {
    return number % 2 == 0;
}
bool isNotEmpty(const std::string& text) {
    return !text.empty();
}

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
    static constexpr QelWireField fields[] = {field<&Part::number>(1010, required, always)};
};
template <> const QelWireLayout& qelWireLayout<Part>() {
    return wireLayoutOf<Part>;
}

template <> struct Wire<Whole> : WireWords<Whole> {
    static constexpr QelWireField fields[] = {
        base<Part>(),
        field<&Whole::required>(1001, WireWords::required, always),
        field<&Whole::optional>(1002, WireWords::optional, ifSet),
        field<&Whole::encoded>(1496, WireWords::optional, ifSet, base64),
        field<&Whole::ignored>(1005, WireWords::ignored, ifSet),
        field<&Whole::time>(1004, WireWords::optional, ifSet, WireWords::time),
        field<&Whole::big>(1066, WireWords::optional, ifSet),
        field<&Whole::small>(1030, WireWords::optional, ifSet),
        field<&Whole::real>(1041, WireWords::optional, ifSet),
        field<&Whole::truth>(1705, WireWords::optional, ifSet),
        Wire::flag<&Whole::flag>(2066),
        field<&Whole::colour>(1007, WireWords::optional, always),
        field<&Whole::part>(1300, WireWords::optional, always),
        field<&Whole::pointer>(1301, WireWords::optional, ifSet),
        Wire::list<&Whole::list>(1029, WireWords::optional),
        Wire::wrapped<&Whole::wrapped>(1980, 1156, WireWords::optional, always),
        Wire::list<&Whole::parts>(1115, WireWords::optional),
        fieldIf<&Whole::given, isGiven>(1259, WireWords::ignored),
        step<&readByHand, &writeByHand>("byHand", 1240, WireWords::ignored),
    };
};
template <> const QelWireLayout& qelWireLayout<Whole>() {
    return wireLayoutOf<Whole>;
}

template <> struct Wire<Choosy> : WireWords<Choosy> {
    static constexpr QelWireField fields[] = {
        checked<&Choosy::even, isEven>(1007, required, always),
        checked<&Choosy::text, isNotEmpty>(1026, ignored, always, base64),
    };
};
template <> const QelWireLayout& qelWireLayout<Choosy>() {
    return wireLayoutOf<Choosy>;
}

template <> struct Wire<Masked> : WireWords<Masked> {
    static constexpr QelWireField fields[] = {
        marked<&Masked::name, &Masked::mask>(1026, 1, required, always),
        marked<&Masked::number, &Masked::mask>(1010, 4, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<Masked>() {
    return wireLayoutOf<Masked>;
}

template <> struct Wire<Reordered> : WireWords<Reordered> {
    static constexpr QelWireField fields[] = {
        field<&Reordered::first>(1010, required, always),
        field<&Reordered::second>(1011, required, always),
    };
    static constexpr int readOrder[] = {1011, 1010};
};
template <> const QelWireLayout& qelWireLayout<Reordered>() {
    return wireLayoutOf<Reordered>;
}

template <> struct Wire<Needy> : WireWords<Needy> {
    static constexpr QelWireField fields[] = {
        list<&Needy::items>(1029, required),
        wrapped<&Needy::wrapped>(1980, 1156, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<Needy>() {
    return wireLayoutOf<Needy>;
}

template <> struct QelWireValue<Maybe> : QelWireValue<bool> {
    using Specified = bool;
    static bool isSet(const Maybe& value) { return value.isSpecified(); }
};

template <> struct Wire<Masks> : WireWords<Masks> {
    static constexpr QelWireField fields[] = {
        bits<&Masks::mask, QelWireBit{1, 1844}, QelWireBit{4, 1456}>(),
        wrappedBits<&Masks::wrapped, QelWireBit{2, 1628}, QelWireBit{1, 1627}>(1197, ifSet),
        wrappedBits<&Masks::added, QelWireBit{1, 2131}>(1786, always).kept(),
        Wire::flag<&Masks::flag>(1917).kept(),
        Wire::flag<&Masks::given>(1152),
    };
};
template <> const QelWireLayout& qelWireLayout<Masks>() {
    return wireLayoutOf<Masks>;
}

template <> struct Wire<Greedy> : WireWords<Greedy> {
    static constexpr QelWireField fields[] = {
        wrapped<&Greedy::items>(1980, 1156, required, always).filled(),
        wrapped<&Greedy::spare>(1029, 1010, ignored, always).filled(),
    };
};
template <> const QelWireLayout& qelWireLayout<Greedy>() {
    return wireLayoutOf<Greedy>;
}

template <> struct Wire<Animal> : WireWords<Animal> {
    static constexpr int nsId = 292, typeId = 166;
    static constexpr QelWireField fields[] = {field<&Animal::name>(1026, required, always)};
};
template <> const QelWireLayout& qelWireLayout<Animal>() {
    return wireLayoutOf<Animal>;
}
template <> struct Wire<Bird> : WireWords<Bird> {
    static constexpr int nsId = 292, typeId = 167;
    static constexpr QelWireField fields[] = {base<Animal>(), field<&Bird::wings>(1259, required, always)};
};
template <> const QelWireLayout& qelWireLayout<Bird>() {
    return wireLayoutOf<Bird>;
}
template <> struct Wire<Zoo> : WireWords<Zoo> {
    static constexpr QelWireField fields[] = {
        derived<&Zoo::star, false>(1114, ignored, always).unchecked(),
        derivedList<&Zoo::animals, true>(1115, optional),
        wrappedDerivedList<&Zoo::guests, false>(1915, 1295, optional, ifSet),
        map<&Zoo::prices>(1307, 1240, 1018, optional),
        wrappedMap<&Zoo::parts>(2276, 2273, 1011, 0, optional, always),
    };
};
template <> const QelWireLayout& qelWireLayout<Zoo>() {
    return wireLayoutOf<Zoo>;
}

namespace {

class QelWireTableTest : public testing::Test {
protected:
    QelWireTableTest() { message->newChild(1006); }

    /// What a record reads back as.
    template <class Record> Record roundTrip(const Record& record) {
        EXPECT_EQ(typename Record::writer_type()(*message, record), 0);
        Record back;
        EXPECT_EQ(typename Record::reader_type()(*message, back), 0) << getErrorMessage();
        EXPECT_EQ(message->curID(), 1006) << "the cursor comes back";
        return back;
    }
    template <class Record> int read(Record& record) { return typename Record::reader_type()(*message, record); }

    TestMessage tree;
    QelMessageIterator* const message = &tree.cursor();
};

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
    whole.pointer.reset(new Part{9});
    whole.list = {3, 1, 3};
    whole.wrapped = {"b", "a"};
    whole.parts = {Part{1}, Part{2}};
    whole.given = 0;
    whole.byHand = "hand";
    return whole;
}

TEST_F(QelWireTableTest, EachKindOfFieldComesBack) {
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
    ASSERT_EQ(Whole::Writer()(*message, whole), 0);
    for (const int id : {1002, 1496, 1005, 1004, 1066, 1030, 1041, 1705, 2066, 1301, 1029, 1115, 1259})
        EXPECT_EQ(countChildren(*message, id), 0) << id;
    for (const int id : {1010, 1001, 1007, 1300, 1980})
        EXPECT_EQ(countChildren(*message, id), 1) << id;
}

TEST_F(QelWireTableTest, FieldsAreWrittenInTheOrderOfTheTable) {
    ASSERT_EQ(Whole::Writer()(*message, filled()), 0);
    std::vector<int> ids;
    ASSERT_EQ(message->firstChild(), 0);
    do
        ids.push_back(message->curID());
    while (message->nextSibling() == 0);
    EXPECT_THAT(ids, ElementsAre(1010, 1001, 1002, 1496, 1005, 1004, 1066, 1030, 1041, 1705, 2066, 1007, 1300, 1301,
                                 1029, 1029, 1029, 1980, 1115, 1115, 1259, 1240));
}

TEST_F(QelWireTableTest, AMissingRequiredElementFailsAndIsNamed) {
    message->putValue(1, 1010);
    Whole whole;
    EXPECT_EQ(read(whole), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("/backup: can't read Whole: element e1001 (required) is missing"));
}

TEST_F(QelWireTableTest, AMalformedOptionalElementFailsAndIsNamed) {
    Whole whole = filled();
    ASSERT_EQ(Whole::Writer()(*message, whole), 0);
    message->deleteChild(1030);
    message->putValue("many", 1030);
    whole.small = 77;
    EXPECT_EQ(read(whole), -1);
    EXPECT_EQ(whole.small, 77U);
    EXPECT_THAT(getErrorMessage(), HasSubstr("element uid (small) is malformed"));
}

TEST_F(QelWireTableTest, AMalformedIgnoredElementLeavesTheFieldAndIsNoFailure) {
    Whole whole;
    ASSERT_EQ(Whole::Writer()(*message, filled()), 0);
    message->deleteChild(1005);
    message->putValue("x", 1005);
    EXPECT_EQ(read(whole), 0);
    EXPECT_EQ(whole.ignored, 5);
}

TEST_F(QelWireTableTest, ANumberThatDoesNotFitIsMalformed) {
    ASSERT_EQ(Whole::Writer()(*message, filled()), 0);
    message->deleteChild(1030);
    message->putValueLongLong(1LL << 32, 1030);
    Whole whole;
    EXPECT_EQ(read(whole), -1);
}

TEST_F(QelWireTableTest, AFlagIsFalseWithoutItsElement) {
    Whole whole;
    ASSERT_EQ(Whole::Writer()(*message, whole), 0);
    whole.flag = true;
    EXPECT_EQ(read(whole), 0);
    EXPECT_FALSE(whole.flag);
}

TEST_F(QelWireTableTest, AnInnermostFailureIsTheOneThatIsNamed) {
    ASSERT_EQ(Whole::Writer()(*message, filled()), 0);
    ASSERT_EQ(message->seek(1300), 0);
    message->deleteChild(1010);
    message->seekUp();
    Whole whole;
    EXPECT_EQ(read(whole), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("can't read Part: element id (number) is missing"));
}

TEST_F(QelWireTableTest, AFailureKeepsWhatWasReadBeforeIt) {
    message->putValue(1, 1011);
    Reordered record;
    EXPECT_EQ(read(record), -1);
    EXPECT_EQ(record.second, 1) << "1011 is read first";
}

TEST_F(QelWireTableTest, TheReadingOrderStopsBeforeLaterFields) {
    message->putValue(1, 1010);
    Reordered record;
    EXPECT_EQ(read(record), -1);
    EXPECT_EQ(record.first, 0) << "1010 is read last";
}

TEST_F(QelWireTableTest, ABadItemOfAListFailsAndLeavesTheItemsBeforeIt) {
    ASSERT_EQ(Whole::Writer()(*message, filled()), 0);
    message->putValue("x", 1029);
    Whole whole;
    EXPECT_EQ(read(whole), -1);
    EXPECT_THAT(whole.list, ElementsAre(3, 1, 3));
    EXPECT_EQ(message->curID(), 1006);
}

TEST_F(QelWireTableTest, RequiredItemsMustBeThereButARequiredWrapperMayBeEmpty) {
    message->putChild(1980);
    Needy record;
    EXPECT_EQ(read(record), -1);
    message->putValue(4, 1029);
    EXPECT_EQ(read(record), 0);
    EXPECT_THAT(record.items, ElementsAre(4));
    EXPECT_THAT(record.wrapped, IsEmpty());
    message->deleteChild(1980);
    EXPECT_EQ(read(record), -1);
}

TEST_F(QelWireTableTest, AFilledWrapperMustNotBeEmptyUnlessItsFailureIsIgnored) {
    message->putChild(1980);
    message->putChild(1029);
    Greedy record;
    EXPECT_EQ(read(record), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("can't read Greedy: element paths (items) is malformed"));
    ASSERT_EQ(message->seek(1980), 0);
    message->putValue(4, 1156);
    message->seekUp();
    EXPECT_EQ(read(record), 0);
    EXPECT_THAT(record.items, ElementsAre(4));
    EXPECT_THAT(record.spare, IsEmpty());
}

TEST_F(QelWireTableTest, ARecordInAnElementOfItsOwnIsStampedAndABaseIsNot) {
    ASSERT_EQ(Whole::Writer()(*message, filled()), 0);
    EXPECT_EQ(message->curType(), "") << "the base doesn't stamp the record's element";
    for (const int id : {1300, 1301, 1115}) {
        ASSERT_EQ(message->seek(id), 0);
        EXPECT_EQ(message->curType(), "env:os") << id;
        message->seekUp();
    }
}

TEST_F(QelWireTableTest, AFailedStepFailsTheWritingAndIsNamed) {
    Whole whole = filled();
    whole.byHand = "refused";
    EXPECT_EQ(Whole::Writer()(*message, whole), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("can't write Whole: element key (byHand) was refused"));
}

TEST_F(QelWireTableTest, AnAbsentPointerStaysAsItWas) {
    Whole whole = filled();
    whole.pointer.reset();
    const Whole back = roundTrip(whole);
    EXPECT_EQ(back.pointer, nullptr);
}

class QelWireFamilyTest : public QelWireTableTest {
protected:
    static boost::shared_ptr<Animal> animal(const char* name) {
        boost::shared_ptr<Animal> made(new Animal);
        made->name = name;
        return made;
    }
    static boost::shared_ptr<Animal> bird(const char* name) {
        boost::shared_ptr<Animal> made(new Bird);
        made->name = name;
        return made;
    }

    QelDerivedParserFactoryT<Animal, Animal> factoryAnimal{true};
    QelDerivedParserFactoryT<Bird, Animal> factoryBird{false};
};

TEST_F(QelWireFamilyTest, EachObjectComesBackAsItsClass) {
    Zoo zoo;
    zoo.star = bird("eagle");
    zoo.animals = {animal("cat"), bird("owl")};
    zoo.guests = {bird("swan")};
    const Zoo back = roundTrip(zoo);
    EXPECT_NE(dynamic_cast<Bird*>(back.star.get()), nullptr);
    ASSERT_EQ(back.animals.size(), 2U);
    EXPECT_EQ(dynamic_cast<Bird*>(back.animals[0].get()), nullptr);
    EXPECT_NE(dynamic_cast<Bird*>(back.animals[1].get()), nullptr);
    ASSERT_EQ(back.guests.size(), 1U);
    EXPECT_EQ(back.guests[0]->name, "swan");
}

TEST_F(QelWireFamilyTest, AnUncheckedRowThatCannotBeWrittenDoesNotStopTheRecord) {
    Zoo zoo;
    zoo.prices = {{"adult", 9}};
    EXPECT_THAT(roundTrip(zoo).prices, ElementsAre(testing::Pair("adult", 9)));
}

TEST_F(QelWireFamilyTest, AnUntypedItemIsOfTheDefaultClassOnlyWhereTheRowSaysSo) {
    message->newChild(1115);
    message->putValue("cat", 1026);
    message->seekUp();
    Zoo zoo;
    EXPECT_EQ(read(zoo), 0);
    EXPECT_EQ(zoo.animals.size(), 1U);
    message->newChild(1915);
    message->newChild(1295);
    message->putValue("cat", 1026);
    message->seekUp();
    message->seekUp();
    EXPECT_EQ(read(zoo), -1);
}

TEST_F(QelWireFamilyTest, AMapEntryHoldsItsKeyAndItsValueOrTheFieldsOfTheValue) {
    Zoo zoo;
    zoo.prices = {{"adult", 9}, {"child", 4}};
    zoo.parts = {{"a", Part{1}}};
    const Zoo back = roundTrip(zoo);
    EXPECT_THAT(back.prices, ElementsAre(testing::Pair("adult", 9), testing::Pair("child", 4)));
    EXPECT_EQ(back.parts.at("a").number, 1);
    ASSERT_EQ(message->seek(2276), 0);
    ASSERT_EQ(message->seek(2273), 0);
    EXPECT_EQ(message->curType(), "") << "an entry isn't stamped as its value";
    EXPECT_EQ(childValue(*message, 1011), "a");
    EXPECT_EQ(childValue(*message, 1010), "1");
}

TEST_F(QelWireFamilyTest, OfEntriesWithOneKeyTheFirstStays) {
    for (const int price : {9, 4}) {
        message->newChild(1307);
        message->putValue("adult", 1240);
        message->putValue(price, 1018);
        message->seekUp();
    }
    Zoo zoo;
    EXPECT_EQ(read(zoo), 0);
    EXPECT_THAT(zoo.prices, ElementsAre(testing::Pair("adult", 9)));
}

TEST_F(QelWireFamilyTest, AnEntryWithoutAValueFails) {
    message->newChild(1307);
    message->putValue("adult", 1240);
    message->seekUp();
    Zoo zoo;
    EXPECT_EQ(read(zoo), -1);
    EXPECT_THAT(zoo.prices, IsEmpty());
    EXPECT_EQ(message->curID(), 1006);
}

TEST_F(QelWireTableTest, AMarkedFieldIsWrittenWhenItsBitIsSet) {
    Masked masked;
    masked.number = 7;
    ASSERT_EQ(message->putObj(masked, 0), 0);
    EXPECT_EQ(message->seekPresence(1026), 0) << "the name is written always";
    EXPECT_NE(message->seekPresence(1010), 0);
    masked.mask = 4 | 8;
    ASSERT_EQ(message->putObj(masked, 1007), 0);
    ASSERT_EQ(message->seek(1007), 0);
    EXPECT_EQ(childValue(*message, 1010), "7");
}

TEST_F(QelWireTableTest, ReadingAMarkedFieldSetsItsBitAndNoOther) {
    message->putValue("n", 1026);
    message->putValue(0, 1010);
    Masked masked;
    masked.mask = 8;
    ASSERT_EQ(message->getObj(masked, 0), 0);
    EXPECT_EQ(masked.mask, 1U | 4U | 8U);
}

TEST_F(QelWireTableTest, AMarkedFieldThatCanNotBeReadLeavesItsBit) {
    message->putValue("n", 1026);
    message->putValue("none", 1010);
    Masked masked;
    ASSERT_EQ(message->getObj(masked, 0), 0);
    EXPECT_EQ(masked.mask, 1U);
    message->deleteChild(1026);
    masked.mask = 0;
    EXPECT_EQ(message->getObj(masked, 0), -1);
    EXPECT_EQ(masked.mask, 0U);
}

class QelWireMaskTest : public QelWireTableTest {
protected:
    int write(const Masks& masks) { return Masks::writer_type()(*message, masks); }
};

TEST_F(QelWireMaskTest, EachSetBitIsAnEmptyElementInTheOrderOfTheTable) {
    Masks masks;
    masks.mask = 5;
    masks.wrapped = 3;
    EXPECT_EQ(write(masks), 0);
    EXPECT_THAT(childIDs(*message), ElementsAre(1844, 1456, 1197, 1786));
    EXPECT_EQ(message->seek(1197), 0);
    EXPECT_THAT(childIDs(*message), ElementsAre(1628, 1627));
}

TEST_F(QelWireMaskTest, AMaskOfZeroWritesItsWrapperOnlyIfAlways) {
    EXPECT_EQ(write(Masks()), 0);
    EXPECT_EQ(message->seekPresence(1197), -1);
    EXPECT_EQ(message->seekPresence(1786), 0);
}

TEST_F(QelWireMaskTest, BitsThatTheTableDoesNotKnowAreNotWritten) {
    Masks masks;
    masks.wrapped = 8;
    EXPECT_EQ(write(masks), 0);
    EXPECT_EQ(message->seek(1197), 0);
    EXPECT_THAT(childIDs(*message), IsEmpty());
}

TEST_F(QelWireMaskTest, ReadingReplacesAMask) {
    message->putChild(1456);
    message->newChild(1197);
    message->putChild(1627);
    message->seekUp();
    Masks masks{8 | 1, 8 | 2, 0, false, {}};
    EXPECT_EQ(read(masks), 0);
    EXPECT_EQ(masks.mask, 4);
    EXPECT_EQ(masks.wrapped, 1U);
}

TEST_F(QelWireMaskTest, ReadingWithoutTheWrapperClearsAMask) {
    Masks masks{1, 2, 0, false, {}};
    EXPECT_EQ(read(masks), 0);
    EXPECT_EQ(masks.mask, 0);
    EXPECT_EQ(masks.wrapped, 0U);
}

TEST_F(QelWireMaskTest, AFlagThatMayBeUnsetIsWrittenWhenItIsSpecifiedAndTrue) {
    Masks masks;
    EXPECT_EQ(write(masks), 0);
    EXPECT_NE(message->seekPresence(1152), 0);
    masks.given = false;
    EXPECT_EQ(write(masks), 0);
    EXPECT_NE(message->seekPresence(1152), 0);
    masks.given = true;
    EXPECT_EQ(write(masks), 0);
    EXPECT_EQ(message->seekPresence(1152), 0);
}

TEST_F(QelWireMaskTest, AFlagThatMayBeUnsetIsSpecifiedByEveryRead) {
    Masks masks;
    EXPECT_EQ(read(masks), 0);
    EXPECT_TRUE(masks.given.isSpecified());
    EXPECT_FALSE(masks.given.get());
    message->putChild(1152);
    EXPECT_EQ(read(masks), 0);
    EXPECT_TRUE(masks.given.get());
}

TEST_F(QelWireMaskTest, AKeptMaskOrFlagIsOnlyAddedTo) {
    Masks masks{0, 0, 4, true, {}};
    EXPECT_EQ(read(masks), 0);
    EXPECT_EQ(masks.added, 4);
    EXPECT_TRUE(masks.flag);

    message->newChild(1786);
    message->putChild(2131);
    message->seekUp();
    EXPECT_EQ(read(masks), 0);
    EXPECT_EQ(masks.added, 5);
}

TEST(QelWireCheckedTest, AValueThatIsNotTakenIsMalformedAndLeavesTheField) {
    const TestMessage tree;
    QelMessageIterator& cursor = tree.cursor();
    cursor.putValue(5, 1007);
    Choosy record;
    EXPECT_EQ(cursor.getObj(record, 0), -1);
    EXPECT_EQ(record.even, 4);
    EXPECT_THAT(getErrorMessage(), HasSubstr("(even) is malformed"));
    cursor.deleteChild(1007);
    EXPECT_EQ(cursor.getObj(record, 0), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("(even) is missing"));
}

TEST(QelWireCheckedTest, AValueThatIsTakenIsReadInItsForm) {
    const TestMessage tree;
    QelMessageIterator& cursor = tree.cursor();
    cursor.putValue(6, 1007);
    cursor.putValueBase64(std::string("new"), 1026);
    Choosy record;
    EXPECT_EQ(cursor.getObj(record, 0), 0);
    EXPECT_EQ(record.even, 6);
    EXPECT_EQ(record.text, "new");
}

TEST(QelWireCheckedTest, AnIgnoredFieldDropsWhatIsNotTakenAndWritingTakesAnything) {
    const TestMessage tree;
    QelMessageIterator& cursor = tree.cursor();
    cursor.putValue(6, 1007);
    cursor.putChild(1026);
    Choosy record;
    EXPECT_EQ(cursor.getObj(record, 0), 0);
    EXPECT_EQ(record.text, "old");
    record.even = 7;
    EXPECT_EQ(cursor.putObj(record, 1115), 0);
    ASSERT_EQ(cursor.seek(1115), 0);
    EXPECT_EQ(childValue(cursor, 1007), "7");
}

TEST(QelWireLayoutTest, TellsNamesKindsAndElements) {
    const QelWireLayout& layout = qelWireLayout<Whole>();
    const auto& fields = layout.fields;
    EXPECT_EQ(layout.nsId, 0);
    EXPECT_EQ(layout.typeId, 50);
    EXPECT_EQ(fields[0].codec->kind, QelWireKind::base);
    EXPECT_EQ(fields[0].codec->layout(), &qelWireLayout<Part>());
    EXPECT_EQ(fields[1].name, "required");
    EXPECT_EQ(fields[1].codec->kind, QelWireKind::text);
    EXPECT_EQ(fields[5].form, QelWireForm::time);
    EXPECT_EQ(fields[6].codec->kind, QelWireKind::longInteger);
    EXPECT_EQ(fields[10].codec->kind, QelWireKind::presence);
    EXPECT_EQ(fields[14].codec->kind, QelWireKind::sequence);
    EXPECT_EQ(fields[14].codec->item->kind, QelWireKind::integer);
    EXPECT_EQ(fields[15].codec->kind, QelWireKind::set);
    EXPECT_EQ(fields[16].codec->item->layout(), &qelWireLayout<Part>());
    EXPECT_EQ(fields[18].codec->kind, QelWireKind::step);
    EXPECT_EQ(fields[18].name, "byHand");
}

TEST_F(QelWireTableTest, ARecordTypeRewritesWithoutKnowingTheClass) {
    const QelRecordType type = makeRecordType<Part>("Part", &qelWireLayout<Part>());
    EXPECT_EQ(type.nsId, 292);
    EXPECT_EQ(type.typeId, 117);
    message->putValue(5, 1010);
    const TestMessage otherTree;
    QelMessageIterator* const other = &otherTree.cursor();
    other->newChild(1007);
    const QelRecordType::Results results = type.rewrite(*message, *other);
    EXPECT_EQ(results.read, 0);
    EXPECT_EQ(results.write, 0);
    EXPECT_EQ(other->curType(), "env:os");
    EXPECT_EQ(childValue(*other, 1010), "5");

    message->deleteChild(1010);
    EXPECT_EQ(type.rewrite(*message, *other).read, -1);
}

} // namespace
} // namespace Qel
