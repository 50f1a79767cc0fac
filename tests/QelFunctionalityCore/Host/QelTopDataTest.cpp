#include "QelFunctionalityCore/Host/QelTopData.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Environment/EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int entryElement = 1179;
constexpr int valueElement = 1018;

QelTopData sample(bool isWhole) {
    QelTopData data;
    data.isWhole = isWhole;
    data.total = {9, 9.5};
    data.entries.push_back({someEID, {6, 6.5}});
    data.entries.push_back({otherEID, {3, 0.25}});
    return data;
}

TEST(QelTopDataTest, WritesValuesInRepresentationOfRecord) {
    const TestMessage whole;
    EXPECT_EQ(whole.cursor().putObj(sample(true), 0), 0);
    EXPECT_THAT(childIDs(whole.cursor()), ElementsAre(entryElement, entryElement, 1040));
    EXPECT_EQ(childValue(whole.cursor(), 1040), "9");
    const TestMessage real;
    EXPECT_EQ(real.cursor().putObj(sample(false), 0), 0);
    EXPECT_EQ(childValue(real.cursor(), 1040), "9.5");
    ASSERT_EQ(real.cursor().seek(entryElement), 0);
    EXPECT_THAT(childIDs(real.cursor()), ElementsAre(1866, valueElement));
    EXPECT_EQ(childValue(real.cursor(), valueElement), "6.5");
}

TEST(QelTopDataTest, ReaderStoresItsRepresentationInRecord) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(sample(true), 0), 0);
    QelTopData read;
    EXPECT_EQ(message.cursor().getObject(read, QelTopData::Reader(true), 0), 0);
    EXPECT_TRUE(read.isWhole);
    EXPECT_EQ(read.total.whole, 9);
    EXPECT_EQ(read.total.real, 0);
    ASSERT_EQ(read.entries.size(), 2U);
    EXPECT_EQ(read.entries[1].eid, otherEID);
    EXPECT_EQ(read.entries[1].value.whole, 3);
}

TEST(QelTopDataTest, IntegersCanBeReadAsDoubles) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(sample(true), 0), 0);
    QelTopData read;
    EXPECT_EQ(message.cursor().getObject(read, QelTopData::Reader(false), 0), 0);
    EXPECT_FALSE(read.isWhole);
    EXPECT_EQ(read.total.real, 9);
    EXPECT_EQ(read.total.whole, 0) << "stored in the other member";
    EXPECT_EQ(read.entries[0].value.whole, 0);
    EXPECT_EQ(read.entries[0].value.real, 6);
}

TEST(QelTopDataTest, DoublesCannotBeReadAsIntegers) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(sample(false), 0), 0);
    QelTopData read;
    EXPECT_EQ(message.cursor().getObject(read, QelTopData::Reader(true), 0), -1);
    EXPECT_THAT(read.entries, IsEmpty());
    EXPECT_EQ(message.cursor().curName(), "/");
}

TEST(QelTopDataTest, EntryRequiresEnvironmentAndValueAndListRequiresTotal) {
    for (const int element : {1866, valueElement}) {
        const TestMessage message;
        EXPECT_EQ(message.cursor().putObj(sample(false), 0), 0);
        ASSERT_EQ(message.cursor().seek(entryElement), 0);
        message.cursor().deleteChild(element);
        message.cursor().seekUp();
        QelTopData read;
        EXPECT_EQ(message.cursor().getObj(read, 0), -1) << element;
    }
    const TestMessage message;
    QelTopData read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
    message.cursor().putValue(0, 1040);
    EXPECT_EQ(message.cursor().getObj(read, 0), 0) << "entries are optional";
}

TEST(QelTopInfoTest, OmitsEmptySet) {
    const TestMessage message;
    QelTopInfo info;
    info.f1017 = "cpu";
    info.f1346 = true;
    EXPECT_EQ(message.cursor().putObj(info, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1017, 1346));
    info.f1899 = {someEID, otherEID};
    info.f1378 = true;
    const TestMessage other;
    EXPECT_EQ(other.cursor().putObj(info, 0), 0);
    EXPECT_THAT(childIDs(other.cursor()), ElementsAre(1017, 1378, 1346, 1899));
    QelTopInfo read;
    EXPECT_EQ(other.cursor().getObj(read, 0), 0);
    EXPECT_TRUE(read.f1378);
    EXPECT_THAT(read.f1899, ElementsAre(someEID, otherEID));
}

TEST(QelTopInfoTest, IgnoresUnreadableSet) {
    const TestMessage message;
    message.cursor().putValue("cpu", 1017);
    message.cursor().newChild(1899);
    message.cursor().putValue("no identifier", 1866);
    message.cursor().seekUp();
    QelTopInfo read;
    read.f1899 = {someEID};
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_THAT(read.f1899, ElementsAre(someEID));
}

TEST(QelTopInfoTest, RequiresParameter) {
    const TestMessage message;
    message.cursor().putChild(1378);
    QelTopInfo read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

} // namespace
} // namespace Qel
