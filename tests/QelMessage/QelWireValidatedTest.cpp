// Fields with restricted values.

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelWireTable.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::HasSubstr;

struct Choosy : QelRecord<Choosy> {
    int even = 4;
    std::string text = "old";

    static const QelWireLayout& wire;
};
constexpr bool isEven(int number) {
    return number % 2 == 0;
}
bool isNotEmpty(const std::string& text) {
    return !text.empty();
}

} // namespace

template <> struct Wire<Choosy> : WireWords<Choosy> {
    static constexpr QelWireField fields[] = {
        validated<&R::even, isEven>(1007, required, always),
        validated<&R::text, isNotEmpty>(1026, ignored, always, base64),
    };
};
const QelWireLayout& Choosy::wire = wireLayoutOf<Choosy>;

namespace {

class QelWireValidatedTest : public RecordTest {};

TEST_F(QelWireValidatedTest, RejectedValueIsMalformedAndLeavesTheFieldUnchanged) {
    message.putValue(5, 1007);
    Choosy record;
    EXPECT_EQ(read(record), -1);
    EXPECT_EQ(record.even, 4);
    EXPECT_THAT(getErrorMessage(), HasSubstr("(even) is malformed"));
    message.deleteChild(1007);
    EXPECT_EQ(read(record), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("(even) is missing"));
}

TEST_F(QelWireValidatedTest, AcceptedValueIsRead) {
    message.putValue(6, 1007);
    message.putValueBase64(std::string("new"), 1026);
    Choosy record;
    EXPECT_EQ(read(record), 0);
    EXPECT_EQ(record.even, 6);
    EXPECT_EQ(record.text, "new");
}

TEST_F(QelWireValidatedTest, IgnoredFieldDropsRejectedValuesAndWritingAcceptsAll) {
    message.putValue(6, 1007);
    message.putChild(1026);
    Choosy record;
    EXPECT_EQ(read(record), 0);
    EXPECT_EQ(record.text, "old");
    record.even = 7;
    EXPECT_EQ(message.putObj(record, 1115), 0);
    ASSERT_EQ(message.seek(1115), 0);
    EXPECT_EQ(childValue(message, 1007), "7");
}

} // namespace
} // namespace Qel
