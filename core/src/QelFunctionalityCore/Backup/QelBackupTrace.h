#pragma once

#include <concepts>

#include "QelMessage/QelRecord.h"

// The functors of the backup service's records follow its requests through the log: each call opens with a record
// "Calling [signature]" at LogLevel::trace.  A record that takes part says so, for itself and those derived from it:
//
//     struct QelBackup {
//         using traced_in_log = void;
//         ...
//     };
//
// Functors that such a record writes by hand call traceBackupCall() themselves.

namespace Qel {

/// Logs the entry of a functor, whose `__PRETTY_FUNCTION__` is given.
void traceBackupCall(const char* signature);

namespace Internal {

template <class Record>
concept TracedRecord = requires {
    typename Record::traced_in_log;
};

} // namespace Internal

// Like their primary templates, these take no object of a derived class, which would lose its own fields.

template <Internal::TracedRecord Record> struct QelRecordReader<Record> {
    template <std::same_as<Record> Exact> int operator()(const QelMessageIterator& cursor, Exact& record) const {
        traceBackupCall(__PRETTY_FUNCTION__);
        return readByLayout(qelWireLayout<Record>(), &record, cursor);
    }
};

template <Internal::TracedRecord Record> struct QelRecordWriter<Record> : QelWriterBaseT<QelRecordWriter<Record>> {
    static int getNSID() { return qelWireLayout<Record>().nsId; }
    static int getTypeID() { return qelWireLayout<Record>().typeId; }

    template <std::same_as<Record> Exact> int operator()(QelMessageIterator& cursor, const Exact& record) const {
        traceBackupCall(__PRETTY_FUNCTION__);
        return writeByLayout(qelWireLayout<Record>(), &record, cursor);
    }
};

} // namespace Qel
