#include "QelFunctionalityCore/Network/QelFirewallRule.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

using Rule = QelFirewallRule;

bool hasAddress(const Rule::NetAddress& side) {
    return !side.address.empty();
}

bool hasPorts(const Rule::PortRange& side) {
    return Rule::ValidPort()(side.first);
}

} // namespace

template <> struct Wire<Rule::NetAddress> : WireWords<Rule::NetAddress> {
    static constexpr int nsId = 292, typeId = 132;
    static constexpr QelWireField fields[] = {
        field<&R::address>(1068, required, always).bestEffort(),
        field<&R::mask>(1069, ignored, ifSet),
    };
};
const QelWireLayout& Rule::NetAddress::wire = wireLayoutOf<Rule::NetAddress>;

template <> struct Wire<Rule::PortRange> : WireWords<Rule::PortRange> {
    static constexpr QelWireField fields[] = {
        field<&R::first>(1193, required, always),
        fieldIf<&R::second, Rule::ValidPort{}>(1194, ignored),
    };
};
const QelWireLayout& Rule::PortRange::wire = wireLayoutOf<Rule::PortRange>;

template <> struct Wire<Rule> : WireWords<Rule> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),
        field<&R::text1195>(1195, required, ifSet),
        field<&R::text1196>(1196, ignored, ifSet),
        field<&R::text1197>(1197, ignored, ifSet),
        field<&R::flag1198>(1198, ignored, always),
        fieldIf<&R::source, hasAddress>(1199, optional),
        fieldIf<&R::destination, hasAddress>(1200, optional),
        fieldIf<&R::sourcePorts, hasPorts>(1201, optional),
        fieldIf<&R::destinationPorts, hasPorts>(1202, optional),
        field<&R::text1203>(1203, ignored, ifSet),
        field<&R::text1204>(1204, ignored, ifSet),
    };
};
const QelWireLayout& Rule::wire = wireLayoutOf<Rule>;

std::string Rule::NetAddress::toString(char separator) const {
    return address.empty() || mask.empty() ? address : address + separator + mask;
}

std::string Rule::PortRange::toString(char separator) const {
    constexpr ValidPort isPort;
    if (!isPort(first))
        return {};
    return isPort(second) ? std::to_string(first) + separator + std::to_string(second) : std::to_string(first);
}

} // namespace Qel
