#include "QelFunctionalityCore/Host/QelStatistics.h"

#include <gmock/gmock.h>

#include "support/RequiredChildren.h"
#include "support/ScriptedCursor.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

TEST(QelStatisticsTest, AllUseNamespace292AndOnlyUsageHasType) {
    EXPECT_EQ(QelUsageStats::Writer::getTypeID(), 144);
    for (const int nsID :
         {QelUsageStats::Writer::getNSID(), QelStats::Writer::getNSID(), QelNetTransferStat::Writer::getNSID(),
          QelNetTransfer::Writer::getNSID(), QelCPULoad::Writer::getNSID(), QelLoadAvg1::Writer::getNSID(),
          QelLoadAvg::Writer::getNSID()})
        EXPECT_EQ(nsID, 292);
    for (const int typeID :
         {QelStats::Writer::getTypeID(), QelNetTransferStat::Writer::getTypeID(), QelNetTransfer::Writer::getTypeID(),
          QelCPULoad::Writer::getTypeID(), QelLoadAvg1::Writer::getTypeID(), QelLoadAvg::Writer::getTypeID()})
        EXPECT_EQ(typeID, 50);
}

TEST(QelStatisticsTest, UsageRequiresAllNumbers) {
    for (const int element : {1040, 1058, 1059}) {
        const TestMessage message;
        EXPECT_EQ(message.cursor().putObj(QelUsageStats{.total = 1LL << 40, .used = 2, .free = 3}, 0), 0);
        EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1040, 1058, 1059));
        QelUsageStats read;
        EXPECT_EQ(message.cursor().getObj(read, 0), 0);
        EXPECT_EQ(read.total, 1LL << 40);
        EXPECT_EQ(read.free, 3);
        message.cursor().deleteChild(element);
        EXPECT_EQ(message.cursor().getObj(read, 0), -1) << element;
    }
}

TEST(QelStatisticsTest, CounterIsWrittenStartingWithTotal) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelStats(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1040, 1065, 1060, 1061, 1062));
}

TEST(QelStatisticsTest, TrafficRequiresSecondNumberOnly) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelNetTransferStat(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1056, 1055));
    message.cursor().deleteChild(1056);
    QelNetTransferStat read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    message.cursor().deleteChild(1055);
    message.cursor().putValue(4, 1056);
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    EXPECT_EQ(read.f1056, 4);
}

TEST(QelStatisticsTest, LoadAverageRequiresLastNumberOnly) {
    const TestMessage message;
    QelLoadAvg1 average;
    average.f1065 = 0.25;
    EXPECT_EQ(message.cursor().putObj(average, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1065, 1060, 1061, 1062));
    for (const int element : {1060, 1061, 1062})
        message.cursor().deleteChild(element);
    QelLoadAvg1 read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.f1065, 0.25);
    message.cursor().deleteChild(1065);
    message.cursor().putValueDouble(0.5, 1062);
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    EXPECT_EQ(read.f1062, 0.5) << "the others are read first";
}

TEST(QelStatisticsTest, LoadAveragesRequireAllThreePeriods) {
    expectRequired(QelLoadAvg(), {1041, 1042, 1043});
}

TEST(QelStatisticsTest, CpuLoadRequiresAllNumbers) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelCPULoad(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1044, 1025, 1045, 1046));
    expectRequired(QelCPULoad(), {1044, 1025, 1045, 1046});
}

TEST(QelStatisticsTest, CpuLoadReaderFailsOnlyIfFieldReturnsMinusOne) {
    const TestMessage message;
    const ScriptedCursor otherFailure(message.cursor(), fails(ScriptedCursor::Operation::get, {}, -2));
    QelCPULoad read;
    EXPECT_EQ(QelCPULoad::Reader()(otherFailure, read), 0);
    const ScriptedCursor failure(message.cursor(), fails(ScriptedCursor::Operation::get, {}, -1));
    EXPECT_EQ(QelCPULoad::Reader()(failure, read), -1);
}

} // namespace
} // namespace Qel
