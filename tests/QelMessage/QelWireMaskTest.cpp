// Bit masks and flags, and fields whose presence is recorded in a bit mask.

#include <gmock/gmock.h>

#include "QelMessage/QelWireTable.h"
#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

/// An optional bool.
class Maybe {
public:
    [[nodiscard]] bool isSpecified() const { return m_specified; }
    [[nodiscard]] bool get() const { return m_value; }
    Maybe& operator=(bool value) {
        m_value = value;
        m_specified = true;
        return *this;
    }

private:
    bool m_value = false;
    bool m_specified = false;
};

/// Bit masks and flags, some replaced by a read and some only added to.
struct Masks : QelRecord<Masks> {
    int mask = 0;
    unsigned wrapped = 0;
    int added = 0;
    bool flag = false;
    Maybe given{};

    static const QelWireLayout& wire;
};

/// Fields whose presence is recorded in a bit mask.
struct Masked : QelRecord<Masked> {
    std::string name;
    int number = 0;
    unsigned mask = 0;

    static const QelWireLayout& wire;
};

} // namespace

template <> struct QelWireValue<Maybe> : QelWireValue<bool> {
    using Specified = bool;
    static bool isSet(const Maybe& value) { return value.isSpecified(); }
};

template <> struct Wire<Masks> : WireWords<Masks> {
    static constexpr QelWireField fields[] = {
        bits<&R::mask, QelWireBit{1, 1844}, QelWireBit{4, 1456}>(),
        wrappedBits<&R::wrapped, QelWireBit{2, 1628}, QelWireBit{1, 1627}>(1197, ifSet),
        wrappedBits<&R::added, QelWireBit{1, 2131}>(1786, always).kept(),
        Wire::flag<&R::flag>(1917).kept(),
        Wire::flag<&R::given>(1152),
    };
};
const QelWireLayout& Masks::wire = wireLayoutOf<Masks>;

template <> struct Wire<Masked> : WireWords<Masked> {
    static constexpr QelWireField fields[] = {
        marked<&R::name, &R::mask>(1026, 1, required, always),
        marked<&R::number, &R::mask>(1010, 4, ignored, ifSet),
    };
};
const QelWireLayout& Masked::wire = wireLayoutOf<Masked>;

namespace {

class QelWireMaskTest : public RecordTest {};

TEST_F(QelWireMaskTest, SetBitsAreEmptyElementsInTableOrder) {
    Masks masks;
    masks.mask = 5;
    masks.wrapped = 3;
    EXPECT_EQ(write(masks), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1844, 1456, 1197, 1786));
    EXPECT_EQ(message.seek(1197), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1628, 1627));
}

TEST_F(QelWireMaskTest, EmptyMaskWritesItsWrapperOnlyIfAlways) {
    EXPECT_EQ(write(Masks()), 0);
    EXPECT_EQ(message.seekPresence(1197), -1);
    EXPECT_EQ(message.seekPresence(1786), 0);
}

TEST_F(QelWireMaskTest, UnknownBitsAreNotWritten) {
    Masks masks;
    masks.wrapped = 8;
    EXPECT_EQ(write(masks), 0);
    EXPECT_EQ(message.seek(1197), 0);
    EXPECT_THAT(childIDs(message), IsEmpty());
}

TEST_F(QelWireMaskTest, ReadingReplacesAMask) {
    message.putChild(1456);
    message.newChild(1197);
    message.putChild(1627);
    message.seekUp();
    Masks masks{.mask = 8 | 1, .wrapped = 8 | 2, .added = 0, .flag = false, .given = {}};
    EXPECT_EQ(read(masks), 0);
    EXPECT_EQ(masks.mask, 4);
    EXPECT_EQ(masks.wrapped, 1U);
}

TEST_F(QelWireMaskTest, ReadingWithoutTheWrapperClearsAMask) {
    Masks masks{.mask = 1, .wrapped = 2, .added = 0, .flag = false, .given = {}};
    EXPECT_EQ(read(masks), 0);
    EXPECT_EQ(masks.mask, 0);
    EXPECT_EQ(masks.wrapped, 0U);
}

TEST_F(QelWireMaskTest, OptionalFlagIsWrittenIfSpecifiedAndTrue) {
    Masks masks;
    EXPECT_EQ(write(masks), 0);
    EXPECT_NE(message.seekPresence(1152), 0);
    masks.given = false;
    EXPECT_EQ(write(masks), 0);
    EXPECT_NE(message.seekPresence(1152), 0);
    masks.given = true;
    EXPECT_EQ(write(masks), 0);
    EXPECT_EQ(message.seekPresence(1152), 0);
}

TEST_F(QelWireMaskTest, OptionalFlagIsSpecifiedByEveryRead) {
    Masks masks;
    EXPECT_EQ(read(masks), 0);
    EXPECT_TRUE(masks.given.isSpecified());
    EXPECT_FALSE(masks.given.get());
    message.putChild(1152);
    EXPECT_EQ(read(masks), 0);
    EXPECT_TRUE(masks.given.get());
}

TEST_F(QelWireMaskTest, KeptMaskOrFlagOnlyGainsBits) {
    Masks masks{.mask = 0, .wrapped = 0, .added = 4, .flag = true, .given = {}};
    EXPECT_EQ(read(masks), 0);
    EXPECT_EQ(masks.added, 4);
    EXPECT_TRUE(masks.flag);

    message.newChild(1786);
    message.putChild(2131);
    message.seekUp();
    EXPECT_EQ(read(masks), 0);
    EXPECT_EQ(masks.added, 5);
}

TEST_F(QelWireMaskTest, KeptFlagIsNeverCleared) {
    ASSERT_EQ(write(Masks()), 0);
    Masks masks;
    EXPECT_EQ(read(masks), 0);
    EXPECT_FALSE(masks.flag);
    masks.flag = true;
    EXPECT_EQ(read(masks), 0);
    EXPECT_TRUE(masks.flag);
    message.putChild(1917);
    Masks fresh;
    EXPECT_EQ(read(fresh), 0);
    EXPECT_TRUE(fresh.flag);
}

class QelWireMarkedTest : public RecordTest {};

TEST_F(QelWireMarkedTest, MarkedFieldIsWrittenIfItsBitIsSet) {
    Masked masked;
    masked.number = 7;
    ASSERT_EQ(message.putObj(masked, 0), 0);
    EXPECT_EQ(message.seekPresence(1026), 0) << "the name is always written";
    EXPECT_NE(message.seekPresence(1010), 0);
    masked.mask = 4 | 8;
    ASSERT_EQ(message.putObj(masked, 1007), 0);
    ASSERT_EQ(message.seek(1007), 0);
    EXPECT_EQ(childValue(message, 1010), "7");
}

TEST_F(QelWireMarkedTest, ReadingAMarkedFieldSetsOnlyItsBit) {
    message.putValue("n", 1026);
    message.putValue(0, 1010);
    Masked masked;
    masked.mask = 8;
    ASSERT_EQ(message.getObj(masked, 0), 0);
    EXPECT_EQ(masked.mask, 1U | 4U | 8U);
}

TEST_F(QelWireMarkedTest, FailedReadOfAMarkedFieldLeavesItsBitUnchanged) {
    message.putValue("n", 1026);
    message.putValue("none", 1010);
    Masked masked;
    ASSERT_EQ(message.getObj(masked, 0), 0);
    EXPECT_EQ(masked.mask, 1U);
    message.deleteChild(1026);
    masked.mask = 0;
    EXPECT_EQ(message.getObj(masked, 0), -1);
    EXPECT_EQ(masked.mask, 0U);
}

} // namespace
} // namespace Qel
