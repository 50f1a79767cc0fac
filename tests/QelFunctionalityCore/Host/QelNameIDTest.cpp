#include "QelFunctionalityCore/Host/QelNameID.h"

#include <gmock/gmock.h>

#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int name = 1026;
constexpr int groupNumber = 1027;
constexpr int userNumber = 1030;

QelGroupNameID group(const std::string& called, unsigned id) {
    QelGroupNameID made;
    made.name = called;
    made.id = id;
    return made;
}

TEST(QelNameIDTest, IsEmptyWithNeitherANameNorANumber) {
    QelGroupNameID nobody;
    EXPECT_TRUE(nobody.isEmpty());
    EXPECT_FALSE(nobody.isID());
    EXPECT_FALSE(nobody.isName());
    nobody.id = 0;
    EXPECT_TRUE(nobody.isID());
    EXPECT_FALSE(nobody.isEmpty());
    EXPECT_FALSE(group("wheel", 4294967295U).isID());
    EXPECT_FALSE(group("wheel", 4294967295U).isEmpty());
}

TEST(QelNameIDTest, NumberZeroWithoutANameIsWritten) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(group("", 0), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(groupNumber));
    EXPECT_EQ(childValue(message.cursor(), groupNumber), "0");
}

TEST(QelNameIDTest, TheNumberStandsBeforeTheNameInTheElementOfItsKind) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(group("wheel", 10), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(groupNumber, name));
    const TestMessage ofUser;
    QelUserNameID user;
    user.id = 7;
    EXPECT_EQ(ofUser.cursor().putObj(user, 0), 0);
    EXPECT_THAT(childIDs(ofUser.cursor()), ElementsAre(userNumber));
}

TEST(QelNameIDTest, OneWithNeitherIsWrittenEmptyAndRefusedByTheReader) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelGroupNameID(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), IsEmpty());
    QelGroupNameID read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelNameIDTest, ANameAloneClearsTheNumber) {
    const TestMessage message;
    message.cursor().putValue("wheel", name);
    QelGroupNameID read = group("old", 5);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.name, "wheel");
    EXPECT_FALSE(read.isID());
}

TEST(QelNameIDTest, AnUnreadableNumberCountsAsNone) {
    for (const char* const number : {"many", "", "4294967296", "-2147483649"}) {
        const TestMessage message;
        message.cursor().putValue(std::string(number), groupNumber);
        QelGroupNameID read;
        EXPECT_EQ(message.cursor().getObj(read, 0), -1) << number;
        message.cursor().putValue("wheel", name);
        EXPECT_EQ(message.cursor().getObj(read, 0), 0) << number;
        EXPECT_FALSE(read.isID()) << number;
    }
}

TEST(QelNameIDTest, HighNumbersCrossAsNegativeOnesAndAreReadEitherWay) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(group("", 4294967294U), 0), 0);
    EXPECT_EQ(childValue(message.cursor(), groupNumber), "-2");
    QelGroupNameID read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.id, 4294967294U);
    message.cursor().deleteChild(groupNumber);
    message.cursor().putValue("4294967293", groupNumber);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.id, 4294967293U);
}

} // namespace
} // namespace Qel
