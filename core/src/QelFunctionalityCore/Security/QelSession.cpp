#include "QelFunctionalityCore/Security/QelSession.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <limits>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

int readTimeout(const QelMessageIterator& cursor, QelSession& session) {
    int timeout = QelSession::persistent;
    if (cursor.seekPresence("timeout"_element) == 0 && cursor.getValue(timeout, "timeout"_element) != 0)
        return -1;
    session.timeout = timeout;
    return 0;
}

int writeTimeout(QelMessageIterator& cursor, const QelSession& session) {
    return session.isPersistent() ? 0 : cursor.putValue(session.timeout, "timeout"_element);
}

// Parses the minor number of "major.minor"; the major number is ignored.
int readRevision(const QelMessageIterator& cursor, QelSession& session) {
    std::string text;
    if (cursor.getValue(text, "revision"_element) != 0)
        return -1;
    const std::size_t point = text.find('.');
    if (point == std::string::npos)
        return -1;
    const long long number = std::strtoll(text.c_str() + point + 1, nullptr, 10);
    session.revision = static_cast<int>(
        std::clamp<long long>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    return 0;
}

int writeRevision(QelMessageIterator& cursor, const QelSession& session) {
    return cursor.putValue("0." + std::to_string(session.revision), "revision"_element);
}

int readData(const QelMessageIterator& cursor, QelSession& session) {
    return QelSessionDataReader()(cursor, session.data());
}

int writeData(QelMessageIterator& cursor, const QelSession& session) {
    return QelSessionDataWriter()(cursor, session.data());
}

} // namespace

template <> struct Wire<QelSession> : WireWords<QelSession> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::sessionID>(1010, required, always),
        field<&R::authName>(1025, required, always),
        field<&R::time1961>(1961, required, always, time),
        field<&R::time1799>(1799, required, always, time),
        step<&readTimeout, &writeTimeout>("timeout", "timeout"_element, optional, ifSet),
        step<&readRevision, &writeRevision>("revision", "revision"_element, required),
        field<&R::token>(1944, ignored, always),
        field<&R::peerAddress>(1262, ignored, ifSet),
        step<&readData, &writeData>("data", "data"_element, ignored), // must be last: see layoutFor
    };
};
const QelWireLayout& QelSession::wire = wireLayoutOf<QelSession>;

namespace {

const QelWireLayout& layoutFor(bool withoutData) {
    static constexpr QelWireLayout whole = wireLayoutOf<QelSession>;
    static constexpr QelWireLayout shortened{whole.typeName, whole.nsId, whole.typeId,
                                             whole.fields.first(whole.fields.size() - 1),
                                             whole.readingOrder.first(whole.readingOrder.size() - 1)};
    return withoutData ? shortened : whole;
}

// Subtracts in unsigned arithmetic to avoid signed overflow: the time in a message may be any number.
long difference(long a, long b) {
    return static_cast<long>(static_cast<unsigned long>(a) - static_cast<unsigned long>(b));
}

} // namespace

QelSession::ValueData::ValueData() : QelAnyData("value"_element) {}

int QelSession::Reader::operator()(const QelMessageIterator& cursor, QelSession& session) const {
    const long now = std::time(nullptr);
    long sent = 0;
    if (cursor.getMessage()->getTime(&sent) != 0) {
        setErrorMessage("cannot read QelSession: the message has no time");
        return -1;
    }
    session.timeSkew = difference(now, sent);
    return readByLayout(layoutFor(withoutData), &session, cursor);
}

int QelSession::Writer::operator()(QelMessageIterator& cursor, const QelSession& session) const {
    return writeByLayout(layoutFor(withoutData), &session, cursor);
}

int QelSessionDataReader::operator()(const QelMessageIterator& cursor, QelSession::Data& data) const {
    return QelReaderMap("data"_element, QelReaderOptional,
                        QelReaderID(QelReaderString(), "key"_element, QelReaderRequired),
                        QelAnyData::Reader(true))(cursor, data);
}

int QelSessionDataWriter::operator()(QelMessageIterator& cursor, const QelSession::Data& data) const {
    return QelWriterMap("data"_element, QelWriterID(QelWriterString(), "key"_element), QelAnyData::Writer())(cursor,
                                                                                                             data);
}

template <> struct Wire<QelRegisteredClient> : WireWords<QelRegisteredClient> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::clientID>(1010, required, always),
        field<&R::clientValue>(1259, required, always),
    };
};
const QelWireLayout& QelRegisteredClient::wire = wireLayoutOf<QelRegisteredClient>;

} // namespace Qel
