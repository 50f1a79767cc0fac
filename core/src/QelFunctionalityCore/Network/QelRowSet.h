#pragma once

#include <limits>
#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A cell of a row set: either a string, stored in element `id` and base64-encoded if `encoded`, or nested cells.
///
/// The children of a cell with a string are neither read nor written.  A cell with neither is an empty element.
template <int id, bool encoded> struct QEL_EXPORT QelStringTree {
    std::string value;
    std::vector<QelStringTree> children; ///< only if `value` is empty

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    friend bool operator==(const QelStringTree& a, const QelStringTree& b) {
        return a.value == b.value && a.children == b.children;
    }
};

/// Reads the children if the string is missing or malformed.  Returns -1 if one of them is malformed.
template <int id, bool encoded> struct QEL_EXPORT QelStringTree<id, encoded>::Reader {
    int operator()(const QelMessageIterator& cursor, QelStringTree& cell) const;
};

template <int id, bool encoded> struct QEL_EXPORT QelStringTree<id, encoded>::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelStringTree& cell) const;
};

/// A page of a long list, as a table.
struct QEL_EXPORT QelRowSet : QelRecord<QelRowSet> {
    /// Value of an unknown number; not sent.
    static constexpr int unknown = std::numeric_limits<int>::max();

    using Column = QelStringTree<1026, false>;
    using Cell = QelStringTree<1018, true>;

    std::vector<Column> columns;         ///< names; the reader requires at least one
    std::vector<std::vector<Cell>> rows; ///< rows are not empty; the reader stops at the first malformed one
    int count = unknown;                 ///< `unknown` if the message has none
    int value1040 = unknown;             ///< `unknown` if the message has none

    static const QelWireLayout& wire;
};

extern template struct QelStringTree<1026, false>::Reader;
extern template struct QelStringTree<1026, false>::Writer;
extern template struct QelStringTree<1018, true>::Reader;
extern template struct QelStringTree<1018, true>::Writer;

} // namespace Qel
