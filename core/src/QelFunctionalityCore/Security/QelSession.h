#pragma once

#include <map>
#include <string>

#include "QelCommon/Export.h"
#include "QelCore/QelIPv6.h"
#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Security/QelToken.h"
#include "QelFunctionalityCore/Values/QelAnyData.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A login session.
class QEL_EXPORT QelSession {
public:
    /// Sentinel for `timeout`: the session does not expire.
    static constexpr int persistent = -1;

    /// Opaque data that a plug-in stores in the session under its own key: an element 1018.
    struct ValueData : QelAnyData {
        ValueData();
    };
    using Data = std::map<std::string, ValueData>;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;

    virtual ~QelSession() = default;

    /// The session's data.  Writer uses the const overload, Reader the other one.
    [[nodiscard]] virtual const Data& data() const { return m_data; }
    [[nodiscard]] virtual Data& data() { return m_data; }

    [[nodiscard]] bool isPersistent() const { return timeout == persistent; }

    std::string sessionID;
    QelAuthName authName;
    long time1961 = 0; ///< seconds since the epoch; the agent defines the event
    long time1799 = 0; ///< seconds since the epoch; the agent defines the event
    int timeout = 0;   ///< seconds, or `persistent`
    int revision = 0;
    QelToken token;
    QelIPv6 peerAddress; ///< any-address: unknown

    /// Local time at reading minus the time of the message, in seconds.  Add it to the session's times to compare them
    /// with the local clock.  Not written.
    long timeSkew = 0;

private:
    Data m_data;
};

/// Requires the message envelope to carry a time; otherwise returns -1 and reads nothing.  Stops with -1 if a required
/// field is missing or unreadable, and leaves the fields after it unchanged.  Inserts data into the existing map.
struct QEL_EXPORT QelSession::Reader {
    explicit Reader(bool leaveOutData = false) : withoutData(leaveOutData) {}

    int operator()(const QelMessageIterator& cursor, QelSession& session) const;

    bool withoutData;
};

/// Always 0.
struct QEL_EXPORT QelSession::Writer : QelWriterBaseT<Writer> {
    explicit Writer(bool leaveOutData = false) : withoutData(leaveOutData) {}

    int operator()(QelMessageIterator& cursor, const QelSession& session) const;

    bool withoutData;
};

/// Reads session data from the entries of the current element; -1 at an entry without a key.
struct QEL_EXPORT QelSessionDataReader {
    int operator()(const QelMessageIterator& cursor, QelSession::Data& data) const;
};

struct QEL_EXPORT QelSessionDataWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelSession::Data& data) const;
};

/// A client registered with the agent.
struct QEL_EXPORT QelRegisteredClient : QelRecord<QelRegisteredClient> {
    std::string clientID;
    int clientValue = 0;

    static const QelWireLayout& wire;
};

} // namespace Qel
