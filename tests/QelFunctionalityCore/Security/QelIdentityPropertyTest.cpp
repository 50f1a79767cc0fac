#include <algorithm>
#include <cctype>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "QelFunctionalityCore/Security/QelDirRealm.h"
#include "QelFunctionalityCore/Security/QelLocalSID.h"
#include "QelFunctionalityCore/Security/QelToken.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using TestSupport::TestMessage;

constexpr int element = 1115;

/// Returns the object after a round trip through a message in text form.
template <class Record> Record roundTripped(const Record& written) {
    const TestMessage sent;
    RC_ASSERT(sent.cursor().putObj(written, element) == 0);
    const TestMessage received;
    RC_ASSERT(received->fromTextEx(TestSupport::textOf(*sent.get()).c_str(), 0) == 0);
    Record back;
    RC_ASSERT(received.cursor().getObj(back, element) == 0);
    return back;
}

constexpr std::uint32_t greatest = std::numeric_limits<std::uint32_t>::max();

/// The parts of a SID.
struct Parts {
    std::uint64_t authority; // 48 bits
    std::vector<std::uint32_t> subAuthorities;

    [[nodiscard]] bool roundTripsAsString() const {
        return authority <= greatest &&
               std::find(subAuthorities.begin(), subAuthorities.end(), greatest) == subAuthorities.end();
    }
    [[nodiscard]] std::vector<std::uint8_t> binary() const {
        std::vector<std::uint8_t> bytes{1, static_cast<std::uint8_t>(subAuthorities.size())};
        for (int shift = 40; shift >= 0; shift -= 8)
            bytes.push_back(static_cast<std::uint8_t>(authority >> shift));
        for (const std::uint32_t each : subAuthorities) {
            std::uint8_t word[sizeof each];
            std::memcpy(word, &each, sizeof each);
            bytes.insert(bytes.end(), std::begin(word), std::end(word));
        }
        return bytes;
    }
    [[nodiscard]] QelSID sid() const {
        QelSID made;
        const auto bytes = binary();
        RC_ASSERT(made.fromBinary(bytes.data(), static_cast<unsigned>(bytes.size())) == 0);
        return made;
    }
};

Parts someParts() {
    using namespace rc;
    const auto authority =
        gen::oneOf(gen::inRange<std::uint64_t>(0, greatest), gen::inRange<std::uint64_t>(0, std::uint64_t{1} << 48U));
    const auto subAuthority =
        gen::weightedOneOf<std::uint32_t>({{30, gen::arbitrary<std::uint32_t>()}, {1, gen::just(greatest)}});
    const auto count = *gen::inRange<std::size_t>(1, QelSID::maxSubAuthorities + 1);
    return {*authority, *gen::container<std::vector<std::uint32_t>>(count, subAuthority)};
}

/// One of a few SIDs, so that random sets intersect.
QelSID someMember() {
    return QelSID(QelSID::SID_PREFIX + std::to_string(*rc::gen::inRange(0, 12)));
}

template <class Make> auto someSet(const Make& make) {
    std::set<decltype(make())> made;
    for (int left = *rc::gen::inRange(0, 8); left > 0; --left)
        made.insert(make());
    return made;
}

std::string someText() {
    return *rc::gen::arbitrary<std::string>();
}

QelGUID someGUID() {
    return {*rc::gen::arbitrary<long long>(), *rc::gen::arbitrary<long long>()};
}

template <class Make> auto optionally(const Make& make) {
    QelOptionalProperty<decltype(make())> made;
    if (*rc::gen::arbitrary<bool>())
        made = make();
    return made;
}

QelAuthName someName() {
    return {.name = optionally(someText), .domain = optionally(someText), .realm = someGUID()};
}

QelToken someToken() {
    QelToken token;
    token.sid = someParts().sid();
    token.groups = someSet(someMember);
    token.denied = someSet(someMember);
    token.privileges = someSet([] { return std::string(1, *rc::gen::inRange<char>('a', 'h')); });
    token.authName = optionally(someName);
    return token;
}

std::string inOtherCase(std::string text) {
    for (char& c : text)
        if (*rc::gen::arbitrary<bool>())
            c = static_cast<char>(std::isupper(static_cast<unsigned char>(c)) ? std::tolower(c) : std::toupper(c));
    return text;
}

QelDirRealm someRealm() {
    QelDirRealm realm;
    realm.id = someGUID();
    realm.name = someText();
    realm.readOnly = *rc::gen::arbitrary<bool>();
    realm.address = *rc::gen::nonEmpty<std::string>();
    realm.port = *rc::gen::nonZero<int>();
    realm.baseDN = "dc=" + *rc::gen::container<std::string>(rc::gen::inRange<char>(' ', '~'));
    realm.searchDN = someText() + inOtherCase(realm.baseDN);
    realm.loginType.loginName = optionally(someText);
    realm.loginType.domain = optionally(someText);
    realm.loginType.realm = optionally(someGUID);
    return realm;
}

void checkSameName(const QelAuthName& a, const QelAuthName& b) {
    RC_ASSERT(a.name == b.name);
    RC_ASSERT(a.domain == b.domain);
    RC_ASSERT(a.realm == b.realm);
}

TEST(QelIdentityPropertyTest, SidsKeepBinaryForm) {
    EXPECT_TRUE(rc::check([] {
        const Parts parts = someParts();
        RC_ASSERT(parts.sid().toBinary() == parts.binary());
        RC_ASSERT(roundTripped(parts.sid()).toBinary() == parts.binary());
    }));
}

TEST(QelIdentityPropertyTest, SidsWith32BitAuthorityRoundTripAsStrings) {
    EXPECT_TRUE(rc::check([] {
        const Parts parts = someParts();
        const QelSID sid = parts.sid();
        QelSID back;
        const int result = back.fromString(sid.toString());
        if (parts.roundTripsAsString()) {
            RC_ASSERT(result == 0);
            RC_ASSERT(back == sid);
        } else {
            RC_ASSERT(result == -1 || !(back == sid));
        }
    }));
}

TEST(QelIdentityPropertyTest, LocalSidsDecodeToTheirParts) {
    EXPECT_TRUE(rc::check([] {
        const QelEID eid(someGUID());
        const auto id = *rc::gen::arbitrary<unsigned>();
        const auto type = static_cast<QelLocalSID::PrincipalType>(*rc::gen::inRange(1, 5));
        const QelLocalSID made(id, type, eid);
        const QelLocalSID back(roundTripped(made.getSID()));
        RC_ASSERT(back.getEID() == eid);
        RC_ASSERT(back.id == id);
        RC_ASSERT(back.type == type);
    }));
}

TEST(QelIdentityPropertyTest, TokensRoundTrip) {
    EXPECT_TRUE(rc::check([] {
        const QelToken token = someToken();
        const QelToken back = roundTripped(token);
        RC_ASSERT(back.sid == token.sid);
        RC_ASSERT(back.groups == token.groups);
        RC_ASSERT(back.denied == token.denied);
        RC_ASSERT(back.privileges == token.privileges);
        RC_ASSERT(back.authName.isSpecified() == token.authName.isSpecified());
        if (token.authName.isSpecified())
            checkSameName(back.authName.get(), token.authName.get());
    }));
}

TEST(QelIdentityPropertyTest, ValidRealmsRoundTrip) {
    EXPECT_TRUE(rc::check([] {
        const QelDirRealm realm = someRealm();
        RC_ASSERT(realm.isValid());
        const QelDirRealm back = roundTripped(realm);
        RC_ASSERT(back.id == realm.id);
        RC_ASSERT(back.name == realm.name);
        RC_ASSERT(back.type == realm.type);
        RC_ASSERT(back.readOnly == realm.readOnly);
        RC_ASSERT(back.address == realm.address);
        RC_ASSERT(back.port == realm.port);
        RC_ASSERT(back.baseDN == realm.baseDN);
        RC_ASSERT(back.searchDN == realm.searchDN);
        RC_ASSERT(back.loginType.loginName == realm.loginType.loginName);
        RC_ASSERT(back.loginType.domain == realm.loginType.domain);
        RC_ASSERT(back.loginType.realm == realm.loginType.realm);
    }));
}

/// Checks for every item of all sets that `result` contains it exactly if `rule` holds for its membership in `a` to
/// `d`.
template <class Item, class Rule>
void checkMembers(const std::set<Item>& result, const std::set<Item>& a, const std::set<Item>& b,
                  const std::set<Item>& c, const std::set<Item>& d, const Rule& rule) {
    for (const auto* const set : {&result, &a, &b, &c, &d})
        for (const Item& item : *set)
            RC_ASSERT(result.contains(item) ==
                      rule(a.contains(item), b.contains(item), c.contains(item), d.contains(item)));
}

TEST(QelIdentityPropertyTest, RestrictIsSetAlgebra) {
    EXPECT_TRUE(rc::check([] {
        const QelToken before = someToken();
        const QelToken other = someToken();
        QelToken after = before;
        after.restrict(other);
        checkMembers(after.groups, before.groups, other.groups, {}, {},
                     [](bool own, bool others, bool, bool) { return own && others; });
        checkMembers(
            after.denied, before.denied, other.denied, before.groups, other.groups,
            [](bool own, bool others, bool inOwn, bool inOthers) { return own || others || inOwn != inOthers; });
        checkMembers(after.privileges, before.privileges, other.privileges, {}, {},
                     [](bool own, bool others, bool, bool) { return own && others; });
        RC_ASSERT(after.sid == before.sid);
        RC_ASSERT(after.authName.isSpecified() == before.authName.isSpecified());
    }));
}

TEST(QelIdentityPropertyTest, RestrictIsIdempotent) {
    EXPECT_TRUE(rc::check([] {
        QelToken once = someToken();
        const QelToken other = someToken();
        once.restrict(other);
        QelToken twice = once;
        twice.restrict(once);
        RC_ASSERT(twice.groups == once.groups);
        RC_ASSERT(twice.denied == once.denied);
        RC_ASSERT(twice.privileges == once.privileges);
    }));
}

} // namespace
} // namespace Qel
