#include <limits>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelMessage/QelMessageIterator.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using TestSupport::TestMessage;

/// The tests run with an ID, with the name of an ID and with a name without an ID.
template <class Key> Key key();
template <> int key<int>() {
    return 1026;
}
struct NamedKey {
    operator std::string() const { return "name"; }
};
struct UnknownNameKey {
    operator std::string() const { return "log_level"; }
};
template <> NamedKey key<NamedKey>() {
    return {};
}
template <> UnknownNameKey key<UnknownNameKey>() {
    return {};
}

template <class Key> class QelBinaryIteratorValueTest : public testing::Test {
protected:
    using Argument = std::conditional_t<std::is_same_v<Key, int>, int, std::string>;

    QelMessageIterator& cursor() { return message.cursor(); }
    /// The value of the element with the key.
    std::string text() {
        std::string value = "(none)";
        cursor().getValue(value, id);
        return value;
    }
    void putText(const std::string& value) { ASSERT_EQ(cursor().putValue(value, id), 0); }
    /// Expects that every typed get fails and leaves its output unchanged.
    void expectTypedGetsFail(const Argument& argument) {
        std::string bytes = "old";
        int integer = 7;
        long long longLong = 7;
        double real = 7;
        long time = 7;
        int zone = 7;
        EXPECT_EQ(cursor().getValueBase64(bytes, argument), -1);
        EXPECT_EQ(cursor().getValue(integer, argument), -1);
        EXPECT_EQ(cursor().getValueLongLong(longLong, argument), -1);
        EXPECT_EQ(cursor().getValueDouble(real, argument), -1);
        EXPECT_EQ(cursor().getValueTime(time, argument), -1);
        EXPECT_EQ(cursor().getValueTimeZone(time, zone, argument), -1);
        EXPECT_EQ(bytes, "old");
        EXPECT_EQ(integer, 7);
        EXPECT_EQ(longLong, 7);
        EXPECT_EQ(real, 7);
        EXPECT_EQ(time, 7);
        EXPECT_EQ(zone, 7);
        for (const bool before : {false, true}) {
            bool boolean = before;
            EXPECT_EQ(cursor().getValue(boolean, argument), -1);
            EXPECT_EQ(boolean, before);
        }
    }

    TestMessage message;
    const Argument id = key<Key>();
    const Argument missing = [] {
        if constexpr (std::is_same_v<Key, int>)
            return 1027;
        else
            return std::string("missing");
    }();
};

using Keys = testing::Types<int, NamedKey, UnknownNameKey>;
class KeyNames {
public:
    template <class Key> static std::string GetName(int) {
        return std::is_same_v<Key, int> ? "ById" : std::is_same_v<Key, NamedKey> ? "ByName" : "ByNameWithoutID";
    }
};
TYPED_TEST_SUITE(QelBinaryIteratorValueTest, Keys, KeyNames);

TYPED_TEST(QelBinaryIteratorValueTest, StringsRoundTripByteForByte) {
    const std::string bytes("a\0\r\n\xFF ", 6);
    EXPECT_EQ(this->cursor().putValue(bytes, this->id), 0);
    EXPECT_EQ(this->text(), bytes);
    EXPECT_EQ(this->cursor().curName(), "/");
}

TYPED_TEST(QelBinaryIteratorValueTest, SecondPutAppendsASecondElement) {
    this->cursor().putValue(1, this->id);
    this->cursor().putValue(2, this->id);
    ASSERT_EQ(this->cursor().firstChild(this->id), 0);
    EXPECT_EQ(this->cursor().nextSibling(this->id), 0);
    EXPECT_NE(this->cursor().nextSibling(this->id), 0);
}

TYPED_TEST(QelBinaryIteratorValueTest, MissingElementLeavesOutputUnchanged) {
    std::string string = "old";
    EXPECT_EQ(this->cursor().getValue(string, this->missing), -1);
    EXPECT_EQ(string, "old");
    this->expectTypedGetsFail(this->missing);
}

TYPED_TEST(QelBinaryIteratorValueTest, MalformedValueLeavesOutputUnchanged) {
    this->putText("some text");
    this->expectTypedGetsFail(this->id);
}

TYPED_TEST(QelBinaryIteratorValueTest, IntegersAreDecimal) {
    EXPECT_EQ(this->cursor().putValue(std::numeric_limits<int>::min(), this->id), 0);
    EXPECT_EQ(this->text(), "-2147483648");
    int value = 0;
    EXPECT_EQ(this->cursor().getValue(value, this->id), 0);
    EXPECT_EQ(value, std::numeric_limits<int>::min());
}

TYPED_TEST(QelBinaryIteratorValueTest, IntegerOutOfRangeFails) {
    this->putText("2147483648");
    int value = 7;
    EXPECT_EQ(this->cursor().getValue(value, this->id), -1);
    EXPECT_EQ(value, 7);
    long long wide = 0;
    EXPECT_EQ(this->cursor().getValueLongLong(wide, this->id), 0);
    EXPECT_EQ(wide, 2147483648LL);
}

TYPED_TEST(QelBinaryIteratorValueTest, LongLongsHaveAllBits) {
    EXPECT_EQ(this->cursor().putValueLongLong(std::numeric_limits<long long>::min(), this->id), 0);
    long long value = 0;
    EXPECT_EQ(this->cursor().getValueLongLong(value, this->id), 0);
    EXPECT_EQ(value, std::numeric_limits<long long>::min());
}

TYPED_TEST(QelBinaryIteratorValueTest, DoublesRoundTrip) {
    EXPECT_EQ(this->cursor().putValueDouble(0.1, this->id), 0);
    EXPECT_EQ(this->text(), "0.1");
    double value = 0;
    EXPECT_EQ(this->cursor().getValueDouble(value, this->id), 0);
    EXPECT_EQ(value, 0.1);
}

TYPED_TEST(QelBinaryIteratorValueTest, ElementWithoutAValueIsTrue) {
    this->cursor().putChild(this->id);
    bool value = false;
    EXPECT_EQ(this->cursor().getValue(value, this->id), 0);
    EXPECT_TRUE(value);
    std::string text = "old";
    EXPECT_EQ(this->cursor().getValue(text, this->id), 0);
    EXPECT_EQ(text, "");
}

TYPED_TEST(QelBinaryIteratorValueTest, BooleanIsReadFromANumberOrAWord) {
    for (const auto& [text, expected] :
         {std::pair("0", false), std::pair("1", true), std::pair("false", false), std::pair("true", true)}) {
        const TestMessage fresh;
        fresh.cursor().putValue(std::string(text), this->id);
        bool value = !expected;
        EXPECT_EQ(fresh.cursor().getValue(value, this->id), 0);
        EXPECT_EQ(value, expected) << text;
    }
}

TYPED_TEST(QelBinaryIteratorValueTest, Base64RoundTripsAnyBytes) {
    const std::string bytes("\0\x01\xFF", 3);
    EXPECT_EQ(this->cursor().putValueBase64(bytes, this->id), 0);
    EXPECT_EQ(this->text(), "AAH/");
    std::string value;
    EXPECT_EQ(this->cursor().getValueBase64(value, this->id), 0);
    EXPECT_EQ(value, bytes);
}

TYPED_TEST(QelBinaryIteratorValueTest, TimesAreWrittenInUtc) {
    EXPECT_EQ(this->cursor().putValueTime(1795167000, this->id), 0);
    EXPECT_EQ(this->text(), "2026-11-20T09:30:00Z");
    long value = 0;
    EXPECT_EQ(this->cursor().getValueTime(value, this->id), 0);
    EXPECT_EQ(value, 1795167000);
}

TYPED_TEST(QelBinaryIteratorValueTest, TimesWithAZoneAreWrittenAsLocalTime) {
    EXPECT_EQ(this->cursor().putValueTimeZone(1795167000, 60, this->id), 0);
    EXPECT_EQ(this->text(), "2026-11-20T10:30:00+01:00");
    long value = 0;
    int zone = 0;
    EXPECT_EQ(this->cursor().getValueTimeZone(value, zone, this->id), 0);
    EXPECT_EQ(value, 1795167000);
    EXPECT_EQ(zone, 60);
}

// ---------------------------------------------------------------------------------------------- the empty ID, buffers

class QelBinaryIteratorOwnValueTest : public testing::Test {
protected:
    static constexpr int id = 1026;
    QelBinaryIteratorOwnValueTest() : cursor(message.cursor()) { cursor.newChild(id); }

    TestMessage message;
    QelMessageIterator& cursor;
};

TEST_F(QelBinaryIteratorOwnValueTest, EmptyIdReadsTheElementsOwnValue) {
    cursor.putValue(std::string("child"), id);
    EXPECT_EQ(cursor.putValue(std::string("own"), 0), 0);
    std::string value;
    EXPECT_EQ(cursor.getValue(value, 0), 0);
    EXPECT_EQ(value, "own");
    EXPECT_EQ(cursor.getValue(value, id), 0);
    EXPECT_EQ(value, "child");
}

TEST_F(QelBinaryIteratorOwnValueTest, PutWithTheEmptyIdReplaces) {
    cursor.putValue(std::string("a long first value that needs room"), 0);
    cursor.putValue(2, 0);
    int value = 0;
    EXPECT_EQ(cursor.getValue(value, 0), 0);
    EXPECT_EQ(value, 2);
    EXPECT_NE(cursor.firstChild(), 0);
}

TEST_F(QelBinaryIteratorOwnValueTest, EveryPutSetsTheCurrentElement) {
    std::string text;
    EXPECT_EQ(cursor.putValueBase64(std::string("a"), 0), 0);
    cursor.getValue(text, 0);
    EXPECT_EQ(text, "YQ==");
    EXPECT_EQ(cursor.putValueLongLong(5, 0), 0);
    cursor.getValue(text, 0);
    EXPECT_EQ(text, "5");
    EXPECT_EQ(cursor.putValueDouble(1.5, 0), 0);
    cursor.getValue(text, 0);
    EXPECT_EQ(text, "1.5");
    EXPECT_EQ(cursor.putValueTime(0, 0), 0);
    cursor.getValue(text, 0);
    EXPECT_EQ(text, "1970-01-01T00:00:00Z");
    EXPECT_EQ(cursor.putValueTimeZone(0, -90, 0), 0);
    cursor.getValue(text, 0);
    EXPECT_EQ(text, "1969-12-31T22:30:00-01:30");
}

TEST_F(QelBinaryIteratorOwnValueTest, BufferWithLengthMayContainAnyBytes) {
    EXPECT_EQ(cursor.putValue("a\0b", 3, id), 0);
    EXPECT_EQ(cursor.putValueBase64("a\0b", 3, 1027), 0);
    std::string value;
    EXPECT_EQ(cursor.getValue(value, id), 0);
    EXPECT_EQ(value, std::string("a\0b", 3));
    EXPECT_EQ(cursor.getValueBase64(value, 1027), 0);
    EXPECT_EQ(value, std::string("a\0b", 3));
}

TEST_F(QelBinaryIteratorOwnValueTest, EmptyBufferCreatesAnElementWithAnEmptyValue) {
    EXPECT_EQ(cursor.putValue("", 0, id), 0);
    std::string value = "old";
    EXPECT_EQ(cursor.getValue(value, id), 0);
    EXPECT_EQ(value, "");
}

TEST_F(QelBinaryIteratorOwnValueTest, RejectsInvalidBuffers) {
    EXPECT_EQ(cursor.putValue("a", -1, id), -1);
    EXPECT_EQ(cursor.putValue(nullptr, 1, id), -1);
    EXPECT_EQ(cursor.putValueBase64("a", -1, id), -1);
    EXPECT_EQ(cursor.putValueBase64(nullptr, 1, id), -1);
    EXPECT_EQ(cursor.putValue(1, -5), -1);
    EXPECT_NE(cursor.firstChild(), 0);
}

// ----------------------------------------------------------------------------------------------------- attributes

TEST_F(QelBinaryIteratorOwnValueTest, AttributesBelongToTheCurrentElement) {
    EXPECT_EQ(cursor.putAttr(std::string("text"), 5), 0);
    EXPECT_EQ(cursor.putAttr(12, 6), 0);
    EXPECT_EQ(cursor.putAttrTime(1795167000, 7), 0);
    std::string text;
    int number = 0;
    long time = 0;
    EXPECT_EQ(cursor.getAttr(text, 5), 0);
    EXPECT_EQ(cursor.getAttr(number, 6), 0);
    EXPECT_EQ(cursor.getAttrTime(time, 7), 0);
    EXPECT_EQ(text, "text");
    EXPECT_EQ(number, 12);
    EXPECT_EQ(time, 1795167000);
    cursor.seekUp();
    EXPECT_EQ(cursor.getAttr(text, 5), -1);
}

TEST_F(QelBinaryIteratorOwnValueTest, SecondPutReplacesTheAttribute) {
    cursor.putAttr(std::string("first"), 5);
    cursor.putAttr(std::string("second, which is a good deal longer"), 5);
    std::string text;
    EXPECT_EQ(cursor.getAttr(text, 5), 0);
    EXPECT_EQ(text, "second, which is a good deal longer");
}

TEST_F(QelBinaryIteratorOwnValueTest, MissingOrMalformedAttributeLeavesOutputUnchanged) {
    cursor.putAttr(std::string("text"), 5);
    int number = 7;
    long time = 7;
    std::string text = "old";
    EXPECT_EQ(cursor.getAttr(number, 5), -1);
    EXPECT_EQ(cursor.getAttrTime(time, 5), -1);
    EXPECT_EQ(cursor.getAttr(text, 6), -1);
    EXPECT_EQ(cursor.getAttr(text, 0), -1);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(time, 7);
    EXPECT_EQ(text, "old");
    EXPECT_EQ(cursor.putAttr(std::string("x"), 0), -1);
    EXPECT_EQ(cursor.putAttr(std::string("x"), -3), -1);
}

TEST_F(QelBinaryIteratorOwnValueTest, NumberOfAttributesIsLimited) {
    constexpr int most = 64;
    for (int i = 1; i <= most; ++i)
        ASSERT_EQ(cursor.putAttr(i, i), 0);
    EXPECT_EQ(cursor.putAttr(0, most + 1), -1);
    EXPECT_EQ(cursor.putAttr(0, most), 0) << "replacing an attribute does not add one";
}

} // namespace
} // namespace Qel
