#include "QelFunctionalityCore/Monitoring/QelPerfMonValue.h"

#include <cstring>

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::Each;

constexpr int block = 1010;

template <class Value> class QelPerfMonValueTest : public testing::Test {
protected:
    QelPerfMonValueTest() { at.newChild(1115); }

    TestMessage message;
    QelMessageIterator& at = message.cursor();
    Value value;
};

using Values = testing::Types<QelPerfMonActualValue, QelPerfMonHistoricalValue>;
TYPED_TEST_SUITE(QelPerfMonValueTest, Values);

TYPED_TEST(QelPerfMonValueTest, DefaultIsZero) {
    EXPECT_THAT(this->value.values, Each(0.0));
}

TYPED_TEST(QelPerfMonValueTest, RoundTripsVerbatim) {
    std::memcpy(this->value.header, "the producer's..", 16);
    this->value.set(0, 1.5);
    this->value.set(13, -2.0);
    EXPECT_EQ(this->at.putObj(this->value, 0), 0);
    std::string bytes;
    ASSERT_EQ(this->at.getValueBase64(bytes, block), 0);
    ASSERT_EQ(bytes.size(), 128U);
    EXPECT_EQ(bytes.substr(0, 16), "the producer's..");
    double numbers[14];
    std::memcpy(numbers, bytes.data() + 16, sizeof numbers);
    EXPECT_EQ(numbers[0], 1.5);
    EXPECT_EQ(numbers[1], 0.0);
    EXPECT_EQ(numbers[13], -2.0);

    TypeParam read;
    EXPECT_EQ(this->at.getObj(read, 0), 0);
    EXPECT_EQ(std::memcmp(&read, &this->value, sizeof read), 0);
}

TYPED_TEST(QelPerfMonValueTest, WrongLengthLeavesRecordUnchanged) {
    this->value.set(3, 7);
    EXPECT_EQ(this->at.getObj(this->value, 0), -1) << "missing value";
    for (const std::size_t length : {0U, 127U, 129U, 256U}) {
        this->at.deleteChild(block);
        this->at.putValueBase64(std::string(length, 'x'), block);
        EXPECT_EQ(this->at.getObj(this->value, 0), -1) << length;
        EXPECT_EQ(getErrorMessage(), "a value block has 128 bytes, not " + std::to_string(length));
    }
    this->at.deleteChild(block);
    this->at.putValue("no base64!", block);
    EXPECT_EQ(this->at.getObj(this->value, 0), -1);
    EXPECT_EQ(this->value.values[3], 7);
    EXPECT_EQ(this->value.header[0], 0);
}

TEST(QelPerfMonValueDeathTest, IndexOutOfRangeTerminates) {
    QelPerfMonActualValue actual;
    EXPECT_DEATH(actual.set(14, 1), "core/src/QelFunctionalityCore/QelPerfMonBase:67");
    QelPerfMonHistoricalValue historical;
    EXPECT_DEATH(historical.set(14, 1), "core/src/QelFunctionalityCore/QelPerfMonBase:135");
    EXPECT_DEATH(historical.set(~0U, 1), "QelPerfMonBase:135");
}

} // namespace
} // namespace Qel
