#include "QelFunctionalityCore/Security/QelLocalSID.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"

namespace Qel {

namespace {

struct Authority {
    QelLocalSID::PrincipalType type;
    std::array<std::uint8_t, 6> bytes; // big-endian
};

// The authorities are not in the order of the types: type 2 is the oldest and has the lowest authority.
constexpr Authority authorities[] = {
    {QelLocalSID::type1, {0, 0, 0, 0, 0x20, 0x01}},
    {QelLocalSID::type2, {0, 0, 0, 0, 0x20, 0x00}},
    {QelLocalSID::type3, {0, 0, 0, 0, 0x20, 0x02}},
    {QelLocalSID::type4, {0, 0, 0, 0, 0x20, 0x03}},
};

// Binary form of a local SID.
struct LocalForm {
    std::uint8_t revision = 1;
    std::uint8_t count = 5;
    std::array<std::uint8_t, 6> authority{};
    std::uint8_t eid[16]{}; // the two halves of the EID, each in host order
    std::uint8_t id[4]{};   // in host order
};
static_assert(sizeof(LocalForm) == 28);

} // namespace

QelLocalSID::QelLocalSID(unsigned principal, PrincipalType principalType, const QelEID& environment)
    : eid(environment), id(principal), type(principalType) {
    const auto* const authority = std::find_if(std::begin(authorities), std::end(authorities),
                                               [&](const Authority& a) { return a.type == type; });
    if (authority == std::end(authorities))
        return;
    unsigned long long halves[2];
    eid.getData(halves[0], halves[1]);
    LocalForm form;
    form.authority = authority->bytes;
    std::memcpy(form.eid, halves, sizeof form.eid);
    std::memcpy(form.id, &id, sizeof form.id);
    sid.fromBinary(&form, sizeof form);
}

QelLocalSID::QelLocalSID(unsigned principal, PrincipalType principalType)
    : eid(QelConfiguration::getLocalEID()), id(principal), type(principalType) {
    if (eid.isValid())
        *this = QelLocalSID(principal, principalType, eid);
}

QelLocalSID::QelLocalSID(const QelSID& from) : sid(from) {
    LocalForm form;
    const auto& binary = from.toBinary();
    if (binary.size() != sizeof form || binary[offsetof(LocalForm, count)] != form.count)
        return;
    std::memcpy(&form, binary.data(), sizeof form);
    const auto* const authority = std::find_if(std::begin(authorities), std::end(authorities),
                                               [&](const Authority& a) { return a.bytes == form.authority; });
    if (authority == std::end(authorities))
        return;
    long long halves[2];
    std::memcpy(halves, form.eid, sizeof halves);
    type = authority->type;
    eid = QelEID(halves[0], halves[1]);
    std::memcpy(&id, form.id, sizeof id);
}

} // namespace Qel
