#pragma once

#include <string>
#include <string_view>

#include "QelFunctionalityCore/Events/QelAlertData.h"
#include "QelFunctionalityCore/Monitoring/QelPerfStat.h"
#include "QelFunctionalityCore/Values/QelProperty.h"

namespace Qel {

class QelVocMap;

/// A counter of an environment has passed one of its limits.  Its three values are all integers or all doubles.
struct QelResourceAlertData : QelAlertData {
    static constexpr std::string_view subscriptionName = "resource_alerts_subscription";
    /// An instance that stands for each of them.
    static constexpr std::string_view anyInstance = "ANY_INSTANCE";

    std::string subsystem;
    QelOptionalProperty<std::string> instance; ///< of the subsystem, where it has several: a disk, an interface
    std::string id;                            ///< of the counter, as the vocabularies have it
    bool isInteger = true;                     ///< which member of the values holds; it isn't sent
    QelPerfValue current;
    QelPerfValue hard;
    QelOptionalProperty<QelPerfValue> soft;

    /// The values are told as integers, whatever they are: a double shows as its bits.
    void toInfo(QelInfo& info) const override;
    int addSubscriptionName(QelMessage& message) override;

    /// Of one environment, subsystem, counter and instance.
    [[nodiscard]] bool compareID(boost::shared_ptr<QelAlertData> other) const override;
    /// Of one colour, subsystem, counter and instance.
    [[nodiscard]] bool operator==(const QelResourceAlertData& other) const;

    /// The vocabularies tell how the values of the counter travel; where they don't, or there are none, `isInteger`
    /// does.  The reader keeps in it what it went by.  Each value counts: without the current one or the hard limit an
    /// alert isn't read, but what there is of them is.
    class Reader {
    public:
        explicit Reader(boost::shared_ptr<QelVocMap> vocabularies = {}) : m_vocabularies(std::move(vocabularies)) {}
        int operator()(const QelMessageIterator& cursor, QelResourceAlertData& alert) const;

    private:
        boost::shared_ptr<QelVocMap> m_vocabularies;
    };
    class Writer : public QelRecordWriter<QelResourceAlertData> {
    public:
        explicit Writer(boost::shared_ptr<QelVocMap> vocabularies = {}) : m_vocabularies(std::move(vocabularies)) {}
        int operator()(QelMessageIterator& cursor, const QelResourceAlertData& alert) const;

    private:
        boost::shared_ptr<QelVocMap> m_vocabularies;
    };
    using reader_type = Reader;
    using writer_type = Writer;

private:
    [[nodiscard]] bool isSameInstance(const QelResourceAlertData& other) const;
};

extern QelDerivedParserFactoryT<QelResourceAlertData, QelEventData> factoryQelResourceAlertData;

} // namespace Qel
