#pragma once

#include <concepts>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

// The functors of the backup service's records log each call: "Calling [signature]" at LogLevel::trace.  A record opts
// in, for itself and for classes derived from it, with a member type:
//
//     struct QelBackup {
//         using traced_in_log = void;
//         ...
//     };
//
// Hand-written functors of such a record call traceBackupCall() themselves.

namespace Qel {

/// Logs the call of a functor; `signature` is its `__PRETTY_FUNCTION__`.
QEL_EXPORT void traceBackupCall(const char* signature);

namespace Internal {

template <class Record>
concept TracedRecord = requires {
    typename Record::traced_in_log;
};

} // namespace Internal

// Like the primary templates, these reject objects of derived classes: the fields of the derived class would be lost.

template <Internal::TracedRecord Record> struct QelRecordReader<Record> {
    template <std::same_as<Record> Exact> int operator()(const QelMessageIterator& cursor, Exact& record) const {
        traceBackupCall(__PRETTY_FUNCTION__);
        return readByLayout(Internal::layoutOf<Record>(), &record, cursor);
    }
};

template <Internal::TracedRecord Record> struct QelRecordWriter<Record> : QelWriterBaseT<QelRecordWriter<Record>> {
    static int getNSID() { return Internal::layoutOf<Record>().nsId; }
    static int getTypeID() { return Internal::layoutOf<Record>().typeId; }

    template <std::same_as<Record> Exact> int operator()(QelMessageIterator& cursor, const Exact& record) const {
        traceBackupCall(__PRETTY_FUNCTION__);
        return writeByLayout(Internal::layoutOf<Record>(), &record, cursor);
    }
};

} // namespace Qel
