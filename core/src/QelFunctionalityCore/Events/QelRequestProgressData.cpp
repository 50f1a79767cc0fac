#include "QelFunctionalityCore/Events/QelRequestProgressData.h"

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int progressNamespace = 296;

int readRequest(const QelMessageIterator& cursor, QelRequestProgressData& data) {
    if (cursor.getValue(data.requestId, "id"_element) == 0)
        return 0;
    return cursor.getMessage()->getRequestId(data.requestId) == 0 ? 0 : -1;
}
int writeRequest(QelMessageIterator& cursor, const QelRequestProgressData& data) {
    return data.requestId.empty() ? 0 : cursor.putValue(data.requestId, "id"_element);
}

int readTime(const QelMessageIterator& cursor, QelRequestProgressData& data) {
    if (cursor.getValueTime(data.time, "time"_element) != 0 || data.time <= 0)
        cursor.getMessage()->getTime(&data.time);
    return 0;
}
int writeTime(QelMessageIterator& cursor, const QelRequestProgressData& data) {
    return data.time == 0 ? 0 : cursor.putValueTime(data.time, "time"_element);
}

int readSession(const QelMessageIterator& cursor, QelRequestProgressData& data) {
    std::string& session = data.session.session;
    if (cursor.getValue(session, "session"_element) != 0)
        cursor.getMessage()->getSession(session);
    return 0;
}
int writeSession(QelMessageIterator& cursor, const QelRequestProgressData& data) {
    const std::string& session = data.session.session;
    return session.empty() ? 0 : cursor.putValue(session, "session"_element);
}

constexpr bool isAboveZero(int progress) {
    return progress > 0;
}
bool hasText(const QelInfo& info) {
    return !info.empty();
}
bool hasItems(const QelEIDList& eids) {
    return !eids.empty();
}

// The request ID is a path that determines the parent; an explicit parent must match it.
int resolveParent(QelRequestProgressData& data) {
    const std::size_t slash = data.requestId.rfind('/');
    if (slash == std::string::npos)
        return 0;
    const std::string parent = data.requestId.substr(0, slash);
    if (!data.parentId.empty() && data.parentId != parent) {
        setErrorMessage("cannot read QelRequestProgressData: the parent of request %s is not %s",
                        data.requestId.c_str(), data.parentId.c_str());
        return -1;
    }
    data.parentId = parent;
    return 0;
}

} // namespace

template class QelDerivedParserFactory<QelRequestProgressData>;

QelDerivedParserFactoryT<QelRequestProgressData, QelRequestProgressData> factoryQelRequestProgressData(true);

template <> struct Wire<QelRequestProgressData> : WireWords<QelRequestProgressData> {
    using Data = QelRequestProgressData;
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        step<&readRequest, &writeRequest>("requestId", "id"_element, required, ifSet),
        field<&Data::parentId>(1914, ignored, ifSet),
        field<&Data::operation>(1638, ignored, ifSet),
        fieldIf<&Data::info, hasText>(1224, ignored),
        fieldIf<&Data::progress, isAboveZero>(1397, ignored),
        field<&Data::state>(1192, ignored, ifSet),
        step<&readTime, &writeTime>("time", "time"_element, ignored, ifSet),
        fieldIf<&Data::eids, hasItems>(1899, ignored),
        step<&readSession, &writeSession>("session", "session"_element, ignored, ifSet),
    };
    static constexpr int readOrder[] = {"id"_element, 1914, 1638, "time"_element,   1224,
                                        1397,         1192, 1899, "session"_element};
};
const QelWireLayout& QelRequestProgressData::wire = wireLayoutOf<QelRequestProgressData>;

QelRequestProgressData::QelRequestProgressData(std::string text)
    : info(std::move(text), "", true), session{{}, QelConfiguration::getLocalEID()} {}

int QelRequestProgressData::Reader::operator()(const QelMessageIterator& cursor, QelRequestProgressData& data) const {
    data.state = 0;
    if (readByLayout(wireLayoutOf<QelRequestProgressData>, &data, cursor) != 0 || resolveParent(data) != 0)
        return -1;
    QelGUID sender;
    if (sender.fromString(cursor.getMessage()->getSenderEID().c_str()) == 0)
        data.session.eid = sender;
    return 0;
}

// The namespace applies to the fields only.  The writer of a typed record would also set it on the record's element.
int QelRequestProgressData::Writer::operator()(QelMessageIterator& cursor, const QelRequestProgressData& data) const {
    cursor.saveNamespace(progressNamespace);
    const int result = writeByLayout(wireLayoutOf<QelRequestProgressData>, &data, cursor);
    cursor.saveNamespace(0);
    return result;
}

} // namespace Qel
