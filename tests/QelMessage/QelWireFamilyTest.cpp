// Fields with objects of several classes of a family.

#include <gmock/gmock.h>

#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;

/// A family with two classes, and a record with objects of the family in fields of every kind.
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
    using reader_type = QelRecordReader<Zoo>;
    using writer_type = QelRecordWriter<Zoo>;
};

} // namespace

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
    };
};
template <> const QelWireLayout& qelWireLayout<Zoo>() {
    return wireLayoutOf<Zoo>;
}

namespace {

class QelWireFamilyTest : public RecordTest {
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

TEST_F(QelWireFamilyTest, ObjectsRoundTripAsTheirClass) {
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

TEST_F(QelWireFamilyTest, FailedUncheckedFieldDoesNotStopTheRecord) {
    Zoo zoo;
    zoo.animals = {animal("cat")};
    const Zoo back = roundTrip(zoo);
    EXPECT_EQ(back.star, nullptr);
    ASSERT_EQ(back.animals.size(), 1U);
    EXPECT_EQ(back.animals[0]->name, "cat");
}

TEST_F(QelWireFamilyTest, UntypedItemHasTheDefaultClassOnlyIfTheFieldAllowsIt) {
    message.newChild(1115);
    message.putValue("cat", 1026);
    message.seekUp();
    Zoo zoo;
    EXPECT_EQ(read(zoo), 0);
    EXPECT_EQ(zoo.animals.size(), 1U);
    message.newChild(1915);
    message.newChild(1295);
    message.putValue("cat", 1026);
    message.seekUp();
    message.seekUp();
    EXPECT_EQ(read(zoo), -1);
}

} // namespace
} // namespace Qel
