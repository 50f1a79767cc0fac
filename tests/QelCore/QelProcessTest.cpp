#include "QelCore/QelProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Qel {
namespace {

TEST(QelProcessTest, TitleIsTheCommandLine) {
    EXPECT_THAT(getproctitle(), testing::HasSubstr("QelCoreTest"));
    EXPECT_THAT(getproctitle(), testing::Not(testing::Contains('\0')));
}

TEST(QelProcessTest, YieldReturns) {
    schedYield();
}

} // namespace
} // namespace Qel
