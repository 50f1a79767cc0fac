#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

bool isAboveZero(int port) {
    return port > 0;
}

QelConnectionInfo& setAddressIfEmpty(QelConnectionInfo& info, const char* address) {
    if (info.address.empty()) {
        info.protocol = QelAgentConnectionInfo::protocolAgent;
        info.address = address;
    }
    return info;
}

QelConnectionInfo agentAt(const char* address) {
    QelConnectionInfo info;
    return setAddressIfEmpty(info, address);
}

} // namespace

template <> struct Wire<QelConnectivityInfo> : WireWords<QelConnectivityInfo> {
    static constexpr QelWireField fields[] = {
        field<&R::protocol>(1195, ignored, ifSet),
        fieldIf<&R::port, isAboveZero>(1704, ignored),
        field<&R::address>(1687, required, always),
    };
    static constexpr int readOrder[] = {1704, 1195, 1687};
};
const QelWireLayout& QelConnectivityInfo::wire = wireLayoutOf<QelConnectivityInfo>;

int QelConnectivityInfoMarshal::Writer::operator()(QelMessageIterator& cursor, const QelConnectivityInfo& info) const {
    if (info.address.empty()) {
        setErrorMessage("cannot write QelConnectivityInfo: address is empty");
        return -1;
    }
    return writeByLayout(QelConnectivityInfo::wire, &info, cursor);
}

template <> struct Wire<QelConnectionInfo> : WireWords<QelConnectionInfo> {
    static constexpr int nsId = 292, typeId = 149;
    static constexpr QelWireField fields[] = {
        field<&R::password>(1032, ignored, ifSet, base64),
        field<&R::authName>(1630, ignored, always).bestEffort(),
        base<QelConnectivityInfo>(),
    };
    static constexpr int readOrder[] = {1630, 1032, 0};
};
const QelWireLayout& QelConnectionInfo::wire = wireLayoutOf<QelConnectionInfo>;

QelAgentConnectionInfo::QelAgentConnectionInfo(const QelEID& eid) {
    protocol = protocolAgent;
    address = eid.toString();
}

QelConnectionInfo& QelAgentConnectionInfo::localConnectionInfo() {
    static constexpr const char* local = "local";
    static QelConnectionInfo info = agentAt(local);
    return setAddressIfEmpty(info, local);
}

QelConnectionInfo& QelAgentConnectionInfo::masterConnectionInfo() {
    static constexpr const char* master = "master";
    static QelConnectionInfo info = agentAt(master);
    return setAddressIfEmpty(info, master);
}

} // namespace Qel
