#pragma once

#include <string>
#include <string_view>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Events/QelAlertData.h"
#include "QelFunctionalityCore/Monitoring/QelPerfStat.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

class QelVocMap;

/// A counter of an environment exceeded one of its limits.  Its three values are all integers or all doubles.
struct QEL_EXPORT QelResourceAlertData : QelAlertData {
    static constexpr std::string_view subscriptionName = "resource_alerts_subscription";
    /// Instance name that matches every instance.
    static constexpr std::string_view anyInstance = "ANY_INSTANCE";

    std::string subsystem;
    QelOptionalProperty<std::string> instance; ///< of the subsystem, if it has several: a disk, an interface
    std::string id;                            ///< of the counter, as defined in the vocabularies
    bool isInteger = true;                     ///< active member of the values; not sent
    QelPerfValue current;
    QelPerfValue hard;
    QelOptionalProperty<QelPerfValue> soft;

    /// The values are formatted as integers in either case: a double appears as its bit pattern.
    void toInfo(QelInfo& info) const override;
    int addSubscriptionName(QelMessage& message) override;

    /// Compares environment, subsystem, counter and instance.
    [[nodiscard]] bool compareID(boost::shared_ptr<QelAlertData> other) const override;
    /// Compares colour, subsystem, counter and instance.
    [[nodiscard]] bool operator==(const QelResourceAlertData& other) const;

    /// The vocabularies determine the wire form of a counter's values.  For an unknown counter, or without
    /// vocabularies, `isInteger` does.  The reader stores the form that it used in `isInteger`.  It fails if the
    /// current value or the hard limit is missing, after reading the values that are present.
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

    static const QelWireLayout& wire;

private:
    [[nodiscard]] bool isSameInstance(const QelResourceAlertData& other) const;
};

QEL_EXPORT extern QelDerivedParserFactoryT<QelResourceAlertData, QelEventData> factoryQelResourceAlertData;

} // namespace Qel
