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

TEST(QelNameIDTest, IsEmptyWithoutNameAndNumber) {
    QelGroupNameID unset;
    EXPECT_TRUE(unset.isEmpty());
    EXPECT_FALSE(unset.isID());
    EXPECT_FALSE(unset.isName());
    unset.id = 0;
    EXPECT_TRUE(unset.isID());
    EXPECT_FALSE(unset.isEmpty());
    EXPECT_FALSE(group("wheel", 4294967295U).isID());
    EXPECT_FALSE(group("wheel", 4294967295U).isEmpty());
}

TEST(QelNameIDTest, WritesNumberZeroWithoutName) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(group("", 0), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(groupNumber));
    EXPECT_EQ(childValue(message.cursor(), groupNumber), "0");
}

TEST(QelNameIDTest, WritesNumberBeforeNameInElementOfItsKind) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(group("wheel", 10), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(groupNumber, name));
    const TestMessage ofUser;
    QelUserNameID user;
    user.id = 7;
    EXPECT_EQ(ofUser.cursor().putObj(user, 0), 0);
    EXPECT_THAT(childIDs(ofUser.cursor()), ElementsAre(userNumber));
}

TEST(QelNameIDTest, EmptyRecordIsWrittenButRejectedByReader) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelGroupNameID(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), IsEmpty());
    QelGroupNameID read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelNameIDTest, MissingNumberClearsPreviousOne) {
    const TestMessage message;
    message.cursor().putValue("wheel", name);
    QelGroupNameID read = group("old", 5);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.name, "wheel");
    EXPECT_FALSE(read.isID());
}

TEST(QelNameIDTest, UnreadableNumberCountsAsUnset) {
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

TEST(QelNameIDTest, LargeNumbersAreWrittenNegativeAndReadInBothForms) {
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
