#include "QelFunctionalityCore/Events/QelAlertData.h"

#include <iterator>

#include "QelFunctionalityCore/Events/QelEnvInfo.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

const char* colourOf(QelAlertType type) {
    static constexpr const char* colours[] = {"green", "yellow", "red", "black"};
    const auto index = static_cast<std::size_t>(type);
    return index < std::size(colours) ? colours[index] : "";
}

} // namespace

/// An unknown colour is malformed input.
template <> struct QelWireValue<QelAlertType> {
    static constexpr QelWireKind kind = QelWireKind::integer;
    static int read(const QelMessageIterator& cursor, QelAlertType& type, int id, const QelWireField&) {
        return cursor.getObject(type, QelAlertTypeReader(), id);
    }
    static int write(QelMessageIterator& cursor, const QelAlertType& type, int id, const QelWireField&) {
        return cursor.putObject(type, QelAlertTypeWriter(), id);
    }
    static bool isSet(const QelAlertType&) { return true; }
};

template <> struct Wire<QelAlertData> : WireWords<QelAlertData> {
    static constexpr QelWireField fields[] = {
        field<&R::eid>(1866, required, always),
        field<&R::type>(1007, required, always),
    };
    static constexpr int readOrder[] = {1007, 1866};
};
const QelWireLayout& QelAlertData::wire = wireLayoutOf<QelAlertData>;

void QelAlertData::toInfo(QelInfo& info) const {
    info.setParameter(QelEnvInfo(eid));
    info.setParameter(QelInfo(colourOf(type), "type", true));
}

int QelAlertData::addSubscriptionName(QelMessage& message) {
    return addSubscription(*this, message);
}

bool QelAlertData::compareID(boost::shared_ptr<QelAlertData> other) const {
    return other && eid == other->eid;
}

bool QelAlertData::compareData(boost::shared_ptr<QelAlertData> other) const {
    return other && type == other->type;
}

} // namespace Qel
