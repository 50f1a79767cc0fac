#pragma once

#include <string>
#include <string_view>

#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

struct QelConnectivityInfo;

/// The functors of the triple of protocol, address and port, for every record that holds one.
struct QelConnectivityInfoMarshal {
    /// -1 if there is no address.
    using Reader = QelRecordReader<QelConnectivityInfo>;

    /// -1, and nothing is written, without an address.
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelConnectivityInfo& info) const;
    };
};

/// How a program is reached.
struct QelConnectivityInfo {
    virtual ~QelConnectivityInfo() = default;

    std::string protocol; ///< "agent" for agents; may be empty
    int port = 0;         ///< 0 and below: none is told
    std::string address;  ///< what the protocol makes of it

    using Reader = QelConnectivityInfoMarshal::Reader;
    using Writer = QelConnectivityInfoMarshal::Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// How a program is reached, and as whom.
struct QelConnectionInfo : QelConnectivityInfo {
    QelAuthName authName;
    std::string password; ///< may hold any bytes; never to be logged

    using Reader = QelRecordReader<QelConnectionInfo>;
    using Writer = QelRecordWriter<QelConnectionInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// How an agent is reached.
struct QelAgentConnectionInfo : QelConnectionInfo {
    static constexpr std::string_view protocolAgent = "agent";

    /// An agent is addressed by its identity, which the transport resolves.
    explicit QelAgentConnectionInfo(const QelEID& eid);

    /// The agent of this host, and the master of its server group.  Each is one object of the process: who changes it
    /// changes it for everyone, and an address that was emptied is filled again.
    static QelConnectionInfo& localConnectionInfo();
    static QelConnectionInfo& masterConnectionInfo();

    using Reader = QelReaderAs<QelConnectionInfo>;
    using Writer = QelWriterAs<QelConnectionInfo, 292, 149>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
