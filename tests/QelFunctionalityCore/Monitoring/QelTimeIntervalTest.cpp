#include "QelFunctionalityCore/Monitoring/QelTimeInterval.h"

#include <gmock/gmock.h>

#include "support/LogCapture.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int start = 1063;
constexpr int end = 1064;

QelTimeInterval interval(long from, long to, int zone = 0) {
    QelTimeInterval made;
    made.startTime = from;
    made.endTime = to;
    made.zone = zone;
    return made;
}

class QelTimeIntervalTest : public testing::Test {
protected:
    QelTimeIntervalTest() { at.newChild(1086); }

    TestMessage message;
    QelMessageIterator& at = message.cursor();
    QelTimeInterval read = interval(1, 2, 3);
};

TEST_F(QelTimeIntervalTest, RoundTripsBothEndsAndZone) {
    EXPECT_EQ(at.putObj(interval(1'795'167'000, 1'795'170'600, 60), 0), 0);
    EXPECT_EQ(childValue(at, start), "2026-11-20T10:30:00+01:00");
    EXPECT_EQ(childValue(at, end), "2026-11-20T11:30:00+01:00");
    EXPECT_EQ(at.curType(), "env:time_interval");
    EXPECT_EQ(at.getObj(read, 0), 0);
    EXPECT_EQ(read.startTime, 1'795'167'000);
    EXPECT_EQ(read.endTime, 1'795'170'600);
    EXPECT_EQ(read.zone, 60);
}

TEST_F(QelTimeIntervalTest, ZoneIsTakenFromEnd) {
    at.putValueTimeZone(100, 60, start);
    at.putValueTimeZone(200, -120, end);
    EXPECT_EQ(at.getObj(read, 0), 0);
    EXPECT_EQ(read.zone, -120);
}

TEST_F(QelTimeIntervalTest, RejectsMissingOrMalformedEnd) {
    EXPECT_EQ(at.getObj(read, 0), -1);
    at.putValueTimeZone(100, 60, start);
    EXPECT_EQ(at.getObj(read, 0), -1);
    at.putValue("never", end);
    EXPECT_EQ(at.getObj(read, 0), -1);
    EXPECT_EQ(read.endTime, 2);
    at.deleteChild(start);
    at.deleteChild(end);
    at.putValueTimeZone(200, 60, end);
    EXPECT_EQ(at.getObj(read, 0), -1) << "missing start";
}

TEST_F(QelTimeIntervalTest, LogsOnlySuccessfulReads) {
    const LogCapture log;
    EXPECT_EQ(at.getObj(read, 0), -1);
    EXPECT_THAT(log.messages(), IsEmpty());
    EXPECT_EQ(at.putObj(interval(100, 200, 60), 0), 0);
    EXPECT_EQ(at.getObj(read, 0), 0);
    EXPECT_THAT(log.messages(), ElementsAre("4 [operator()] data.startTime: 100, data.endTime: 200, data.zone: 60"));
    EXPECT_EQ(log.lines()[0].file, "core/src/QelFunctionalityCore/QelPerfData");
    EXPECT_EQ(log.lines()[0].line, 25);
}

TEST_F(QelTimeIntervalTest, MaskSelectsEndsToWrite) {
    const QelTimeInterval both = interval(100, 200);
    EXPECT_EQ(at.putObject(both, QelTimeInterval::Writer(1), 0), 0);
    EXPECT_EQ(childValue(at, start), "1970-01-01T00:01:40+00:00");
    EXPECT_EQ(at.seekPresence(end), -1);
    at.deleteChild(start);
    EXPECT_EQ(at.putObject(both, QelTimeInterval::Writer(2), 0), 0);
    EXPECT_EQ(at.seekPresence(start), -1);
    EXPECT_EQ(at.seekPresence(end), 0);
    at.deleteChild(end);
    EXPECT_EQ(at.putObject(both, QelTimeInterval::Writer(0), 0), 0);
    EXPECT_EQ(at.firstChild(), -1);
}

TEST_F(QelTimeIntervalTest, OmitsOpenEnds) {
    const auto written = [&](long from, long to) {
        while (at.firstChild() == 0)
            at.deleteFromChild();
        const QelTimeInterval open = interval(from, to);
        EXPECT_EQ(at.putObject(open, timeIntervalWriter(open), 0), 0);
        return std::pair(at.seekPresence(start) == 0, at.seekPresence(end) == 0);
    };
    EXPECT_EQ(written(0, 0x7fffffff), std::pair(false, false));
    EXPECT_EQ(at.firstChild(), -1);
    EXPECT_EQ(written(5, 0x7fffffff), std::pair(true, false));
    EXPECT_EQ(written(0, 5), std::pair(false, true));
    EXPECT_EQ(written(-1, 0), std::pair(true, true));
}

TEST_F(QelTimeIntervalTest, SetStartSetsBothEnds) {
    read.setStart(7);
    EXPECT_EQ(read.startTime, 7);
    EXPECT_EQ(read.endTime, 7);
    EXPECT_EQ(read.zone, 3);
}

} // namespace
} // namespace Qel
