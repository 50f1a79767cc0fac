#pragma once

#include <string>
#include <string_view>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Events/QelAlertData.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

class QelVocMap;

/// A component of a server group failed.
struct QEL_EXPORT QelServerGroupAlertData : QelAlertData {
    static constexpr std::string_view subscriptionName = "server_group_alerts_subscription";

    int code = 0; ///< error code, defined by the subsystem
    std::string reason;
    std::string subsystem;

    void toInfo(QelInfo& info) const override;
    int addSubscriptionName(QelMessage& message) override;

    /// Compares environment and subsystem.
    [[nodiscard]] bool compareID(boost::shared_ptr<QelAlertData> other) const override;
    /// Compares code, reason and subsystem, not the colour.
    [[nodiscard]] bool compareData(boost::shared_ptr<QelAlertData> other) const override;
    /// Compares colour and subsystem.
    [[nodiscard]] bool operator==(const QelServerGroupAlertData& other) const;

    /// Constructible from vocabularies like the functors of the other alerts; it does not use them.
    struct Reader : QelRecordReader<QelServerGroupAlertData> {
        explicit Reader(const boost::shared_ptr<QelVocMap>& = {}) {}
    };
    struct Writer : QelRecordWriter<QelServerGroupAlertData> {
        explicit Writer(const boost::shared_ptr<QelVocMap>& = {}) {}
    };
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

QEL_EXPORT extern QelDerivedParserFactoryT<QelServerGroupAlertData, QelEventData> factoryQelServerGroupAlertData;

} // namespace Qel
