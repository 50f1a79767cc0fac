#pragma once

#include <string_view>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelAlertType.h"
#include "QelFunctionalityCore/Events/QelEventData.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// An environment left its normal range or returned to it.  Common root of the alerts, without a factory: only
/// derived alerts are created from messages.
struct QEL_EXPORT QelAlertData : QelRecord<QelAlertData, QelEventData> {
    using AlertType = QelAlertType;
    using AlertReason = QelAlertReason;

    static constexpr std::string_view subscriptionName = "alerts_subscription";

    QelEID eid;
    AlertType type = AlertType::green;

    /// Sets the parameters "env" (the environment) and "type" (the colour).
    void toInfo(QelInfo& info) const override;
    int addSubscriptionName(QelMessage& message) override;

    /// Returns whether the other alert has the same subject and therefore supersedes this one.  False for null.
    [[nodiscard]] virtual bool compareID(boost::shared_ptr<QelAlertData> other) const;
    /// Returns whether the other alert reports the same state, so that sending it again would be redundant.  False for
    /// null.
    [[nodiscard]] virtual bool compareData(boost::shared_ptr<QelAlertData> other) const;
    /// Compares the colours only; the environments may differ.
    [[nodiscard]] bool operator==(const QelAlertData& other) const { return type == other.type; }

    /// Reader: returns -1 if the environment is missing or the colour is not one of the four.
    static const QelWireLayout& wire;
};

} // namespace Qel
