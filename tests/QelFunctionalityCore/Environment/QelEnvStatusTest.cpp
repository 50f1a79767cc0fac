#include "QelFunctionalityCore/Environment/QelEnvStatus.h"

#include <gmock/gmock.h>

#include "EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int state = 1421;
constexpr int transition = 1588;

TEST(QelEnvStatusTest, StartsInStateOneWithoutTransition) {
    EXPECT_EQ(QelEnvStatus(), QelEnvStatus(1, 0));
}

TEST(QelEnvStatusTest, OrdersByStateThenTransitionAsSignedNumbers) {
    EXPECT_LT(QelEnvStatus(1, 9), QelEnvStatus(2, 0));
    EXPECT_LT(QelEnvStatus(1, 0), QelEnvStatus(1, 1));
    EXPECT_LT(QelEnvStatus(-1, 0), QelEnvStatus(0, 0));
    EXPECT_LT(QelEnvStatus(0, -1), QelEnvStatus(0, 0));
    EXPECT_FALSE(QelEnvStatus(3, 4) < QelEnvStatus(3, 4));
}

TEST(QelEnvStatusTest, AlwaysWritesStateAndNonZeroTransition) {
    const TestMessage message;
    message.cursor().putObj(QelEnvStatus(0, 0), 1192);
    message.cursor().firstChild();
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(state));
    EXPECT_EQ(childValue(message.cursor(), state), "0");

    message.cursor().seekRoot();
    message.cursor().putObj(QelEnvStatus(5, -3), 1192);
    message.cursor().firstChild();
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(state, transition));
    EXPECT_EQ(childValue(message.cursor(), transition), "-3");
    expectStampOf<QelEnvStatus::Writer>(message.cursor());
    EXPECT_EQ(QelEnvStatus::Writer::getNSID(), 292);
    EXPECT_EQ(QelEnvStatus::Writer::getTypeID(), 118);
}

TEST(QelEnvStatusTest, ReadsPresentFieldsAndLeavesOthersUnchanged) {
    const TestMessage message;
    QelEnvStatus status(7, 8);
    EXPECT_EQ(QelEnvStatus::Reader()(message.cursor(), status), 0);
    EXPECT_EQ(status, QelEnvStatus(7, 8));

    message.cursor().putValue(2, transition);
    EXPECT_EQ(QelEnvStatus::Reader()(message.cursor(), status), 0);
    EXPECT_EQ(status, QelEnvStatus(7, 2));
}

TEST(QelEnvStatusTest, ReadingNeverFails) {
    const TestMessage message;
    message.cursor().putValue(std::string("up"), state);
    message.cursor().putValue(4, transition);
    QelEnvStatus status(7, 8);
    EXPECT_EQ(QelEnvStatus::Reader()(message.cursor(), status), 0);
    EXPECT_EQ(status, QelEnvStatus(7, 4));
}

} // namespace
} // namespace Qel
