#pragma once

#include <string_view>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Environment/QelAlertType.h"
#include "QelFunctionalityCore/Events/QelEventData.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

/// An environment has left its normal range, or come back to it.  The root of the alerts, none of its own: it has no
/// factory.
struct QelAlertData : QelEventData {
    using AlertType = QelAlertType;
    using AlertReason = QelAlertReason;

    static constexpr std::string_view subscriptionName = "alerts_subscription";

    QelEID eid;
    AlertType type = AlertType::green;

    /// Sets the parameters "env", which names the environment, and "type", the colour.
    void toInfo(QelInfo& info) const override;
    int addSubscriptionName(QelMessage& message) override;

    /// Whether the other alert is about the same thing, so that it takes this one's place.  False for null.
    [[nodiscard]] virtual bool compareID(boost::shared_ptr<QelAlertData> other) const;
    /// Whether the other alert tells the same, so that it isn't worth to be told again.  False for null.
    [[nodiscard]] virtual bool compareData(boost::shared_ptr<QelAlertData> other) const;
    /// Whether the alerts have one colour, be they about two environments.
    [[nodiscard]] bool operator==(const QelAlertData& other) const { return type == other.type; }

    /// -1 without the environment, or without one of the four colours.
    using Reader = QelRecordReader<QelAlertData>;
    using Writer = QelRecordWriter<QelAlertData>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
