#pragma once

#include <string>
#include <string_view>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Events/QelEventData.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

/// Something that happened, as subscribers hear of it: who, when, where and why, and a payload that tells what.
struct QelEvent {
    static constexpr std::string_view subscriptionName = "events_subscription";

    /// With a new identifier, the present time, the local agent as its place and the current token as who did it.
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

    /// A time that is missing is that of the message.  A payload that is missing, unreadable or of an unknown class
    /// leaves `data` as it was, and the event is good without.
    using Reader = QelRecordReader<QelEvent>;
    using Writer = QelRecordWriter<QelEvent>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelEvent>;

extern QelDerivedParserFactoryT<QelEvent, QelEvent> factoryQelEvent;

} // namespace Qel
