#pragma once

#include <set>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"

namespace Qel {

/// A set of environment identifiers.  Its wire form is a sequence of sibling elements.
class QelEIDList : public std::set<QelEID, QelEnvIDComparator> {
public:
    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    using std::set<QelEID, QelEnvIDComparator>::set;
};

/// Inserts the identifiers from the children 1866 of the current element.  There may be none.  Stops with -1 at the
/// first child that does not contain an identifier.
struct QEL_EXPORT QelEIDList::Reader {
    int operator()(const QelMessageIterator& cursor, QelEIDList& list) const;
};

/// Appends each identifier as a child 1866 in namespace 292.
struct QEL_EXPORT QelEIDList::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelEIDList& list) const;
};

} // namespace Qel
