#include "QelFunctionalityCore/Monitoring/QelMonitorData.h"

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"

namespace Qel {

namespace {

/// Reads one report.  The first failure is reported through setErrorMessage and stops the iteration at every level; the
/// descent to the first counter still completes.
class ReportReader {
public:
    ReportReader(const QelMessageIterator& cursor, const QelVocMap* vocabulary, QelMonitorData& report)
        : m_cursor(cursor), m_vocabulary(vocabulary), m_report(report) {}

    int read() {
        check(m_cursor.getObj(m_report.eid, "eid"_element), "no readable identifier of the environment");
        check(m_cursor.getObj(m_report.interval, "interval"_element), "no readable interval");
        forEachChild("subsystem"_element, [&] {
            const std::string subsystem = readName("a subsystem");
            forEachChild("instance"_element, [&] {
                const std::string instance = readName("an instance");
                forEachChild("counter"_element, [&] { return readCounter(subsystem, instance); });
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
            setErrorMessage("cannot read QelMonitorData: %s", failure.c_str());
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
        check(m_cursor.getValue(name, "name"_element), std::string(owner) + " has no name");
        return name;
    }

    bool readCounter(const std::string& subsystem, const std::string& instance) {
        std::string counter;
        // A counter without a name ends its instance but not the report, which is still useful without it.
        if (m_cursor.getValue(counter, "name"_element) != 0)
            return false;
        QelPerfStat& stat = m_report.data[subsystem][instance][counter];
        check(m_cursor.getObject(stat, QelPerfStat::Reader(valueTypeOf(counter)), "value"_element),
              subsystem + " / " + instance + " / " + counter + " has no readable values");
        return true;
    }

    /// Cached, because the same counter occurs in every instance.
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
    return QelWriterMap(element, QelWriterID(QelWriterString(), "name"_element), valueWriter);
}

} // namespace

int QelMonitorData::Reader::operator()(const QelMessageIterator& cursor, QelMonitorData& report) const {
    return ReportReader(cursor, vocabulary.get(), report).read();
}

int QelMonitorData::Writer::operator()(QelMessageIterator& cursor, const QelMonitorData& report) const {
    const auto statWriter = QelWriterID(QelPerfStat::Writer(QelPerfStat::Writer::asStored), "value"_element);
    const auto dataWriter =
        namedMap("subsystem"_element, namedMap("instance"_element, namedMap("counter"_element, statWriter)));
    int result = cursor.putObj(report.eid, "eid"_element);
    result |= cursor.putObj(report.interval, "interval"_element);
    result |= dataWriter(cursor, report.data);
    return result;
}

} // namespace Qel
