#pragma once

#include <concepts>

#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelWireLayout.h"

// What a record's header needs.  A record is a plain struct; how it stands on the wire is stated once, in the table
// Wire<Record> in its source file (see QelWireTable.h), and its Reader and Writer come out of that table:
//
//     struct QelEnvStatus {
//         int state = 1;
//         int transition = 0;
//
//         using Reader = QelRecordReader<QelEnvStatus>;
//         using Writer = QelRecordWriter<QelEnvStatus>;
//         using reader_type = Reader;
//         using writer_type = Writer;
//     };

namespace Qel {

/// The table of a record.  Defined in the record's source file, by the line that follows its Wire<Record>.
template <class Record> const QelWireLayout& qelWireLayout();

namespace Internal {

template <class Object, class Record>
concept DerivedOnly = std::derived_from<Object, Record> && !std::same_as<Object, Record>;

} // namespace Internal

/// Reads a record from the current element: 0, or -1 when a field that must be there is missing or unreadable.  Fields
/// read before a failure stay read.
template <class Record> struct QelRecordReader {
    int operator()(const QelMessageIterator& cursor, Record& record) const {
        return readByLayout(qelWireLayout<Record>(), &record, cursor);
    }

    template <Internal::DerivedOnly<Record> Derived> int operator()(const QelMessageIterator&, Derived&) const {
        static_assert(sizeof(Derived) == 0,
                      "this record would be read through its base's table and lose its own fields: "
                      "give it a Reader and a Writer, or say QelReaderAs<Base>");
        return -1;
    }
};

/// Writes a record into the current element: 0, or -1 when a field could not be written.
template <class Record> struct QelRecordWriter : QelWriterBaseT<QelRecordWriter<Record>> {
    static int getNSID() { return qelWireLayout<Record>().nsId; }
    static int getTypeID() { return qelWireLayout<Record>().typeId; }

    int operator()(QelMessageIterator& cursor, const Record& record) const {
        return writeByLayout(qelWireLayout<Record>(), &record, cursor);
    }

    template <Internal::DerivedOnly<Record> Derived> int operator()(QelMessageIterator&, const Derived&) const {
        static_assert(sizeof(Derived) == 0, "this record would be written through its base's table and lose its own "
                                            "fields: give it a Reader and a Writer, or say QelWriterAs<Base>");
        return -1;
    }
};

/// Reads a derived record as its base, for a class that adds nothing to the base's fields.
template <class Base> struct QelReaderAs {
    int operator()(const QelMessageIterator& cursor, Base& record) const {
        return typename Base::reader_type()(cursor, record);
    }
};

/// Writes a derived record as its base, stamped with the given namespace and type.
template <class Base, int nsID, int typeID> struct QelWriterAs : QelWriterBaseT<QelWriterAs<Base, nsID, typeID>> {
    static constexpr int getNSID() { return nsID; }
    static constexpr int getTypeID() { return typeID; }

    int operator()(QelMessageIterator& cursor, const Base& record) const {
        return typename Base::writer_type()(cursor, record);
    }
};

} // namespace Qel
