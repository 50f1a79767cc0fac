// Groups, which are fields nested in an element of their own, and the description of steps.

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelWireTable.h"
#include "support/TestMessage.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::HasSubstr;

struct House : QelRecord<House> {
    std::string street;
    int floors = 0;
    std::string colour;
    std::string owner;

    static const QelWireLayout& wire;
};

int readOwner(const QelMessageIterator& cursor, House& house) {
    return cursor.getValue(house.owner, 1031);
}
int writeOwner(QelMessageIterator& cursor, const House& house) {
    return cursor.putValue(house.owner, 1031);
}

constexpr int outside = 1300;
constexpr int floors = 1010;
constexpr int colour = 1011;
constexpr int nameOf = 1026;

} // namespace

template <> struct Wire<House> : WireWords<House> {
    static constexpr QelWireField walls[] = {
        field<&R::floors>(::Qel::floors, required, always),
        field<&R::colour>(::Qel::colour, optional, ifSet),
    };
    static constexpr QelWireField fields[] = {
        field<&R::street>(nameOf, required, always),
        grouped<walls, 292>("outside", outside, required),
        step<&readOwner, &writeOwner, std::string>("owner", 1031, ignored),
    };
};
const QelWireLayout& House::wire = wireLayoutOf<House>;

namespace {

class QelWireGroupTest : public testing::Test {
protected:
    void write(const House& record) { ASSERT_EQ(message->putObj(record, 0), 0); }

    const TestMessage tree;
    QelMessageIterator* const message = &tree.cursor();
    House house;
};

TEST_F(QelWireGroupTest, FieldsOfAGroupAreNestedInItsElement) {
    house.floors = 3;
    house.colour = "red";
    write(house);
    EXPECT_EQ(countChildren(*message, floors), 0);
    ASSERT_EQ(message->seek(outside), 0);
    EXPECT_EQ(message->curNamespaceID(), 292);
    EXPECT_EQ(childValue(*message, floors), "3");
    EXPECT_EQ(childValue(*message, colour), "red");
    message->seekUp();
    House read;
    EXPECT_EQ(message->getObj(read, 0), 0);
    EXPECT_EQ(read.floors, 3);
    EXPECT_EQ(read.colour, "red");
}

TEST_F(QelWireGroupTest, ReportsAMissingGroupAndAMissingFieldOfAGroup) {
    write(house);
    ASSERT_EQ(message->seek(outside), 0);
    message->deleteChild(floors);
    message->seekUp();
    House read;
    EXPECT_EQ(message->getObj(read, 0), -1);
    EXPECT_EQ(message->curName(), "/");
    EXPECT_THAT(getErrorMessage(), HasSubstr("cannot read House: element id (floors) is missing"));
    message->deleteChild(outside);
    EXPECT_EQ(message->getObj(read, 0), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("cannot read House: element"));
    EXPECT_THAT(getErrorMessage(), HasSubstr("(outside) is missing"));
}

TEST_F(QelWireGroupTest, LayoutDescribesFieldsOfAGroupAndContentOfAStep) {
    const auto& fields = House::wire.fields;
    EXPECT_EQ(fields[1].codec->kind, QelWireKind::group);
    const QelWireLayout* const inner = fields[1].codec->layout();
    EXPECT_EQ(inner->typeName, "House");
    EXPECT_EQ(inner->nsId, 292);
    ASSERT_EQ(inner->fields.size(), 2U);
    EXPECT_EQ(inner->fields[1].name, "colour");
    EXPECT_EQ(fields[2].codec->kind, QelWireKind::step);
    ASSERT_NE(fields[2].codec->item, nullptr);
    EXPECT_EQ(fields[2].codec->item->kind, QelWireKind::text);
}

} // namespace
} // namespace Qel
