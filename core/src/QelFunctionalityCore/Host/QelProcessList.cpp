#include "QelFunctionalityCore/Host/QelProcessList.h"

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

using Names = std::vector<std::string>;

/// Key reader that returns the names in order; -1 after the last one.
class ReaderParamKey {
public:
    explicit ReaderParamKey(const Names& names) : m_next(names.begin()), m_end(names.end()) {}

    int operator()(const QelMessageIterator&, std::string& key) const {
        if (m_next == m_end)
            return -1;
        key = *m_next++;
        return 0;
    }

private:
    mutable Names::const_iterator m_next;
    Names::const_iterator m_end;
};

/// Key writer that compares each key with the next name, or stores it there if that name is empty; -1 if they differ.
/// There must be as many names as keys.
class WriterParamKey : public QelWriterBase {
public:
    explicit WriterParamKey(Names& names) : m_next(names.begin()) {}

    int operator()(QelMessageIterator&, const std::string& key) const {
        std::string& name = *m_next++;
        if (name.empty())
            name = key;
        return name == key ? 0 : -1;
    }

private:
    mutable Names::iterator m_next;
};

} // namespace

int QelProcessInfo::Reader::operator()(const QelMessageIterator& cursor, QelProcessInfo& row) const {
    static const Names none;
    if (cursor.getValue(row.pid, "pid"_element) != 0)
        return -1;
    const auto readParams =
        QelReaderMap("cell"_element, QelReaderOptional, ReaderParamKey(m_names ? *m_names : none), QelReaderString());
    return readParams(cursor, row.params);
}

int QelProcessInfo::Writer::operator()(QelMessageIterator& cursor, const QelProcessInfo& row) const {
    Names own;
    Names& names = m_names ? *m_names : own;
    if (names.empty())
        names.resize(row.params.size());
    if (names.size() != row.params.size())
        return -1;
    if (cursor.putValue(row.pid, "pid"_element) != 0)
        return -1;
    const auto writeParams = QelWriterMap("cell"_element, WriterParamKey(names), QelWriterString());
    return writeParams(cursor, row.params) == 0 ? 0 : -1;
}

namespace {

int readRows(const QelMessageIterator& cursor, QelProcessList& list) {
    return QelReaderList(QelProcessInfo::Reader(list.paramNames), "process"_element, QelReaderOptional)(cursor,
                                                                                                        list.rows);
}

int writeRows(QelMessageIterator& cursor, const QelProcessList& list) {
    Names names;
    return QelWriterList(QelProcessInfo::Writer(names), "process"_element)(cursor, list.rows);
}

// Returns the names that QelProcessInfo::Writer would collect from these rows.  All rows must be writable.
Names namesOf(const std::vector<QelProcessInfo>& rows) {
    Names names;
    for (const QelProcessInfo& row : rows) {
        names.resize(row.params.size());
        auto name = names.begin();
        for (const auto& [key, value] : row.params) {
            if (name->empty())
                *name = key;
            ++name;
        }
    }
    return names;
}

// The element is required, so a list without columns contains one empty name.
int readNames(const QelMessageIterator& cursor, QelProcessList& list) {
    list.paramNames.clear();
    if (QelReaderList(QelReaderString(), "param_name"_element, QelReaderRequired)(cursor, list.paramNames) != 0)
        return -1;
    if (list.paramNames == Names{""})
        list.paramNames.clear();
    return 0;
}

int writeNames(QelMessageIterator& cursor, const QelProcessList& list) {
    Names names = namesOf(list.rows);
    if (names.empty())
        names.emplace_back();
    return QelWriterList(QelWriterString(), "param_name"_element)(cursor, names);
}

} // namespace

template <> struct Wire<QelProcessList> : WireWords<QelProcessList> {
    static constexpr QelWireField fields[] = {
        step<&readRows, &writeRows, std::vector<QelProcessInfo>>("rows", "process"_element, required),
        step<&readNames, &writeNames, Names>("paramNames", "param_name"_element, required),
        field<&R::running>(1035, ignored, always),
        field<&R::sleeping>(1036, ignored, always),
        field<&R::stopped>(1037, ignored, always),
        field<&R::zombie>(1038, ignored, always),
        field<&R::uninterruptible>(1039, ignored, always),
        field<&R::idle>(1046, ignored, always),
        field<&R::total>(1040, ignored, always),
    };
    static constexpr int readOrder[] = {1083, 1035, 1036, 1037, 1038, 1039, 1046, 1040, 1080};
};
const QelWireLayout& QelProcessList::wire = wireLayoutOf<QelProcessList>;

} // namespace Qel
