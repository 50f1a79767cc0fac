#pragma once

#include <map>
#include <string>

#include "QelCore/QelIPv6.h"
#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Security/QelToken.h"
#include "QelFunctionalityCore/Values/QelAnyData.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Somebody who is logged in.
class QelSession {
public:
    /// The timeout of a session that doesn't end by itself.
    static constexpr int persistent = -1;

    /// What a plug-in keeps with a session under a name of its own: an element 1018.
    struct ValueData : QelAnyData {
        ValueData();
    };
    using Data = std::map<std::string, ValueData>;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    virtual ~QelSession() = default;

    /// The session's data.  Its writer uses the one, its reader the other.
    [[nodiscard]] virtual const Data& data() const { return m_data; }
    [[nodiscard]] virtual Data& data() { return m_data; }

    [[nodiscard]] bool isPersistent() const { return timeout == persistent; }

    std::string sessionID;
    QelAuthName authName;
    long time1961 = 0; ///< seconds since the epoch; the agent settles of what
    long time1799 = 0; ///< likewise
    int timeout = 0;   ///< seconds, or `persistent`
    int revision = 0;
    QelToken token;
    QelIPv6 peerAddress; ///< the any-address if it isn't known

    /// Local time minus that of the message that the session was read from, in seconds: what to add to the session's
    /// times to compare them with the local clock.  Not sent.
    long timeSkew = 0;

private:
    Data m_data;
};

/// Reads a session from a message that tells its time; -1, and nothing is read, from another one.  -1 as well if one of
/// the required fields is missing or unreadable; those behind it then stay as they were.  Data are added to those that
/// are there.
struct QelSession::Reader {
    explicit Reader(bool leaveOutData = false) : withoutData(leaveOutData) {}

    int operator()(const QelMessageIterator& cursor, QelSession& session) const;

    bool withoutData;
};

/// Always 0.
struct QelSession::Writer : QelWriterBaseT<Writer> {
    explicit Writer(bool leaveOutData = false) : withoutData(leaveOutData) {}

    int operator()(QelMessageIterator& cursor, const QelSession& session) const;

    bool withoutData;
};

/// Reads a session's data from the entries in the current element; -1 for an entry without a name.
struct QelSessionDataReader {
    int operator()(const QelMessageIterator& cursor, QelSession::Data& data) const;
};

struct QelSessionDataWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelSession::Data& data) const;
};

/// A client that made itself known.
struct QelRegisteredClient {
    std::string clientID;
    int clientValue = 0;

    using Reader = QelRecordReader<QelRegisteredClient>;
    using Writer = QelRecordWriter<QelRegisteredClient>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
