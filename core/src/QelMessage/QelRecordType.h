#pragma once

#include <string_view>
#include <typeinfo>

#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelWireLayout.h"

namespace Qel {

/// A record type as tools see it: found by its name, described, and read and written without knowing its class.
struct QelRecordType {
    /// What the two functors of a record answered; `write` is 0 if the reading failed.
    struct Results {
        int read;
        int write;
    };

    std::string_view name;       ///< of the class, "Outer::Inner" where nested
    int nsId;                    ///< that its writer stamps; 0 for none
    int typeId;                  ///< that its writer stamps; 100 and below for none
    const QelWireLayout* layout; ///< its table; null for a type that isn't told by one
    Results (*rewrite)(const QelMessageIterator& from, QelMessageIterator& to);
    const std::type_info* record = nullptr; ///< the class
    bool isWholeMessage = false;            ///< takes and fills a message from its root, and no element of it
};

/// Describes a record type.  `rewrite` reads the current element into a new object and writes that into the current
/// element of the other cursor, stamped.
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
