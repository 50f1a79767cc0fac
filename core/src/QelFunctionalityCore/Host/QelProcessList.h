#pragma once

#include <map>
#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A process, as one row of a table.  A row contains only values; the column names are sent once, with the list.  The
/// functors therefore refer to a list of names that the caller keeps across rows.
struct QEL_EXPORT QelProcessInfo {
    int pid = 0;
    std::map<std::string, std::string> params; ///< column name to value

    /// Assigns the values to the column names in order.  -1 if there is no pid or there are more values than names.
    class Reader {
    public:
        /// Reads a row without columns.
        Reader() = default;
        explicit Reader(const std::vector<std::string>& names) : m_names(&names) {}
        int operator()(const QelMessageIterator& cursor, QelProcessInfo& row) const;

    private:
        const std::vector<std::string>* m_names = nullptr;
    };

    /// An empty list of names is filled with the columns of the row.  -1 if the number or the names of the columns
    /// differ from the list.
    class Writer : public QelWriterBaseT<Writer> {
    public:
        /// Writes a row and discards the column names.
        Writer() = default;
        explicit Writer(std::vector<std::string>& names) : m_names(&names) {}
        int operator()(QelMessageIterator& cursor, const QelProcessInfo& row) const;

    private:
        std::vector<std::string>* m_names = nullptr;
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The processes of a host.  The first row with columns determines the columns of the list; writing fails if those of
/// another row differ.  A list whose only column has an empty name can be written but not read back: on the wire it is
/// indistinguishable from a list without columns.
struct QEL_EXPORT QelProcessList : QelRecord<QelProcessList> {
    std::vector<QelProcessInfo> rows;
    std::vector<std::string>
        paramNames; ///< the columns; set by reading, ignored by writing, which takes them from the rows

    // Number of processes by state.
    int running = 0;
    int sleeping = 0;
    int stopped = 0;
    int zombie = 0;
    int uninterruptible = 0;
    int idle = 0;
    int total = 0;

    static const QelWireLayout& wire;
};

} // namespace Qel
