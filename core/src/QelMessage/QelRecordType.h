#pragma once

#include <string_view>
#include <typeinfo>

#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelWireLayout.h"

namespace Qel {

/// Type-erased access to a record class for tools: find it by name, describe it, and read and write its records.
struct QelRecordType {
    /// The results of a record's Reader and Writer; `write` is 0 if `read` is a failure.
    struct Results {
        int read;
        int write;
    };

    std::string_view name;       ///< name of the class; "Outer::Inner" if it is nested
    int nsId;                    ///< namespace that its writer sets; 0: none
    int typeId;                  ///< complex type that its writer sets; <= 100: none
    const QelWireLayout* layout; ///< its wire table; null if its functors are hand-written
    Results (*rewrite)(const QelMessageIterator& from, QelMessageIterator& to);
    const std::type_info* record = nullptr; ///< the class
    bool isWholeMessage = false;            ///< its functors start at the root of a message, not at an element
};

/// Returns the descriptor of a class.  Its `rewrite` reads the current element of `from` into a new object and writes
/// that object, with namespace and complex type, into the current element of `to`.
template <class Record, class Reader = typename Record::reader_type, class Writer = typename Record::writer_type>
QelRecordType makeRecordType(std::string_view name, const QelWireLayout* layout = nullptr) {
    return {name,
            Writer::getNSID(),
            Writer::getTypeID(),
            layout,
            [](const QelMessageIterator& from, QelMessageIterator& to) -> QelRecordType::Results {
                Record record{};
                if (const int result = Reader()(from, record))
                    return {result, 0};
                return {0, to.putObject(record, Writer(), getEmptyID())};
            },
            &typeid(Record)};
}

} // namespace Qel
