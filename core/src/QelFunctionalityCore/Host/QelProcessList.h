#pragma once

#include <map>
#include <string>
#include <vector>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// A process, as one row of a table.  Only the values cross the wire with it: the names of the columns travel once,
/// with the list.  So the functors work on a list of names that whoever reads or writes the rows keeps from row to row.
struct QelProcessInfo {
    int pid = 0;
    std::map<std::string, std::string> params; ///< values by the name of their column

    /// Takes the names in their order.  -1 without a pid, or when there are more values than names.
    class Reader {
    public:
        /// Of a row without columns.
        Reader() = default;
        explicit Reader(const std::vector<std::string>& names) : m_names(&names) {}
        int operator()(const QelMessageIterator& cursor, QelProcessInfo& row) const;

    private:
        const std::vector<std::string>* m_names = nullptr;
    };

    /// Fills empty names with those of the row.  -1 when the row has other columns than the names, be it in number or
    /// in name.
    class Writer : public QelWriterBaseT<Writer> {
    public:
        /// Of a row whose columns nobody asks for.
        Writer() = default;
        explicit Writer(std::vector<std::string>& names) : m_names(&names) {}
        int operator()(QelMessageIterator& cursor, const QelProcessInfo& row) const;

    private:
        std::vector<std::string>* m_names = nullptr;
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The processes of a host.  The first row that has columns fixes them for all: the list can't be written when another
/// row's differ.  A list whose only column has an empty name reads back without columns, and so fails.
struct QelProcessList {
    std::vector<QelProcessInfo> rows;
    std::vector<std::string> paramNames; ///< the columns; set by reading, while writing takes those of the rows

    // How many processes are in which state.
    int running = 0;
    int sleeping = 0;
    int stopped = 0;
    int zombie = 0;
    int uninterruptible = 0;
    int idle = 0;
    int total = 0;

    using Reader = QelRecordReader<QelProcessList>;
    using Writer = QelRecordWriter<QelProcessList>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
