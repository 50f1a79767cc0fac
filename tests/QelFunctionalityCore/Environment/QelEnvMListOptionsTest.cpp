#include "QelFunctionalityCore/Environment/QelEnvMListOptions.h"

#include <gmock/gmock.h>

#include "EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int count = 1259;
constexpr int type = 1007;
constexpr int states = 1192;
constexpr int state = 1421;

std::vector<int> written(const QelEnvMListOptions& options) {
    const TestMessage message;
    EXPECT_EQ(QelEnvMListOptions::Writer()(message.cursor(), options), 0);
    return childIDs(message.cursor());
}

TEST(QelEnvMListOptionsTest, WritesNothingIfUnrestricted) {
    EXPECT_THAT(written(QelEnvMListOptions()), IsEmpty());
}

TEST(QelEnvMListOptionsTest, WritesOnlyStatesWithoutCountAndType) {
    QelEnvMListOptions options;
    options.states = {QelEnvStatus(3, 0), QelEnvStatus(1, 2)};
    EXPECT_THAT(written(options), ElementsAre(states, states));
}

TEST(QelEnvMListOptionsTest, WritesEveryCountExceptMinusOne) {
    QelEnvMListOptions options;
    for (const int number : {0, 1, -2}) {
        options.count = number;
        EXPECT_THAT(written(options), ElementsAre(count)) << number;
    }
}

TEST(QelEnvMListOptionsTest, WritesStampedStatesInOrder) {
    const TestMessage message;
    QelEnvMListOptions options;
    options.count = 5;
    options.type = "vm";
    options.states = {QelEnvStatus(3, 0), QelEnvStatus(1, 2)};
    ASSERT_EQ(QelEnvMListOptions::Writer()(message.cursor(), options), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(count, type, states, states));

    QelEnvMListOptions read;
    ASSERT_EQ(QelEnvMListOptions::Reader()(message.cursor(), read), 0);
    EXPECT_EQ(read.count, 5);
    EXPECT_EQ(read.type, "vm");
    EXPECT_EQ(read.states, options.states);

    message.cursor().firstChild(states);
    expectStampOf<QelEnvStatus::Writer>(message.cursor());
    EXPECT_EQ(childValue(message.cursor(), state), "1");
}

TEST(QelEnvMListOptionsTest, MissingOrInvalidCountIsUnchanged) {
    const TestMessage message;
    QelEnvMListOptions read;
    read.count = 3;
    read.type = "ct";
    EXPECT_EQ(QelEnvMListOptions::Reader()(message.cursor(), read), 0);
    EXPECT_EQ(read.type, "ct");
    message.cursor().putValue(std::string("many"), count);
    EXPECT_EQ(QelEnvMListOptions::Reader()(message.cursor(), read), 0);
    EXPECT_EQ(read.count, 3);
    EXPECT_THAT(read.states, IsEmpty());
}

} // namespace
} // namespace Qel
