// Fields with objects of several classes of a family.

#include <gmock/gmock.h>

#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;

/// A family with two classes, and a record with objects of the family in fields of every kind.
struct Animal : QelRecord<Animal> {
    virtual ~Animal() = default;
    std::string name;

    static const QelWireLayout& wire;
};
struct Bird : QelRecord<Bird, Animal> {
    int wings = 2;

    static const QelWireLayout& wire;
};
struct Zoo : QelRecord<Zoo> {
    boost::shared_ptr<Animal> star;
    std::vector<boost::shared_ptr<Animal>> animals;
    std::vector<boost::shared_ptr<Animal>> guests;

    static const QelWireLayout& wire;
};

} // namespace

template <> struct Wire<Animal> : WireWords<Animal> {
    static constexpr int nsId = 292, typeId = 166;
    static constexpr QelWireField fields[] = {field<&R::name>(1026, required, always)};
};
const QelWireLayout& Animal::wire = wireLayoutOf<Animal>;
template <> struct Wire<Bird> : WireWords<Bird> {
    static constexpr int nsId = 292, typeId = 167;
    static constexpr QelWireField fields[] = {base<Animal>(), field<&R::wings>(1259, required, always)};
};
const QelWireLayout& Bird::wire = wireLayoutOf<Bird>;
template <> struct Wire<Zoo> : WireWords<Zoo> {
    static constexpr QelWireField fields[] = {
        derived<&R::star, false>(1114, ignored, always).bestEffort(),
        derivedList<&R::animals, true>(1115, optional),
        wrappedDerivedList<&R::guests, false>(1915, 1295, optional, ifSet),
    };
};
const QelWireLayout& Zoo::wire = wireLayoutOf<Zoo>;

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
