#pragma once

#include <set>

#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"

namespace Qel {

/// A set of environment identifiers that crosses the wire as a run of elements.
class QelEIDList : public std::set<QelEID, QelEnvIDComparator> {
public:
    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    using std::set<QelEID, QelEnvIDComparator>::set;
};

/// Adds the identifiers in the children 1866 of the current element.  No such child is no failure; -1 at the first one
/// that holds no identifier.
struct QelEIDList::Reader {
    int operator()(const QelMessageIterator& cursor, QelEIDList& list) const;
};

/// Appends each identifier as a child 1866 in namespace 292.
struct QelEIDList::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelEIDList& list) const;
};

} // namespace Qel
