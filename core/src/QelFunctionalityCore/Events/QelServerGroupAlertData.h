#pragma once

#include <string>
#include <string_view>

#include "QelFunctionalityCore/Events/QelAlertData.h"

namespace Qel {

class QelVocMap;

/// A server group has lost a part of what keeps it together.
struct QelServerGroupAlertData : QelAlertData {
    static constexpr std::string_view subscriptionName = "server_group_alerts_subscription";

    int code = 0; ///< of the failure, by the subsystem's own count
    std::string reason;
    std::string subsystem;

    void toInfo(QelInfo& info) const override;
    int addSubscriptionName(QelMessage& message) override;

    /// Of one environment and one subsystem.
    [[nodiscard]] bool compareID(boost::shared_ptr<QelAlertData> other) const override;
    /// Whether code, reason and subsystem are equal, whatever the colours are.
    [[nodiscard]] bool compareData(boost::shared_ptr<QelAlertData> other) const override;
    /// Of one colour and one subsystem.
    [[nodiscard]] bool operator==(const QelServerGroupAlertData& other) const;

    /// Made with the agent's vocabularies, as those of all alerts are; they play no part in this one.
    struct Reader : QelRecordReader<QelServerGroupAlertData> {
        explicit Reader(const boost::shared_ptr<QelVocMap>& = {}) {}
    };
    struct Writer : QelRecordWriter<QelServerGroupAlertData> {
        explicit Writer(const boost::shared_ptr<QelVocMap>& = {}) {}
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

extern QelDerivedParserFactoryT<QelServerGroupAlertData, QelEventData> factoryQelServerGroupAlertData;

} // namespace Qel
