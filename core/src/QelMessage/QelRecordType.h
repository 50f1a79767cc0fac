#pragma once

#include <string_view>
#include <typeinfo>

#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelWireLayout.h"

namespace Qel {

/// Type-erased access to a record class for tools: find it by name, describe it, and read and write its records.
struct QelRecordType {
    /// The results of a record's Reader and Writer; `write` is 0 if the reading failed.
    struct Results {
        int read;
        int write;
    };

    std::string_view name;       ///< of the class; "Outer::Inner" if it is nested
    int nsId;                    ///< stamped by its writer; 0: none
    int typeId;                  ///< stamped by its writer; <= 100: none
    const QelWireLayout* layout; ///< its table; null if functions read and write it
    Results (*rewrite)(const QelMessageIterator& from, QelMessageIterator& to);
    const std::type_info* record = nullptr; ///< the class
    bool isWholeMessage = false;            ///< its functors start at the root of a message, not at an element
};

/// Makes the descriptor of a class.  `rewrite` reads the current element into a new object and writes that object, with
/// its stamp, into the current element of the other cursor.
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
