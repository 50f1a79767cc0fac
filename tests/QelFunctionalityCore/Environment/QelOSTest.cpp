#include "QelFunctionalityCore/Environment/QelOS.h"

#include <gmock/gmock.h>

#include "EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int kind = 1846;
constexpr int detail = 1279;
constexpr int version = 1223;
constexpr int name = 1026;

TEST(QelOSTest, ConstructorTakesKindNameVersionAndDetail) {
    const QelOS os("linux", "debian", "12", "6.1");
    EXPECT_EQ(os.osKind, specified("linux"));
    EXPECT_EQ(os.osName, specified("debian"));
    EXPECT_EQ(os.osVersion, specified("12"));
    EXPECT_EQ(os.osDetail, specified("6.1"));
}

TEST(QelOSTest, NullPointerLeavesFieldUnspecified) {
    const QelOS os(nullptr, "debian", nullptr, nullptr);
    EXPECT_FALSE(os.osKind.isSpecified());
    EXPECT_TRUE(os.osName.isSpecified());
    EXPECT_FALSE(os.osVersion.isSpecified());
    EXPECT_FALSE(os.osDetail.isSpecified());
}

TEST(QelOSTest, WritesKindDetailVersionAndNameInOrder) {
    const TestMessage message;
    ASSERT_EQ(message.cursor().putObj(QelOS("linux", "debian", "12", "6.1"), 1277), 0);
    message.cursor().firstChild();
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(kind, detail, version, name));
    EXPECT_EQ(childValue(message.cursor(), kind), "linux");
    EXPECT_EQ(childValue(message.cursor(), detail), "6.1");
    EXPECT_EQ(childValue(message.cursor(), version), "12");
    EXPECT_EQ(childValue(message.cursor(), name), "debian");
    expectStampOf<QelOS::Writer>(message.cursor());
    EXPECT_EQ(QelOS::Writer::getNSID(), 292);
    EXPECT_EQ(QelOS::Writer::getTypeID(), 117);
}

TEST(QelOSTest, WritesNameEvenIfUnspecified) {
    const TestMessage message;
    ASSERT_EQ(QelOS::Writer()(message.cursor(), QelOS()), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(name));
    EXPECT_EQ(childValue(message.cursor(), name), "");
}

TEST(QelOSTest, MissingNameFailsAfterOtherFieldsAreRead) {
    const TestMessage message;
    message.cursor().putValue(std::string("linux"), kind);
    message.cursor().putValue(std::string("6.1"), detail);
    message.cursor().putValue(std::string("12"), version);
    QelOS os;
    EXPECT_EQ(QelOS::Reader()(message.cursor(), os), -1);
    EXPECT_EQ(os.osKind, specified("linux"));
    EXPECT_EQ(os.osDetail, specified("6.1"));
    EXPECT_EQ(os.osVersion, specified("12"));
    EXPECT_FALSE(os.osName.isSpecified());
}

TEST(QelOSTest, MissingFieldsAreUnspecified) {
    const TestMessage message;
    message.cursor().putValue(std::string("debian"), name);
    QelOS os("linux", nullptr, "12", "6.1");
    EXPECT_EQ(QelOS::Reader()(message.cursor(), os), 0);
    EXPECT_FALSE(os.osKind.isSpecified());
    EXPECT_FALSE(os.osVersion.isSpecified());
    EXPECT_FALSE(os.osDetail.isSpecified());
    EXPECT_EQ(os.osName, specified("debian"));
}

TEST(QelOSTest, CompareIgnoresCase) {
    EXPECT_EQ(QelOS("Linux", "Debian", "A", "B").compare(QelOS("lINUX", "dEBIAN", "a", "b")), 0);
    EXPECT_EQ(QelOS().compare(QelOS("", "", "", "")), 0);
}

TEST(QelOSTest, ComparesKindThenNameThenVersionThenDetail) {
    EXPECT_LT(QelOS("a", "b", "b", "b").compare(QelOS("b", "a", "a", "a")), 0);
    EXPECT_LT(QelOS("a", "a", "b", "b").compare(QelOS("a", "b", "a", "a")), 0);
    EXPECT_LT(QelOS("a", "a", "a", "b").compare(QelOS("a", "a", "b", "a")), 0);
    EXPECT_GT(QelOS("a", "a", "a", "b").compare(QelOS("a", "a", "a", "a")), 0);
    EXPECT_LT(QelOS(nullptr, "z", nullptr, nullptr).compare(QelOS("a", "a", nullptr, nullptr)), 0);
}

} // namespace
} // namespace Qel
