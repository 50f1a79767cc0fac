#include "QelFunctionalityCore/Monitoring/QelMonitorData.h"

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelMessage/QelCombinators.h"

namespace Qel {

namespace {

constexpr int valueElement = 1018;
constexpr int nameElement = 1026;
constexpr int intervalElement = 1086;
constexpr int subsystemElement = 1094;
constexpr int eidElement = 1866;
constexpr int instanceElement = 1905;
constexpr int counterElement = 1906;

/// Reads one report.  The first failure is reported through setErrorMessage and stops the iteration at every level; the
/// descent to the first counter still completes.
class ReportReader {
public:
    ReportReader(const QelMessageIterator& cursor, const QelVocMap* vocabulary, QelMonitorData& report)
        : m_cursor(cursor), m_vocabulary(vocabulary), m_report(report) {}

    int read() {
        check(m_cursor.getObj(m_report.eid, eidElement), "no readable identifier of the environment");
        check(m_cursor.getObj(m_report.interval, intervalElement), "no readable interval");
        forEachChild(subsystemElement, [&] {
            const std::string subsystem = readName("a subsystem");
            forEachChild(instanceElement, [&] {
                const std::string instance = readName("an instance");
                forEachChild(counterElement, [&] { return readCounter(subsystem, instance); });
                return true;
            });
            return true;
        });
        return m_result == 0 ? 0 : -1;
    }

private:
    void check(int result, const std::string& failure) {
        if (result == 0)
            return;
        if (m_result == 0)
            setErrorMessage("can't read QelMonitorData: %s", failure.c_str());
        m_result |= result;
    }

    /// `visit` returns whether to continue with the next sibling.
    template <class Visit> void forEachChild(int id, const Visit& visit) {
        if (m_cursor.firstChild(id) != 0)
            return;
        while (visit() && m_result == 0 && m_cursor.nextSibling(id) == 0) {
        }
        m_cursor.seekUp();
    }

    std::string readName(const char* owner) {
        std::string name;
        check(m_cursor.getValue(name, nameElement), std::string(owner) + " has no name");
        return name;
    }

    bool readCounter(const std::string& subsystem, const std::string& instance) {
        std::string counter;
        // A counter without a name ends its instance but not the report, which is still useful without it.
        if (m_cursor.getValue(counter, nameElement) != 0)
            return false;
        QelPerfStat& stat = m_report.data[subsystem][instance][counter];
        check(m_cursor.getObject(stat, QelPerfStat::Reader(valueTypeOf(counter)), valueElement),
              subsystem + " / " + instance + " / " + counter + " has no readable values");
        return true;
    }

    /// Cached: a counter occurs once per instance.
    int valueTypeOf(const std::string& counter) {
        const auto [known, isNew] = m_valueTypes.emplace(counter, 1);
        if (isNew && m_vocabulary)
            m_vocabulary->readValueType(counter, known->second);
        return known->second;
    }

    const QelMessageIterator& m_cursor;
    const QelVocMap* m_vocabulary;
    QelMonitorData& m_report;
    std::map<std::string, int> m_valueTypes;
    int m_result = 0;
};

auto namedMap(int element, const auto& valueWriter) {
    return QelWriterMap(element, QelWriterID(QelWriterString(), nameElement), valueWriter);
}

} // namespace

int QelMonitorData::Reader::operator()(const QelMessageIterator& cursor, QelMonitorData& report) const {
    return ReportReader(cursor, vocabulary.get(), report).read();
}

int QelMonitorData::Writer::operator()(QelMessageIterator& cursor, const QelMonitorData& report) const {
    const auto statWriter = QelWriterID(QelPerfStat::Writer(QelPerfStat::Writer::asStored), valueElement);
    const auto dataWriter = namedMap(subsystemElement, namedMap(instanceElement, namedMap(counterElement, statWriter)));
    int result = cursor.putObj(report.eid, eidElement);
    result |= cursor.putObj(report.interval, intervalElement);
    result |= dataWriter(cursor, report.data);
    return result;
}

} // namespace Qel
