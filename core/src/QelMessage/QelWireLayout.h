#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "QelCommon/Export.h"

namespace Qel {

class QelMessageIterator;

/// The effect of a missing or malformed element on reading a record.
enum class QelWireRead : unsigned char {
    required, ///< missing or malformed: fails the record
    optional, ///< missing: the field is unchanged; malformed: fails the record
    ignored,  ///< missing or malformed: the field is unchanged
};

/// When a field is written.
enum class QelWireWrite : unsigned char {
    always,
    ifSet, ///< if a string or container is not empty, an optional is specified, a number is not 0, or the field's test
           ///< (fieldIf<>) is true
};

/// How an element encodes its value.
enum class QelWireForm : unsigned char {
    plain,
    base64, ///< strings only
    time,   ///< long only: seconds since the epoch
};

/// The kind of a field's value.
enum class QelWireKind : unsigned char {
    text,
    integer,     ///< 32 bits
    longInteger, ///< 64 bits
    real,
    boolean,
    presence, ///< no value: the element's presence is the field
    bits,     ///< a bit mask: an empty element for each bit that is set
    record,   ///< a record in a separate element
    derived,  ///< a record of one of several classes, selected by the element's complex type
    base,     ///< a record at the same element
    group,    ///< further rows of the same record, nested in an element
    sequence, ///< items in order
    set,      ///< items, sorted and without duplicates
    map,      ///< entries of key and value
    step,     ///< read and written by functions of the record
};

struct QelWireField;
struct QelWireLayout;

/// A bit of a mask, and the empty element whose presence encodes it.
struct QelWireBit {
    unsigned bit;
    int id;
};

/// The record classes that an element of a field may contain.
struct QelWireClasses {
    std::vector<std::string> types; ///< their complex types, in the form that curType() returns, sorted
    std::string byDefault;          ///< type of the class for an element of any other or no type; empty: rejected
};

/// Reads and writes the values of one C++ type.  An `id` of 0 is the current element.
struct QelWireCodec {
    QelWireKind kind{};
    std::string_view typeName{};                ///< class of a record
    bool isOptional = false;                    ///< a property that may be unset
    const QelWireCodec* key = nullptr;          ///< map: codec of the keys
    const QelWireCodec* item = nullptr;         ///< codec of a container's items, a map's values or a step's content
    const QelWireLayout* (*layout)() = nullptr; ///< record with a table, group: the table
    int (*read)(const QelMessageIterator&, void* member, int id, const QelWireField&) = nullptr;
    int (*write)(QelMessageIterator&, const void* member, int id, const QelWireField&) = nullptr;
    bool (*isSet)(const void* member) = nullptr; ///< the test of QelWireWrite::ifSet
    std::span<const QelWireBit> bits{};          ///< bit mask: its bits in writing order
    QelWireClasses (*classes)() = nullptr;       ///< derived record: its possible classes
};

/// One row of a record's table.
struct QelWireField {
    std::string_view name{}; ///< name of the member
    int id = 0;              ///< element ID; 0 for content directly in the record's element
    int item = 0;            ///< element ID of a container's items; 0 if there is none
    int key = 0;             ///< element ID of the key in a map's entry
    int value = 0;           ///< element ID of the value in an item or entry; 0 for the item itself
    QelWireRead read{};
    QelWireWrite write{};
    QelWireForm form{};
    const QelWireCodec* codec = nullptr;
    void* (*member)(void* record) = nullptr;
    bool (*writtenIf)(const void* member) = nullptr; ///< replaces the codec's isSet
    bool isBestEffort = false;
    bool isNonEmpty = false;
    bool isKept = false;
    bool isCleared = false;
    unsigned bit = 0;                          ///< bit of `mask` that indicates a set field; set by reading the field
    unsigned* (*mask)(void* record) = nullptr; ///< the record's mask; null if the field has no bit in one

    /// A failure to write this field is ignored.
    [[nodiscard]] constexpr QelWireField bestEffort() const {
        QelWireField row = *this;
        row.isBestEffort = true;
        return row;
    }

    /// Rejects the container's element as malformed if it contains no items.
    [[nodiscard]] constexpr QelWireField nonEmpty() const {
        QelWireField row = *this;
        row.isNonEmpty = true;
        return row;
    }

    /// Keeps the value of a flag, a bit mask or an optional if its elements are missing, instead of clearing it.
    [[nodiscard]] constexpr QelWireField kept() const {
        QelWireField row = *this;
        row.isKept = true;
        return row;
    }

    /// Clears a sequence before reading, instead of appending to it.
    [[nodiscard]] constexpr QelWireField cleared() const {
        QelWireField row = *this;
        row.isCleared = true;
        return row;
    }

    /// Sets the form of a step's content.
    [[nodiscard]] constexpr QelWireField withForm(QelWireForm stepForm) const {
        QelWireField row = *this;
        row.form = stepForm;
        return row;
    }

    /// Nests the value of each item of a sequence or set in an element `valueID`.
    [[nodiscard]] constexpr QelWireField withValue(int valueID) const {
        QelWireField row = *this;
        row.value = valueID;
        return row;
    }

    /// The ID that distinguishes this row from the others of its table.
    [[nodiscard]] constexpr int ownID() const { return id != 0 ? id : item; }
};

/// A record's table: the input of readByLayout() and writeByLayout(), and of tools that describe records.
struct QelWireLayout {
    std::string_view typeName; ///< the record's class, without its namespace
    int nsId;
    int typeId;
    std::span<const QelWireField> fields;        ///< in writing order
    std::span<const unsigned char> readingOrder; ///< indices of `fields`
    bool isBestEffort = false;                   ///< ignores a failure to write any of the fields
};

/// Reads a record from the current element by its table.  Returns -1 at the first field that fails, and names its
/// element in the error message, unless a nested reader has already done so.
QEL_EXPORT [[nodiscard]] int readByLayout(const QelWireLayout& layout, void* record, const QelMessageIterator& cursor);

/// Writes a record into the current element by its table.  Returns -1 at the first field that fails.
QEL_EXPORT [[nodiscard]] int writeByLayout(const QelWireLayout& layout, const void* record, QelMessageIterator& cursor);

} // namespace Qel
