#include "QelFunctionalityCore/Environment/QelEnvCoreBasic.h"

#include <cstring>

#include <gmock/gmock.h>

#include "EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::Each;

using Record = boost::shared_ptr<QelEnvCoreBasic>;

constexpr int type = 1007;

/// A cursor at an element that can serve as a configuration.
class ConfigElement : public TestMessage {
public:
    explicit ConfigElement(const char* typeText = nullptr) {
        cursor().newChild(1185);
        cursor().putValue(std::string("name"), 1026);
        if (typeText)
            cursor().putValue(std::string(typeText), type);
    }
    [[nodiscard]] std::string flat() const { return flattened(cursor()); }
};

std::string bytesOf(const QelEnvCoreBasic& record) {
    return {reinterpret_cast<const char*>(&record), record.length()};
}

int intAt(const std::string& bytes, std::size_t offset) {
    int value = 0;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

/// A record with a distinct value in every field of its fixed part.
Record fullRecord(const std::string& config, const std::string& vconfig) {
    Record record = recordOf(config, vconfig);
    record->refCount.setRefCount(9);
    record->parentEID = otherEID;
    record->eid = someEID;
    record->status = {0x1234, 0x5678};
    record->type = "vm";
    for (int i = 0; i < qelAlertReasonCount; ++i)
        record->alertType[i] = static_cast<QelAlertType>(i % 4);
    return record;
}

Record blank() {
    return QelEnvCoreBasic::createInstance(nullptr, EnvConfigType::base);
}

TEST(QelEnvCoreBasicTest, MemoryLayoutIsThatOfCacheFile) {
    const std::string bytes = bytesOf(*fullRecord("base", "virtual"));
    ASSERT_EQ(bytes.size(), 92U + 4 + 7);
    EXPECT_EQ(intAt(bytes, 0), 9);
    EXPECT_EQ(bytes.substr(4, 16), std::string("\x28\x27\x26\x25\x24\x23\x22\x21\x38\x37\x36\x35\x34\x33\x32\x31"));
    EXPECT_EQ(bytes.substr(20, 16), std::string("\x08\x07\x06\x05\x04\x03\x02\x01\x18\x17\x16\x15\x14\x13\x12\x11"));
    EXPECT_EQ(bytes.substr(36, 8), std::string("\x34\x12\0\0\x78\x56\0\0", 8));
    EXPECT_EQ(bytes.substr(44, 16), "vm" + std::string(14, '\0'));
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(intAt(bytes, 60 + 4 * static_cast<std::size_t>(i)), i % 4);
    EXPECT_EQ(bytes.substr(80, 8), std::string("\4\0\0\0\7\0\0\0", 8));
    EXPECT_EQ(bytes.substr(88, 11), "basevirtual");
    EXPECT_EQ(bytes.substr(99), std::string(4, '\0'));
}

TEST(QelEnvCoreBasicTest, BlankRecordHasOnlyItsState) {
    const Record record = blank();
    EXPECT_EQ(record->length(), 92U);
    EXPECT_EQ(record->status, QelEnvStatus(1, 0));
    EXPECT_FALSE(record->type.isSpecified());
    std::string bytes = bytesOf(*record);
    EXPECT_EQ(intAt(bytes, 36), 1);
    bytes[36] = 0;
    EXPECT_EQ(bytes, std::string(92, '\0'));
    EXPECT_EQ(record->getConfig(), nullptr);
    EXPECT_EQ(record->getVirtualConfig(), nullptr);
}

TEST(QelEnvCoreBasicTest, BufferIsRecordItself) {
    const Record record = recordOf("abc", "de");
    const void* address = nullptr;
    unsigned length = 0;
    EXPECT_EQ(record->getBuffer(&address, length, nullptr), 0);
    EXPECT_EQ(address, record.get());
    EXPECT_EQ(length, 97U);

    length = 0;
    EXPECT_EQ(record->getBuffer(nullptr, length, nullptr), 0);
    EXPECT_EQ(length, 97U);
}

TEST(QelEnvCoreBasicTest, CopyOfFixedPartHasItsOwnReferenceCount) {
    const Record record = fullRecord("base", "virtual");
    const QelEnvCoreBasic copy(*record);
    EXPECT_EQ(copy.refCount.getRefCount(), 0);
    EXPECT_EQ(
        std::memcmp(reinterpret_cast<const char*>(&copy) + 4, reinterpret_cast<const char*>(record.get()) + 4, 84), 0);
    EXPECT_EQ(copy.data[0], '\0');
}

TEST(QelEnvCoreBasicTest, ReturnsConfigurationsAsMessages) {
    const ConfigElement base("base");
    const ConfigElement virtualised("virtual");
    const Record record = recordOf(base.flat(), virtualised.flat());
    const TestMessage config(record->getConfig());
    const TestMessage vconfig(record->getVirtualConfig());
    ASSERT_EQ(config.cursor().firstChild(1185), 0);
    EXPECT_EQ(childValue(config.cursor(), type), "base");
    ASSERT_EQ(vconfig.cursor().firstChild(1185), 0);
    EXPECT_EQ(childValue(vconfig.cursor(), type), "virtual");
}

TEST(QelEnvCoreBasicTest, DamagedConfigurationsReturnNull) {
    const Record record = recordOf("no message", "neither");
    EXPECT_EQ(record->getConfig(), nullptr);
    EXPECT_EQ(record->getVirtualConfig(), nullptr);
}

TEST(QelEnvCoreBasicTest, ResettingVirtualConfigurationKeepsBaseOne) {
    const Record record = recordOf("base", "virtual");
    record->resetVirtualConfigData();
    EXPECT_EQ(record->vconfigSize, 0U);
    EXPECT_EQ(configBytesOf(*record), "base");
}

TEST(QelEnvCoreBasicTest, ResettingBaseConfigurationMovesAtMostItsSize) {
    std::string longer;
    for (int i = 0; i < 300; ++i)
        longer += static_cast<char>('a' + i % 23);
    const Record record = recordOf(std::string(100, 'B'), longer);
    record->resetConfigData();
    EXPECT_EQ(record->configSize, 0U);
    EXPECT_EQ(record->vconfigSize, 300U);
    EXPECT_EQ(virtualConfigBytesOf(*record).substr(0, 100), longer.substr(0, 100));
    // The bytes after them were not moved and are unchanged.
    EXPECT_EQ(virtualConfigBytesOf(*record).substr(100), longer.substr(0, 200));
}

TEST(QelEnvCoreBasicTest, ResettingBaseConfigurationDoesNotReadPastRecord) {
    const Record record = recordOf(std::string(3000, 'B'), "virtual");
    record->resetConfigData();
    EXPECT_EQ(virtualConfigBytesOf(*record), "virtual");
    EXPECT_EQ(record->length(), 99U);
}

TEST(QelEnvCoreBasicTest, CombinesFixedPartAndBaseOfOneWithVirtualConfigurationOfAnother) {
    const Record a = fullRecord("base of a", "virtual of a");
    const Record b = recordOf("base of b", "virtual of b!");
    b->eid = otherEID;
    b->type = "ct";
    const Record made = QelEnvCoreBasic::createInstance(*a, *b);
    EXPECT_EQ(made->eid, someEID);
    EXPECT_EQ(made->parentEID, otherEID);
    EXPECT_EQ(made->status, a->status);
    EXPECT_EQ(made->type, "ct");
    EXPECT_EQ(made->refCount.getRefCount(), 0);
    EXPECT_EQ(configBytesOf(*made), "base of a");
    EXPECT_EQ(virtualConfigBytesOf(*made), "virtual of b!");
}

TEST(QelEnvCoreBasicTest, UnspecifiedTypeOfSecondKeepsTypeOfFirst) {
    EXPECT_EQ(QelEnvCoreBasic::createInstance(*fullRecord("", ""), *recordOf("", "v"))->type, "vm");
}

TEST(QelEnvCoreBasicTest, DeepCopyDiffersOnlyInReferenceCount) {
    const Record record = fullRecord("base", "virtual");
    const Record copy = QelEnvCoreBasic::createInstance(*record);
    EXPECT_NE(copy, record);
    EXPECT_EQ(copy->refCount.getRefCount(), 0);
    EXPECT_EQ(bytesOf(*copy).substr(4), bytesOf(*record).substr(4));
}

TEST(QelEnvCoreBasicTest, ElementBecomesConfiguration) {
    const ConfigElement element("vm");
    const Record base = QelEnvCoreBasic::createInstance(&element.cursor(), EnvConfigType::base);
    EXPECT_EQ(configBytesOf(*base), element.flat());
    EXPECT_EQ(base->vconfigSize, 0U);
    EXPECT_EQ(base->type, "vm");

    const Record virtualised = QelEnvCoreBasic::createInstance(element.cursor(), EnvConfigType::virtualised);
    EXPECT_EQ(virtualised->configSize, 0U);
    EXPECT_EQ(virtualConfigBytesOf(*virtualised), element.flat());
    EXPECT_EQ(virtualised->status, QelEnvStatus(1, 0));
}

TEST(QelEnvCoreBasicTest, TruncatesTypeToFifteenCharacters) {
    const ConfigElement element("abcdefghijklmnopqrst");
    EXPECT_EQ(QelEnvCoreBasic::createInstance(element.cursor(), EnvConfigType::base)->type, "abcdefghijklmno");
}

TEST(QelEnvCoreBasicTest, ElementWithoutTypeLeavesTypeUnspecified) {
    EXPECT_FALSE(QelEnvCoreBasic::createInstance(ConfigElement().cursor(), EnvConfigType::base)->type.isSpecified());
    const Record empty = QelEnvCoreBasic::createInstance(ConfigElement("").cursor(), EnvConfigType::base);
    EXPECT_TRUE(empty->type.isSpecified());
    EXPECT_EQ(empty->type.length(), 0U);
}

TEST(QelEnvCoreBasicTest, NullCursorCopiesOldRecord) {
    const Record old = fullRecord("base", "virtual");
    const Record made = QelEnvCoreBasic::createInstance(nullptr, *old, EnvConfigType::base);
    EXPECT_EQ(bytesOf(*made).substr(4), bytesOf(*old).substr(4));
}

TEST(QelEnvCoreBasicTest, ReplacesBaseConfigurationAndKeepsVirtualOne) {
    const ConfigElement element("ct");
    const std::string kept(5000, 'V');
    const Record old = fullRecord("base", kept);
    const Record made = QelEnvCoreBasic::createInstance(&element.cursor(), *old, EnvConfigType::base);
    EXPECT_EQ(configBytesOf(*made), element.flat());
    EXPECT_EQ(virtualConfigBytesOf(*made), kept);
    EXPECT_EQ(bytesOf(*made).substr(4, 76), bytesOf(*old).substr(4, 76)) << "including the type of the old record";
}

TEST(QelEnvCoreBasicTest, ReplacesVirtualConfigurationAndKeepsBaseOne) {
    const ConfigElement element("ct");
    const std::string kept(5000, 'B');
    const Record old = fullRecord(kept, "virtual");
    const Record made = QelEnvCoreBasic::createInstance(&element.cursor(), *old, EnvConfigType::virtualised);
    EXPECT_EQ(configBytesOf(*made), kept);
    EXPECT_EQ(virtualConfigBytesOf(*made), element.flat());
    EXPECT_EQ(bytesOf(*made).substr(4, 76), bytesOf(*old).substr(4, 76));
}

TEST(QelEnvCoreBasicTest, UnserialisableElementMakesBlankRecord) {
    const TooDeepMessage deep;
    EXPECT_EQ(bytesOf(*QelEnvCoreBasic::createInstance(deep.cursor(), EnvConfigType::base)), bytesOf(*blank()));
    const Record old = fullRecord("base", "virtual");
    EXPECT_EQ(bytesOf(*QelEnvCoreBasic::createInstance(&deep.cursor(), *old, EnvConfigType::virtualised)),
              bytesOf(*blank()));
}

TEST(QelEnvCoreBasicTest, SpaceForConfigurationsIsZeroed) {
    const Record made = QelEnvCoreBasic::createWithRoom(*fullRecord("base", ""), 64);
    EXPECT_THAT(std::string(made->configBytes(), 64), Each('\0'));
    EXPECT_EQ(made->eid, someEID);
}

} // namespace
} // namespace Qel
