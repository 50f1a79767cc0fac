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
        field<&Rule::NetAddress::address>(1068, required, always).unchecked(),
        field<&Rule::NetAddress::mask>(1069, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<Rule::NetAddress>() {
    return wireLayoutOf<Rule::NetAddress>;
}

template <> struct Wire<Rule::PortRange> : WireWords<Rule::PortRange> {
    static constexpr QelWireField fields[] = {
        field<&Rule::PortRange::first>(1193, required, always),
        fieldIf<&Rule::PortRange::second, Rule::ValidPort{}>(1194, ignored),
    };
};
template <> const QelWireLayout& qelWireLayout<Rule::PortRange>() {
    return wireLayoutOf<Rule::PortRange>;
}

template <> struct Wire<Rule> : WireWords<Rule> {
    static constexpr QelWireField fields[] = {
        field<&Rule::name>(1026, required, always).unchecked(),
        field<&Rule::text1195>(1195, required, ifSet).unchecked(),
        field<&Rule::text1196>(1196, ignored, ifSet).unchecked(),
        field<&Rule::text1197>(1197, ignored, ifSet).unchecked(),
        field<&Rule::flag1198>(1198, ignored, always).unchecked(),
        fieldIf<&Rule::source, hasAddress>(1199, optional).unchecked(),
        fieldIf<&Rule::destination, hasAddress>(1200, optional).unchecked(),
        fieldIf<&Rule::sourcePorts, hasPorts>(1201, optional).unchecked(),
        fieldIf<&Rule::destinationPorts, hasPorts>(1202, optional).unchecked(),
        field<&Rule::text1203>(1203, ignored, ifSet).unchecked(),
        field<&Rule::text1204>(1204, ignored, ifSet).unchecked(),
    };
};
template <> const QelWireLayout& qelWireLayout<Rule>() {
    return wireLayoutOf<Rule>;
}

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
