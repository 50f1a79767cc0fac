#include "QelFunctionalityCore/Host/QelDate.h"

#include <gmock/gmock.h>

#include "support/ScriptedCursor.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(QelDateTest, ReaderAndWriterRejectEmptyDate) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelDate(), 0), -1);
    EXPECT_THAT(childIDs(message.cursor()), IsEmpty());
    QelDate read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    message.cursor().putValueTime(0, 1004);
    message.cursor().putValue("", 2007);
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelDateTest, AlwaysWritesTimeAndOmitsEmptyString) {
    const TestMessage message;
    QelDate date;
    date.time = 1'800'000'000;
    EXPECT_EQ(message.cursor().putObj(date, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1004));
    EXPECT_EQ(childValue(message.cursor(), 1004), "2027-01-15T08:00:00Z");
    EXPECT_EQ(message.cursor().curNamespaceID(), 292);
    const TestMessage other;
    date.time = 0;
    date.f2007 = "some day";
    EXPECT_EQ(other.cursor().putObj(date, 0), 0);
    EXPECT_THAT(childIDs(other.cursor()), ElementsAre(1004, 2007));
}

TEST(QelDateTest, UnreadableTimeIsIgnoredIfStringIsPresent) {
    const TestMessage message;
    message.cursor().putValue("never", 1004);
    message.cursor().putValue("some day", 2007);
    QelDate read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.time, 0);
    EXPECT_EQ(read.f2007, "some day");
}

TEST(QelTimeZoneTest, RequiresBothStrings) {
    const TestMessage message;
    QelTimeZone zone;
    zone.name = "CET";
    EXPECT_EQ(message.cursor().putObj(zone, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1026, 1788));
    QelTimeZone read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.name, "CET");
    message.cursor().deleteChild(1788);
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

TEST(QelTimeZoneTest, ReaderFailsOnlyIfFieldReturnsMinusOne) {
    const TestMessage message;
    const ScriptedCursor otherFailure(message.cursor(), fails(ScriptedCursor::Operation::get, {}, -2));
    QelTimeZone read;
    EXPECT_EQ(QelTimeZone::Reader()(otherFailure, read), 0);
    const ScriptedCursor failure(message.cursor(), fails(ScriptedCursor::Operation::get, {}, -1));
    EXPECT_EQ(QelTimeZone::Reader()(failure, read), -1);
}

} // namespace
} // namespace Qel
