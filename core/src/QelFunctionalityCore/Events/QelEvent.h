#pragma once

#include <string>
#include <string_view>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Events/QelEventData.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Something that happened, as delivered to subscribers: who, when, where and why, with an optional payload.
struct QEL_EXPORT QelEvent : QelRecord<QelEvent> {
    static constexpr std::string_view subscriptionName = "events_subscription";

    /// Generates an identifier.  The time is the current time, the environment is the local agent, the SID is that of
    /// the current token.
    explicit QelEvent(std::string itsSource = "agent");
    virtual ~QelEvent() = default;

    QelEID eid; ///< of the environment where it happened
    long time;  ///< seconds since the epoch
    std::string source;
    std::string category;
    QelSID sid;
    int severity = 1;
    QelGUID id;
    boost::shared_ptr<QelEventData> data; ///< may be null
    QelInfo info;                         ///< what happened, for a user

    /// Reader: a missing time defaults to that of the message envelope.  If the payload is missing, malformed or of an
    /// unknown class, `data` is left unchanged and reading still succeeds.
    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelEvent>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelEvent, QelEvent> factoryQelEvent;

} // namespace Qel
