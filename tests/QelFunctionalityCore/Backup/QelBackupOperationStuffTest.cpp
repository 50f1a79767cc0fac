#include "QelFunctionalityCore/Backup/QelBackupOperationStuff.h"

#include <ctime>
#include <limits>

#include <gmock/gmock.h>

#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class QelBackupOperationStuffTest : public RecordTest {
protected:
    static QelBackupOperationStuff sample() {
        QelBackupOperationStuff stuff;
        QelConnectionInfo connection;
        connection.address = "keeper.example.org";
        stuff.connection = connection;
        stuff.maxChainLength = 5;
        stuff.maxChainAge = 6;
        stuff.option2089 = 7;
        stuff.option1983 = 8;
        stuff.option1007 = 9;
        return stuff;
    }
    static QelBackupOperationStuff withLength(int length) {
        QelBackupOperationStuff stuff;
        stuff.maxChainLength = length;
        return stuff;
    }
    /// Whether a chain with an age of `age` seconds exceeds a limit of `days`.
    static bool isOld(int days, long age) {
        QelBackupOperationStuff stuff;
        stuff.maxChainAge = days;
        for (;;) {
            const std::time_t now = std::time(nullptr);
            const bool isOld = stuff.oldChain(now - age);
            if (std::time(nullptr) == now) // otherwise the age was different
                return isOld;
        }
    }
};

TEST_F(QelBackupOperationStuffTest, AllFieldsSurviveRoundTrip) {
    const QelBackupOperationStuff back = roundTrip(sample());
    EXPECT_THAT(childIDs(message), ElementsAre(1986, 2087, 2088, 2089, 1983, 1007));
    ASSERT_TRUE(back.connection.isSpecified());
    EXPECT_EQ(back.connection.get().address, "keeper.example.org");
    EXPECT_EQ(back.maxChainLength, sample().maxChainLength);
    EXPECT_EQ(back.maxChainAge, sample().maxChainAge);
    EXPECT_EQ(back.option2089, sample().option2089);
    EXPECT_EQ(back.option1983, sample().option1983);
    EXPECT_EQ(back.option1007, sample().option1007);
}

TEST_F(QelBackupOperationStuffTest, UnspecifiedSettingsAreNotWritten) {
    EXPECT_EQ(write(QelBackupOperationStuff()), 0);
    EXPECT_THAT(childIDs(message), IsEmpty());
}

TEST_F(QelBackupOperationStuffTest, MissingOrUnreadableSettingsAreUnspecified) {
    EXPECT_EQ(write(sample()), 0);
    replace(2087, "many");
    replace(1986, "a connection without an address");
    remove(2089);
    QelBackupOperationStuff back = sample();
    EXPECT_EQ(read(back), 0);
    EXPECT_FALSE(back.connection.isSpecified());
    EXPECT_FALSE(back.maxChainLength.isSpecified());
    EXPECT_TRUE(back.maxChainAge.isSpecified());
    EXPECT_FALSE(back.option2089.isSpecified());
}

TEST_F(QelBackupOperationStuffTest, UnwritableConnectionFails) {
    QelBackupOperationStuff stuff;
    stuff.connection = QelConnectionInfo(); // no address
    EXPECT_EQ(write(stuff), -1);
}

TEST_F(QelBackupOperationStuffTest, ChainOfMaximumLengthIsLong) {
    EXPECT_TRUE(withLength(4).longChain(5));
    EXPECT_TRUE(withLength(5).longChain(5));
    EXPECT_FALSE(withLength(6).longChain(5));
    EXPECT_TRUE(withLength(1).longChain(1));
}

TEST_F(QelBackupOperationStuffTest, NoChainIsLongWithoutMaximumLength) {
    EXPECT_FALSE(withLength(0).longChain(5));
    EXPECT_FALSE(withLength(-1).longChain(5));
    QelBackupOperationStuff stuff = withLength(5);
    stuff.maxChainLength.specify(false);
    EXPECT_FALSE(stuff.longChain(5));
}

TEST_F(QelBackupOperationStuffTest, ChainIsOldOneSecondAfterMaximumAge) {
    EXPECT_FALSE(isOld(1, 86400));
    EXPECT_TRUE(isOld(1, 86401));
    EXPECT_FALSE(isOld(2, 86401));
    EXPECT_TRUE(isOld(-1, 0)) << "every chain is old if the limit is negative";
}

TEST_F(QelBackupOperationStuffTest, NoChainIsOldWithoutMaximumAge) {
    EXPECT_FALSE(isOld(0, 1'000'000'000));
    QelBackupOperationStuff stuff;
    EXPECT_FALSE(stuff.oldChain(0));
    stuff.maxChainAge = 1;
    stuff.maxChainAge.specify(false);
    EXPECT_FALSE(stuff.oldChain(0));
}

TEST_F(QelBackupOperationStuffTest, ExtremeAgesAndTimesDoNotOverflow) {
    QelBackupOperationStuff stuff;
    stuff.maxChainAge = std::numeric_limits<int>::max();
    EXPECT_FALSE(stuff.oldChain(0));
    stuff.maxChainAge = 1;
    EXPECT_TRUE(stuff.oldChain(std::numeric_limits<long>::min()));
    EXPECT_FALSE(stuff.oldChain(std::numeric_limits<long>::max()));
}

TEST_F(QelBackupOperationStuffTest, ComplementSetsOnlyUnspecifiedSettings) {
    QelBackupOperationStuff stuff;
    stuff.maxChainAge = 60;
    stuff.option1007 = 90;
    stuff.complement(sample());
    EXPECT_EQ(stuff.connection.get().address, "keeper.example.org");
    EXPECT_EQ(stuff.maxChainLength, sample().maxChainLength);
    EXPECT_EQ(stuff.maxChainAge.get(), 60);
    EXPECT_EQ(stuff.option2089, sample().option2089);
    EXPECT_EQ(stuff.option1983, sample().option1983);
    EXPECT_EQ(stuff.option1007.get(), 90);
}

TEST_F(QelBackupOperationStuffTest, ComplementKeepsUnspecifiedValueUnspecified) {
    QelBackupOperationStuff stuff;
    QelBackupOperationStuff other;
    other.option2089.get() = 5;
    stuff.complement(other);
    EXPECT_FALSE(stuff.option2089.isSpecified());
    EXPECT_EQ(stuff.option2089.get(), 5);
}

class QelBackupMConfigTest : public QelBackupOperationStuffTest {};

TEST_F(QelBackupMConfigTest, AllDefaultsAreSpecified) {
    const QelBackupMConfig config;
    ASSERT_TRUE(config.connection.isSpecified());
    EXPECT_EQ(config.connection.get().address, QelAgentConnectionInfo::localConnectionInfo().address);
    QelOptionalProperty<int> zero;
    zero = 0;
    QelOptionalProperty<int> one;
    one = 1;
    EXPECT_EQ(config.maxChainLength, zero);
    EXPECT_EQ(config.maxChainAge, zero);
    EXPECT_EQ(config.option2089, zero);
    EXPECT_EQ(config.option1983, one);
    EXPECT_EQ(config.option1007, zero);
}

TEST_F(QelBackupMConfigTest, KeepsSettingsAndUsesDefaultsForOthers) {
    QelBackupOperationStuff stuff;
    stuff.maxChainAge = 6;
    const QelBackupMConfig config(stuff);
    EXPECT_EQ(config.maxChainAge.get(), 6);
    EXPECT_EQ(config.connection.get().address, "local");
    EXPECT_EQ(config.option1983.get(), 1);
    EXPECT_TRUE(config.maxChainLength.isSpecified());
    EXPECT_TRUE(config.option2089.isSpecified());
    EXPECT_TRUE(config.option1007.isSpecified());
}

TEST_F(QelBackupMConfigTest, IsWrittenLikeOperationSettings) {
    const QelBackupMConfig back = roundTrip(QelBackupMConfig(sample()));
    EXPECT_THAT(childIDs(message), ElementsAre(1986, 2087, 2088, 2089, 1983, 1007));
    EXPECT_EQ(back.option1983, sample().option1983);
    QelBackupMConfig config;
    config.option2089.specify(false);
    clear();
    EXPECT_EQ(write(config), 0);
    EXPECT_EQ(message.seekPresence(2089), -1);
}

TEST_F(QelBackupMConfigTest, MissingSettingFailsAfterOthersWereRead) {
    for (const int id : {1986, 2087, 2088, 2089, 1983, 1007}) {
        clear();
        EXPECT_EQ(write(sample()), 0);
        remove(id);
        QelBackupMConfig config;
        EXPECT_EQ(read(config), -1) << id;
        EXPECT_THAT(getErrorMessage(), HasSubstr("is missing"));
        if (id != 1007) {
            EXPECT_EQ(config.option1007, sample().option1007) << id;
        }
        QelBackupOperationStuff stuff;
        EXPECT_EQ(read(stuff), 0) << id;
    }
}

TEST_F(QelBackupMConfigTest, ConnectionWithoutProtocolKeepsThatOfLocalAgent) {
    const QelBackupMConfig back = roundTrip(QelBackupMConfig(sample()));
    EXPECT_EQ(back.connection.get().address, "keeper.example.org");
    EXPECT_THAT(sample().connection.get().protocol, IsEmpty());
    EXPECT_EQ(back.connection.get().protocol, QelAgentConnectionInfo::protocolAgent);
}

TEST_F(QelBackupMConfigTest, MissingSettingBecomesUnspecified) {
    EXPECT_EQ(write(sample()), 0);
    remove(2089);
    QelBackupMConfig config;
    EXPECT_EQ(read(config), -1);
    EXPECT_FALSE(config.option2089.isSpecified());
}

} // namespace

} // namespace Qel
