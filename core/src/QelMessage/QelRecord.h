#pragma once

#include <compare>
#include <concepts>

#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelWireLayout.h"

// Every record's header includes this file.  A record is a plain struct.  Its wire form is declared once, as the table
// Wire<Record> in its source file (see QelWireTable.h); Reader and Writer are derived from that table:
//
//     struct QEL_EXPORT QelUsageStats : QelRecord<QelUsageStats> {
//         long long total = 0; ///< bytes
//         long long free = 0;  ///< bytes
//
//         static const QelWireLayout& wire;
//     };
//
//     struct QEL_EXPORT QelNetNIC : QelRecord<QelNetNIC, QelNetDevice> { // adds fields to those of QelNetDevice
//         std::string text1836;
//
//         static const QelWireLayout& wire;
//     };
//
//     struct QelNetBridge : QelRecordAs<QelNetDevice, 299, 218> {}; // no additional fields, but another stamp
//
// A stamp is the namespace and complex type that a writer sets on the element of the record.
//
// The source file defines `wire` after the table:
//
//     const QelWireLayout& QelUsageStats::wire = wireLayoutOf<QelUsageStats>;

namespace Qel {

namespace Internal {

/// Hides the `wire` of a base class, so that a derived record without a table does not use the table of its base.
struct NoWire {};

template <class Object, class Record>
concept DerivedOnly = std::derived_from<Object, Record> && !std::same_as<Object, Record>;

/// The table of a record.
template <class Record> const QelWireLayout& layoutOf() {
    static_assert(std::same_as<decltype(Record::wire), const QelWireLayout&>,
                  "this record has no wire table: declare `static const QelWireLayout& wire;` in it, and define it in "
                  "its source file");
    return Record::wire;
}

} // namespace Internal

/// Reads a record from the current element.  Returns 0, or -1 when a required field is missing or a field is malformed;
/// fields read before the failure keep the values read.
template <class Record> struct QelRecordReader {
    int operator()(const QelMessageIterator& cursor, Record& record) const {
        return readByLayout(Internal::layoutOf<Record>(), &record, cursor);
    }

    template <Internal::DerivedOnly<Record> Derived> int operator()(const QelMessageIterator&, Derived&) const {
        static_assert(sizeof(Derived) == 0,
                      "this record would be read through its base's table and lose its own fields: "
                      "derive it from QelRecord<Record, Base>, or from QelRecordAs<Base, nsId, typeId>");
        return -1;
    }
};

/// Writes a record into the current element.  Returns 0, or -1 when a field could not be written.
template <class Record> struct QelRecordWriter : QelWriterBaseT<QelRecordWriter<Record>> {
    static int getNSID() { return Internal::layoutOf<Record>().nsId; }
    static int getTypeID() { return Internal::layoutOf<Record>().typeId; }

    int operator()(QelMessageIterator& cursor, const Record& record) const {
        return writeByLayout(Internal::layoutOf<Record>(), &record, cursor);
    }

    template <Internal::DerivedOnly<Record> Derived> int operator()(QelMessageIterator&, const Derived&) const {
        static_assert(sizeof(Derived) == 0,
                      "this record would be written through its base's table and lose its own fields: "
                      "derive it from QelRecord<Record, Base>, or from QelRecordAs<Base, nsId, typeId>");
        return -1;
    }
};

/// Base of a record with a wire table; `Base` is the record whose fields it extends.  A record may hide Reader or
/// Writer with hand-written functors.
template <class Self, class Base = void> struct QelRecord : Base {
    using Base::Base;
    QelRecord() = default;
    explicit QelRecord(const Base& base) : Base(base) {}

    using Reader = QelRecordReader<Self>;
    using Writer = QelRecordWriter<Self>;
    using reader_type = Reader;
    using writer_type = Writer;

    static constexpr Internal::NoWire wire{};

    /// For a defaulted operator== or <=> of the record.  Does not accept derived classes, so that a record without
    /// these operators does not become comparable through this base.
    template <std::same_as<QelRecord> Exact> friend constexpr bool operator==(const Exact& a, const Exact& b) {
        return static_cast<const Base&>(a) == static_cast<const Base&>(b);
    }
    template <std::same_as<QelRecord> Exact> friend constexpr auto operator<=>(const Exact& a, const Exact& b) {
        return static_cast<const Base&>(a) <=> static_cast<const Base&>(b);
    }
};

// A distinct empty base for each record: two subobjects of one class cannot have the same address, so with a common
// base a record whose first member is another record would be larger.
template <class Self> struct QelRecord<Self, void> {
    using Reader = QelRecordReader<Self>;
    using Writer = QelRecordWriter<Self>;
    using reader_type = Reader;
    using writer_type = Writer;

    static constexpr Internal::NoWire wire{};

    template <std::same_as<QelRecord> Exact> friend constexpr bool operator==(const Exact&, const Exact&) {
        return true;
    }
    template <std::same_as<QelRecord> Exact>
    friend constexpr std::strong_ordering operator<=>(const Exact&, const Exact&) {
        return std::strong_ordering::equal;
    }
};

/// Reads a derived record as its base, for a class that adds no fields.
template <class Base> struct QelReaderAs {
    int operator()(const QelMessageIterator& cursor, Base& record) const {
        return typename Base::reader_type()(cursor, record);
    }
};

/// Writes a derived record as its base, with the given namespace and complex type.
template <class Base, int nsID, int typeID> struct QelWriterAs : QelWriterBaseT<QelWriterAs<Base, nsID, typeID>> {
    static constexpr int getNSID() { return nsID; }
    static constexpr int getTypeID() { return typeID; }

    int operator()(QelMessageIterator& cursor, const Base& record) const {
        return typename Base::writer_type()(cursor, record);
    }
};

/// Base of a record that has the fields of `Base` but another namespace and complex type.
template <class Base, int nsID, int typeID> struct QelRecordAs : Base {
    using Base::Base;
    QelRecordAs() = default;
    explicit QelRecordAs(const Base& base) : Base(base) {}

    using Reader = QelReaderAs<Base>;
    using Writer = QelWriterAs<Base, nsID, typeID>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
