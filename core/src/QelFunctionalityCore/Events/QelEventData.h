#pragma once

#include "QelFunctionalityCore/Values/QelAnyData.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

struct QelInfo;

/// What an event is about.  Each class of payloads names the subscriptions by which clients hear of it: a message
/// carries the names, and who has subscribed to one of them gets it.
struct QelEventData {
    /// Tells the payload to a user: replaces the info, or leaves it as it was where the payload has nothing to tell.
    virtual void toInfo(QelInfo& info) const = 0;
    virtual ~QelEventData() = default;
    /// Adds the names of the payload's subscriptions to a message; nonzero at the first that isn't taken.
    virtual int addSubscriptionName(QelMessage& message) = 0;

    /// Adds the name that the class `T` has as its `subscriptionName`.
    template <class T> static int addSubscription(const T&, QelMessage& message) {
        return message.addSubscription(T::subscriptionName.data());
    }
};

/// A payload of a class that this process doesn't know, carried as it is.
struct QelAnyEventData : QelEventData {
    QelAnyData any{1307};

    void toInfo(QelInfo& info) const override;
    int addSubscriptionName(QelMessage& message) override;

    using Reader = QelRecordReader<QelAnyEventData>;
    using Writer = QelRecordWriter<QelAnyEventData>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelEventData>;

extern QelDerivedParserFactoryT<QelAnyEventData, QelEventData> factoryQelAnyEventData;

} // namespace Qel
