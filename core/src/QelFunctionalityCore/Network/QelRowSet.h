#pragma once

#include <limits>
#include <string>
#include <vector>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// A cell of a row set: a text, or further cells.  The text stands in element `id`, in base64 if `encoded`.
///
/// A cell with a text is read and written without its children, and one that has neither leaves an empty element.
template <int id, bool encoded> struct QelStringTree {
    std::string value;
    std::vector<QelStringTree> children; ///< only where `value` is empty

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    friend bool operator==(const QelStringTree& a, const QelStringTree& b) {
        return a.value == b.value && a.children == b.children;
    }
};

/// A missing or unreadable value leads to the children.  -1 if one of them is unreadable.
template <int id, bool encoded> struct QelStringTree<id, encoded>::Reader {
    int operator()(const QelMessageIterator& cursor, QelStringTree& cell) const;
};

template <int id, bool encoded> struct QelStringTree<id, encoded>::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelStringTree& cell) const;
};

/// A page of a long list, as a table.
struct QelRowSet {
    /// The number that isn't known; it doesn't cross the wire.
    static constexpr int unknown = std::numeric_limits<int>::max();

    using Column = QelStringTree<1026, false>;
    using Cell = QelStringTree<1018, true>;

    std::vector<Column> columns;         ///< names; the reader wants at least one
    std::vector<std::vector<Cell>> rows; ///< no row is empty; reading ends at the first that can't be read
    int count = unknown;                 ///< `unknown` if the message doesn't tell it
    int value1040 = unknown;             ///< the same

    using Reader = QelRecordReader<QelRowSet>;
    using Writer = QelRecordWriter<QelRowSet>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template struct QelStringTree<1026, false>::Reader;
extern template struct QelStringTree<1026, false>::Writer;
extern template struct QelStringTree<1018, true>::Reader;
extern template struct QelStringTree<1018, true>::Writer;

} // namespace Qel
