#include "QelFunctionalityCore/Events/QelServerGroupAlertData.h"

#include "QelCommon/Strings.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

QelDerivedParserFactoryT<QelServerGroupAlertData, QelEventData> factoryQelServerGroupAlertData(false);

template <> struct Wire<QelServerGroupAlertData> : WireWords<QelServerGroupAlertData> {
    static constexpr int nsId = 285, typeId = 300;
    static constexpr QelWireField fields[] = {
        base<QelAlertData>(),
        field<&R::code>(1405, ignored, always).bestEffort(),
        field<&R::reason>(1496, ignored, always).bestEffort(),
        field<&R::subsystem>(1094, ignored, always).bestEffort(),
    };
};
const QelWireLayout& QelServerGroupAlertData::wire = wireLayoutOf<QelServerGroupAlertData>;

void QelServerGroupAlertData::toInfo(QelInfo& info) const {
    info = QelInfo("Marisko group problem with %env%. Subsystem: %subsystem% failed, reason %reason% [code %code%].",
                   "", true);
    QelAlertData::toInfo(info);
    info.setParameter(QelInfo(subsystem, "subsystem", true));
    info.setParameter(QelInfo(reason, "reason", true));
    info.setParameter(QelInfo(intToStr(code), "code", false));
    // Members of a group may use different titles for the same server, so this message shows the identifier.
    info.setParameter(QelInfo(eid.toString(), "env", false));
}

int QelServerGroupAlertData::addSubscriptionName(QelMessage& message) {
    if (QelAlertData::addSubscriptionName(message) != 0)
        return -1;
    return addSubscription(*this, message);
}

bool QelServerGroupAlertData::compareID(boost::shared_ptr<QelAlertData> other) const {
    const auto same = boost::dynamic_pointer_cast<QelServerGroupAlertData>(other);
    return same && QelAlertData::compareID(other) && subsystem == same->subsystem;
}

bool QelServerGroupAlertData::compareData(boost::shared_ptr<QelAlertData> other) const {
    const auto same = boost::dynamic_pointer_cast<QelServerGroupAlertData>(other);
    return same && code == same->code && reason == same->reason && subsystem == same->subsystem;
}

bool QelServerGroupAlertData::operator==(const QelServerGroupAlertData& other) const {
    return QelAlertData::operator==(other) && subsystem == other.subsystem;
}

} // namespace Qel
