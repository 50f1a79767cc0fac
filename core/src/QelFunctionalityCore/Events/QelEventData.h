#pragma once

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelAnyData.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

struct QelInfo;

/// The payload of an event.  Each payload class defines the subscriptions that it is delivered to: a message carries
/// their names, and reaches every client subscribed to at least one of them.
struct QEL_EXPORT QelEventData {
    /// Describes the payload to a user: replaces `info`, or leaves it unchanged if the payload has no description.
    virtual void toInfo(QelInfo& info) const = 0;
    virtual ~QelEventData() = default;
    /// Adds the names of the payload's subscriptions to a message.  Returns nonzero at the first name that is rejected.
    virtual int addSubscriptionName(QelMessage& message) = 0;

    /// Adds `T::subscriptionName`.
    template <class T> static int addSubscription(const T&, QelMessage& message) {
        return message.addSubscription(T::subscriptionName.data());
    }
};

/// A payload of a class unknown to this process, carried unchanged.
struct QEL_EXPORT QelAnyEventData : QelRecord<QelAnyEventData, QelEventData> {
    QelAnyData any{1307};

    void toInfo(QelInfo& info) const override;
    int addSubscriptionName(QelMessage& message) override;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelEventData>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelAnyEventData, QelEventData> factoryQelAnyEventData;

} // namespace Qel
