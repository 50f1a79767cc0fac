#pragma once

#include "QelMessage/QelMessageIterator.h"

// The step of a table at which a record forgets which fields were set before it was read.  For source files only.

namespace Qel::Internal {

template <class Record> int clearValidMask(const QelMessageIterator&, Record& record) {
    record.validMask = 0;
    return 0;
}

template <class Record> int leaveValidMask(QelMessageIterator&, const Record&) {
    return 0;
}

} // namespace Qel::Internal
