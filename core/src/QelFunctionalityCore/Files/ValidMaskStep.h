#pragma once

#include "QelMessage/QelMessageIterator.h"

// A table step that clears the validity mask of a record before its fields are read.  For source files only.

namespace Qel::Internal {

template <class Record> int clearValidMask(const QelMessageIterator&, Record& record) {
    record.validMask = 0;
    return 0;
}

template <class Record> int leaveValidMask(QelMessageIterator&, const Record&) {
    return 0;
}

} // namespace Qel::Internal
