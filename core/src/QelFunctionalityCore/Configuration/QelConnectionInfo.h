#pragma once

#include <string>
#include <string_view>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

struct QelConnectivityInfo;

/// Functors for protocol, address and port, shared by all records that contain them.
struct QEL_EXPORT QelConnectivityInfoMarshal {
    /// Returns -1 if the address is missing.
    using Reader = QelRecordReader<QelConnectivityInfo>;

    /// Returns -1 and writes nothing if the address is empty.
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelConnectivityInfo& info) const;
    };
};

/// How to reach a program.
struct QEL_EXPORT QelConnectivityInfo {
    virtual ~QelConnectivityInfo() = default;

    std::string protocol; ///< "agent" for agents; may be empty
    int port = 0;         ///< <= 0: unset
    std::string address;  ///< its format depends on the protocol

    using Reader = QelConnectivityInfoMarshal::Reader;
    using Writer = QelConnectivityInfoMarshal::Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

/// How to reach a program, and with which account.
struct QEL_EXPORT QelConnectionInfo : QelRecord<QelConnectionInfo, QelConnectivityInfo> {
    QelAuthName authName;
    std::string password; ///< may contain any bytes; never log it

    static const QelWireLayout& wire;
};

/// How to reach an agent.
struct QEL_EXPORT QelAgentConnectionInfo : QelRecordAs<QelConnectionInfo, 292, 149> {
    static constexpr std::string_view protocolAgent = "agent";

    /// The address is the agent's EID, which the transport resolves.
    explicit QelAgentConnectionInfo(const QelEID& eid);

    /// The agent of this host, and the master of its server group.  Each is a single object shared by the whole
    /// process.  If its address has been cleared, the call sets it again.
    static QelConnectionInfo& localConnectionInfo();
    static QelConnectionInfo& masterConnectionInfo();
};

} // namespace Qel
