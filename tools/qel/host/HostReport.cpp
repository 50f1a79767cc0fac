#include "qel/host/HostReport.h"

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel::Tool {

namespace {

constexpr const char* systemElement = "system_info";
constexpr const char* loadElement = "load_averages";
constexpr const char* networkElement = "network";
constexpr const char* disksElement = "disks";
constexpr const char* processesElement = "processes";
constexpr const char* userElement = "user";
constexpr const char* groupElement = "group";

/// Calls `visit` with the element name and the member of each part of a report.
template <class Report, class Visit> void forEachPart(Report& report, const Visit& visit) {
    visit(systemElement, report.system);
    visit(loadElement, report.load);
    visit(networkElement, report.network);
    visit(disksElement, report.disks);
    visit(processesElement, report.processes);
    visit(userElement, report.users);
    visit(groupElement, report.groups);
}

class PartWriter {
public:
    PartWriter(QelMessageIterator& cursor, Problems& problems) : m_cursor(cursor), m_problems(problems) {}

    template <class Record> void operator()(const char* element, const std::optional<Record>& part) const {
        if (part)
            put(element, *part);
    }
    template <class Record> void operator()(const char* element, const std::vector<Record>& parts) const {
        for (const Record& part : parts)
            put(element, part);
    }

private:
    template <class Record> void put(const char* element, const Record& part) const {
        clearErrorMessage();
        m_cursor.newChild(std::string(element));
        if (m_cursor.putObj(part, getEmptyID()) == 0) {
            m_cursor.seekUp();
            return;
        }
        m_problems.push_back(getErrorMessage());
        m_cursor.deleteFromChild();
    }

    QelMessageIterator& m_cursor;
    Problems& m_problems;
};

class PartReader {
public:
    PartReader(const QelMessageIterator& cursor, Problems& problems) : m_cursor(cursor), m_problems(problems) {}

    template <class Record> void operator()(const char* element, std::optional<Record>& part) const {
        if (m_cursor.firstChild(std::string(element)) != 0)
            return;
        Record record;
        if (get(record))
            part = std::move(record);
        m_cursor.seekUp();
    }
    template <class Record> void operator()(const char* element, std::vector<Record>& parts) const {
        if (m_cursor.firstChild(std::string(element)) != 0)
            return;
        do {
            Record record;
            if (get(record))
                parts.push_back(std::move(record));
        } while (m_cursor.nextSibling(std::string(element)) == 0);
        m_cursor.seekUp();
    }

private:
    template <class Record> bool get(Record& record) const {
        clearErrorMessage();
        if (m_cursor.getObj(record, getEmptyID()) == 0)
            return true;
        m_problems.push_back(getErrorMessage().empty() ? m_cursor.curName() + " is malformed" : getErrorMessage());
        return false;
    }

    const QelMessageIterator& m_cursor;
    Problems& m_problems;
};

} // namespace

bool HostReport::isEmpty() const {
    return !system && !load && !network && !disks && !processes && users.empty() && groups.empty();
}

void writeReport(QelMessageIterator& cursor, const HostReport& report, Problems& problems) {
    forEachPart(report, PartWriter(cursor, problems));
}

HostReport readReport(const QelMessageIterator& cursor, Problems& problems) {
    HostReport report;
    forEachPart(report, PartReader(cursor, problems));
    return report;
}

} // namespace Qel::Tool
