#include "QelFunctionalityCore/Security/QelSID.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Security/LocalConfig.h"
#include "QelFunctionalityCore/Security/QelLocalSID.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int userElement = 1025;

std::vector<std::uint8_t> binaryForm(std::uint8_t revision, std::uint8_t count, std::size_t subAuthorities) {
    std::vector<std::uint8_t> bytes(8 + 4 * subAuthorities, 0);
    bytes[0] = revision;
    bytes[1] = count;
    bytes[7] = 5;
    return bytes;
}

int parse(const std::vector<std::uint8_t>& bytes, QelSID& sid) {
    return sid.fromBinary(bytes.data(), static_cast<unsigned>(bytes.size()));
}

TEST(QelSIDTest, DefaultIsNobody) {
    EXPECT_EQ(QelSID().toString(), "S-1-0-0");
    EXPECT_TRUE(QelSID() == QelSID::createWellKnownSID(QelSID::nobody));
}

TEST(QelSIDTest, MalformedStringYieldsAnonymousSid) {
    for (const char* text :
         {"", "T-1-0-0", "S1-0-0", "S", "S-", "S-x-0-0", "S-0-0-0", "S-256-0-0", "S-1", "S-1-", "S-1-x"})
        EXPECT_EQ(QelSID(text).toString(), "S-1-5-7") << text;
}

TEST(QelSIDTest, StringAcceptsAnyNonzeroByteAsRevision) {
    EXPECT_EQ(QelSID("S-255-5-1").toString(), "S-255-5-1");
    EXPECT_EQ(QelSID("S-0x10-5-1").toString(), "S-16-5-1");
}

TEST(QelSIDTest, ParserIgnoresTextAfterNumbers) {
    QelSID sid;
    EXPECT_EQ(sid.fromString("S-1-5-21-42abc"), 0);
    EXPECT_EQ(sid.toString(), "S-1-5-21-42");
    EXPECT_EQ(sid.fromString("S-1-5xyz-7"), 0) << "what follows the authority is skipped";
    EXPECT_EQ(sid.toString(), "S-1-5-7");
}

TEST(QelSIDTest, SubAuthorityIsAtMost4294967294) {
    QelSID sid;
    EXPECT_EQ(sid.fromString("S-1-5-4294967294"), 0);
    EXPECT_EQ(sid.fromString("S-1-5-0x10"), 0);
    EXPECT_EQ(sid.toString(), "S-1-5-16");
    for (const char* text : {"S-1-5-4294967295", "S-1-5-4294967296", "S-1-5-99999999999999999999", "S-1-5-", "S-1-5-x"})
        EXPECT_EQ(sid.fromString(text), -1) << text;
}

/// Parses a SID with one sub-authority; "rejected" if that fails.
std::string parsed(const std::string& subAuthority) {
    QelSID sid;
    return sid.fromString("S-1-5-" + subAuthority) == 0 ? sid.toString() : "rejected";
}

TEST(QelSIDTest, SubAuthorityMayHaveBlanksSignAndPrefix) {
    for (const char* seven : {"7", "+7", " 7", "\t\n\v\f\r 7", " +7", "0x7", "0X7", "+0x7", "07", "7x", "7 ", "7+1"})
        EXPECT_EQ(parsed(seven), "S-1-5-7") << seven;
    EXPECT_EQ(parsed("010"), "S-1-5-8");
    EXPECT_EQ(parsed("08"), "S-1-5-0") << "8 is not an octal digit";
    EXPECT_EQ(parsed("0x"), "S-1-5-0") << "the prefix needs a digit";
    EXPECT_EQ(parsed("0xfffffffe"), "S-1-5-4294967294");
    EXPECT_EQ(parsed("037777777776"), "S-1-5-4294967294");
    for (const char* bad : {"", " ", "+", "-", "- 7", "--7", "+-7", "-+7", "x7", "\b7", "0xffffffff", "037777777777"})
        EXPECT_EQ(parsed(bad), "rejected") << bad;
}

TEST(QelSIDTest, NegativeSubAuthorityWrapsModulo32Bits) {
    EXPECT_EQ(parsed("-7"), "S-1-5-4294967289");
    EXPECT_EQ(parsed(" -7"), "S-1-5-4294967289");
    EXPECT_EQ(parsed("-0x10"), "S-1-5-4294967280");
    EXPECT_EQ(parsed("-010-7"), "S-1-5-4294967288-7");
    EXPECT_EQ(parsed("-0"), "S-1-5-0");
    EXPECT_EQ(parsed("-2"), "S-1-5-4294967294");
    EXPECT_EQ(parsed("-1"), "rejected") << "4294967295";
    EXPECT_EQ(parsed("-4294967295"), "S-1-5-1");
    EXPECT_EQ(parsed("-4294967294"), "S-1-5-2");
    // Magnitudes above 32 bits saturate at 4294967295, regardless of the sign.
    for (const char* large : {"-4294967296", "-4294967303", "-18446744073709551615", "-18446744073709551616",
                              "-99999999999999999999", "4294967303", "18446744073709551616"})
        EXPECT_EQ(parsed(large), "rejected") << large;
}

TEST(QelSIDTest, StringMayHaveNoSubAuthorityButBinaryFormMayNot) {
    QelSID sid;
    ASSERT_EQ(sid.fromString("S-1-5"), 0);
    EXPECT_EQ(sid.toString(), "S-1-5");
    QelSID other;
    EXPECT_EQ(parse(sid.toBinary(), other), -1);
}

TEST(QelSIDTest, StringAcceptsAtMostFifteenSubAuthorities) {
    std::string text = "S-1-5";
    for (int i = 0; i < 15; ++i)
        text += "-1";
    QelSID sid;
    EXPECT_EQ(sid.fromString(text), 0);
    EXPECT_EQ(sid.toString(), text);
    EXPECT_EQ(sid.fromString(text + "-1"), -1);
}

TEST(QelSIDTest, LargeAuthorityIsPrintedInHexadecimalAndParsedAsZero) {
    auto bytes = binaryForm(1, 1, 1);
    bytes[2] = 0x01;
    bytes[7] = 0xAB;
    QelSID sid;
    ASSERT_EQ(parse(bytes, sid), 0);
    EXPECT_EQ(sid.toString(), "S-1-0x0100000000ab-0");
    QelSID back;
    ASSERT_EQ(back.fromString(sid.toString()), 0);
    EXPECT_EQ(back.toString(), "S-1-0-0");
    EXPECT_EQ(QelSID("S-1-4294967295-1").toString(), "S-1-4294967295-1");
}

TEST(QelSIDTest, EitherOfTheTwoHighAuthorityBytesSelectsHexadecimal) {
    EXPECT_EQ(QelSID("S-1-4294967296-1").toString(), "S-1-0x000100000000-1");
    EXPECT_EQ(QelSID("S-1-1099511627776-1").toString(), "S-1-0x010000000000-1");
    EXPECT_EQ(QelSID("S-1-281474976710656-1").toString(), "S-1-0-1") << "truncated to 48 bits";
}

TEST(QelSIDTest, MalformedBinaryFormIsRejectedAndLeavesSidUnchanged) {
    QelSID sid("S-1-5-42");
    EXPECT_EQ(parse(binaryForm(2, 1, 1), sid), -1);
    EXPECT_EQ(parse(binaryForm(1, 0, 1), sid), -1);
    EXPECT_EQ(parse(binaryForm(1, 16, 16), sid), -1);
    EXPECT_EQ(parse(binaryForm(1, 2, 1), sid), -1) << "12 bytes for two sub-authorities";
    EXPECT_EQ(parse(binaryForm(1, 1, 2), sid), -1);
    const auto whole = binaryForm(1, 1, 1);
    for (unsigned size = 1; size < 12; ++size)
        EXPECT_EQ(sid.fromBinary(whole.data(), size), -1) << size;
    EXPECT_EQ(sid.toString(), "S-1-5-42");
    EXPECT_EQ(sid.fromBinary(whole.data(), 0), 0) << "the size is derived from the data";
    EXPECT_EQ(sid.toString(), "S-1-5-0");
}

TEST(QelSIDTest, NullYieldsEmptySidWhichCannotBeWritten) {
    QelSID sid;
    EXPECT_EQ(sid.fromBinary(nullptr, 100), 0);
    EXPECT_EQ(sid.toString(), "");
    const TestMessage tree;
    EXPECT_EQ(tree.cursor().putObj(sid, userElement), -1);
}

TEST(QelSIDTest, WireFormIsBase64OfBinaryForm) {
    const TestMessage tree;
    QelMessageIterator& cursor = tree.cursor();
    ASSERT_EQ(cursor.putObj(QelSID("S-1-5-7"), userElement), 0);
    EXPECT_EQ(childValue(cursor, userElement), "AQEAAAAAAAUHAAAA");
    QelSID sid;
    EXPECT_EQ(cursor.getObj(sid, userElement), 0);
    EXPECT_EQ(sid.toString(), "S-1-5-7");
}

TEST(QelSIDTest, ReaderRejectsEmptyOrMalformedValue) {
    const TestMessage tree;
    QelMessageIterator& cursor = tree.cursor();
    cursor.putChild(userElement);
    QelSID sid("S-1-5-42");
    EXPECT_EQ(cursor.getObj(sid, userElement), -1);
    cursor.deleteChild(userElement);
    cursor.putValueBase64(std::string("\1\1"), userElement);
    EXPECT_EQ(cursor.getObj(sid, userElement), -1);
    cursor.deleteChild(userElement);
    cursor.putValue(std::string("no base64!"), userElement);
    EXPECT_EQ(cursor.getObj(sid, userElement), -1);
    EXPECT_EQ(sid.toString(), "S-1-5-42");
}

TEST(QelSIDTest, OrdersByStringForm) {
    const std::set<QelSID> sids{QelSID("S-1-5-2"), QelSID("S-1-5-10")};
    EXPECT_EQ(sids.begin()->toString(), "S-1-5-10");
}

TEST(QelSIDTest, CreatesConstantWellKnownSids) {
    const auto text = [](int which) {
        return QelSID::createWellKnownSID(static_cast<QelSID::WellKnownSIDs>(which)).toString();
    };
    EXPECT_EQ(text(0), "S-1-1000-1");
    EXPECT_EQ(text(1), "S-1-1000-2");
    EXPECT_EQ(text(3), "S-1-5-7");
    EXPECT_EQ(text(5), "S-1-1000-0");
    EXPECT_EQ(text(6), "S-1-1000-4");
    EXPECT_EQ(text(8), "S-1-0-0");
    EXPECT_EQ(text(9), "S-1-1000-1001");
    EXPECT_EQ(text(10), "S-1-1000-1002");
    EXPECT_EQ(text(11), "S-1-1000-0");
    EXPECT_EQ(text(-1), "S-1-1000-0");
}

TEST(QelSIDTest, CreatesWellKnownSidsOfLocalAgentAndItsMaster) {
    const LocalConfig config(localEID, masterEID);
    EXPECT_TRUE(QelSID::createWellKnownSID(QelSID::localAdministrators) ==
                QelLocalSID(0, QelLocalSID::type2, localEID).getSID());
    EXPECT_TRUE(QelSID::createWellKnownSID(QelSID::localAgent) ==
                QelLocalSID(0, QelLocalSID::type4, localEID).getSID());
    EXPECT_TRUE(QelSID::createWellKnownSID(QelSID::masterAgent) ==
                QelLocalSID(0, QelLocalSID::type4, masterEID).getSID());
}

TEST(QelSIDTest, MasterAgentDefaultsToLocalAgent) {
    const LocalConfig config(localEID);
    EXPECT_TRUE(QelSID::createWellKnownSID(QelSID::masterAgent) == QelSID::createWellKnownSID(QelSID::localAgent));
}

TEST(QelSIDTest, LocalSidsAreDefaultWithoutLocalIdentity) {
    for (const auto which : {QelSID::localAdministrators, QelSID::localAgent, QelSID::masterAgent})
        EXPECT_TRUE(QelSID::createWellKnownSID(which) == QelSID());
}

TEST(QelSIDTest, AnyAgentMatchesAgentsButNotItsOwnConstant) {
    EXPECT_TRUE(QelLocalSID(0, QelLocalSID::type4, masterEID).getSID().isWellKnownSID(QelSID::anyAgent));
    EXPECT_FALSE(QelLocalSID(1, QelLocalSID::type4, masterEID).getSID().isWellKnownSID(QelSID::anyAgent));
    EXPECT_FALSE(QelLocalSID(0, QelLocalSID::type2, masterEID).getSID().isWellKnownSID(QelSID::anyAgent));
    EXPECT_FALSE(QelSID::createWellKnownSID(QelSID::anyAgent).isWellKnownSID(QelSID::anyAgent));
    EXPECT_TRUE(QelSID("S-1-5-7").isWellKnownSID(QelSID::anonymous));
}

TEST(QelSIDTest, FindsWellKnownSidInSet) {
    const std::set<QelSID> sids{QelSID("S-1-5-42"), QelSID("S-1-5-7")};
    EXPECT_TRUE(containsWellKnownSID(sids, QelSID::anonymous));
    EXPECT_FALSE(containsWellKnownSID(sids, QelSID::nobody));
    EXPECT_FALSE(containsWellKnownSID({}, QelSID::nobody));
}

TEST(QelLocalSIDTest, StringFormHasAuthorityWordsOfEidAndId) {
    const QelLocalSID local(7, QelLocalSID::type1, localEID);
    EXPECT_EQ(local.getSID().toString(), "S-1-8193-84281096-16909060-353769240-286397204-7");
    EXPECT_EQ(local.getSID().toBinary().size(), 28U);
}

TEST(QelLocalSIDTest, AuthorityEncodesType) {
    const auto text = [](QelLocalSID::PrincipalType type) {
        return QelLocalSID(0, type, localEID).getSID().toString();
    };
    EXPECT_THAT(text(QelLocalSID::type1), testing::StartsWith("S-1-8193-"));
    EXPECT_THAT(text(QelLocalSID::type2), testing::StartsWith("S-1-8192-"));
    EXPECT_THAT(text(QelLocalSID::type3), testing::StartsWith("S-1-8194-"));
    EXPECT_THAT(text(QelLocalSID::type4), testing::StartsWith("S-1-8195-"));
    EXPECT_EQ(text(static_cast<QelLocalSID::PrincipalType>(9)), "S-1-0-0");
}

TEST(QelLocalSIDTest, RoundTripsThroughSID) {
    for (const auto type : {QelLocalSID::type1, QelLocalSID::type2, QelLocalSID::type3, QelLocalSID::type4}) {
        const QelLocalSID back(QelLocalSID(7, type, masterEID).getSID());
        EXPECT_EQ(back.type, type);
        EXPECT_EQ(back.id, 7U);
        EXPECT_EQ(back.getEID(), masterEID);
    }
}

TEST(QelLocalSIDTest, OtherAuthorityOrCountIsNotLocal) {
    for (const char* text : {"S-1-8196-1-2-3-4-5", "S-1-8193-1-2-3-4", "S-1-8193-1-2-3-4-5-6", "S-1-0-0"}) {
        const QelLocalSID local{QelSID(text)};
        EXPECT_EQ(local.type, QelLocalSID::notLocal) << text;
        EXPECT_EQ(local.id, 4294967295U);
        EXPECT_FALSE(local.getEID().isValid());
        EXPECT_EQ(local.getSID().toString(), text);
    }
}

TEST(QelLocalSIDTest, DefaultsToLocalEnvironment) {
    {
        const LocalConfig config(localEID);
        EXPECT_TRUE(QelLocalSID(7, QelLocalSID::type3).getSID() ==
                    QelLocalSID(7, QelLocalSID::type3, localEID).getSID());
    }
    const QelLocalSID unknown(7, QelLocalSID::type3);
    EXPECT_EQ(unknown.getSID().toString(), "S-1-0-0");
    EXPECT_FALSE(unknown.getEID().isValid());
    EXPECT_EQ(unknown.id, 7U);
}

} // namespace
} // namespace Qel
