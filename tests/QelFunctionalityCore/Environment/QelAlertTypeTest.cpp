#include "QelFunctionalityCore/Environment/QelAlertType.h"

#include <gtest/gtest.h>

#include "support/TestMessage.h"

namespace Qel {
namespace {

using TestSupport::TestMessage;

constexpr int element = 1003;

QelAlertType readFrom(const std::string& text, int expectedResult) {
    const TestMessage message;
    message.cursor().putValue(text, element);
    message.cursor().firstChild();
    auto type = QelAlertType::red;
    EXPECT_EQ(QelAlertTypeReader()(message.cursor(), type), expectedResult) << text;
    return type;
}

TEST(QelAlertTypeTest, ReadsFourLevels) {
    EXPECT_EQ(readFrom("0", 0), QelAlertType::green);
    EXPECT_EQ(readFrom("1", 0), QelAlertType::yellow);
    EXPECT_EQ(readFrom("2", 0), QelAlertType::red);
    EXPECT_EQ(readFrom("3", 0), QelAlertType::black);
}

TEST(QelAlertTypeTest, OtherValuesFailAndLeaveLevelUnchanged) {
    for (const char* const text : {"4", "-1", "", "red", "2147483648"})
        EXPECT_EQ(readFrom(text, -1), QelAlertType::red) << text;
}

TEST(QelAlertTypeTest, WritesUntypedNumber) {
    const TestMessage message;
    ASSERT_EQ(message.cursor().putObject(QelAlertType::black, QelAlertTypeWriter(), element), 0);
    EXPECT_EQ(TestSupport::childValue(message.cursor(), element), "3");
    message.cursor().firstChild();
    EXPECT_EQ(message.cursor().curType(), "");
    EXPECT_EQ(message.cursor().curNamespaceID(), 0);
}

} // namespace
} // namespace Qel
