#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Qel {

class QelMessageIterator;

/// What a missing or an unreadable element does to the reading of a record.
enum class QelWireRead : unsigned char {
    required, ///< either is a failure
    optional, ///< missing: the field stays as it was; unreadable: a failure
    ignored,  ///< either: the field stays as it was
};

/// When a field is written.
enum class QelWireWrite : unsigned char {
    always,
    ifSet, ///< a text or container that isn't empty, an optional that is specified, a number that isn't 0, or a test of
           ///< the field's own
};

/// How a value stands in its element.
enum class QelWireForm : unsigned char {
    plain,
    base64, ///< text only
    time,   ///< long only: seconds since the epoch
};

/// What kind of value a field holds.
enum class QelWireKind : unsigned char {
    text,
    integer,     ///< 32 bits
    longInteger, ///< 64 bits
    real,
    boolean,
    presence, ///< no value: the element's presence is the field
    bits,     ///< a bit mask: the presence of an empty element for each bit
    record,   ///< a record in an element of its own
    derived,  ///< a record of one of several classes, which the element's complex type tells
    base,     ///< a record at the same element
    group,    ///< further rows of the same record, in an element of their own
    sequence, ///< a run of items in order
    set,      ///< a run of items, sorted and without duplicates
    map,      ///< a run of entries
    step,     ///< written by hand
};

struct QelWireField;
struct QelWireLayout;

/// A bit of a mask, and the empty element whose presence tells it.
struct QelWireBit {
    unsigned bit;
    int id;
};

/// The classes of a family that elements of a field may hold, by the complex types that tell them.
struct QelWireClasses {
    std::vector<std::string> types; ///< as a cursor's curType() answers, in order
    std::string byDefault;          ///< the one that is read from an element of another type or of none; empty: none
};

/// How the values of one type cross the wire.  `id` 0 is the current element, as everywhere.
struct QelWireCodec {
    QelWireKind kind;
    std::string_view typeName; ///< of a record: its class
    bool isOptional;           ///< a property that may be unset
    const QelWireCodec* key;   ///< of a map: its keys'
    const QelWireCodec* item;  ///< of a container: its items', of a map its values', of a step what it amounts to
    const QelWireLayout* (*layout)(); ///< of a record with a table, or of a group
    int (*read)(const QelMessageIterator&, void* member, int id, const QelWireField&);
    int (*write)(QelMessageIterator&, const void* member, int id, const QelWireField&);
    bool (*isSet)(const void* member);     ///< what QelWireWrite::ifSet asks
    std::span<const QelWireBit> bits = {}; ///< of a bit mask: in writing order
    QelWireClasses (*classes)() = nullptr; ///< of a derived record
};

/// One row of a record's table.
struct QelWireField {
    std::string_view name; ///< of the member
    int id;                ///< element ID; 0 for what stands directly in the record's element
    int item, key, value;  ///< IDs of a container's item, and of the key and the value within; 0 if there is none
    QelWireRead read;
    QelWireWrite write;
    QelWireForm form;
    const QelWireCodec* codec;
    void* (*member)(void* record);
    bool (*test)(const void* member);          ///< in place of the codec's isSet, if not null
    bool ignoresWriteFailure = false;          ///< the record is written on when this field could not be
    bool needsItems = false;                   ///< of a container: one without any items is malformed
    bool keepsSet = false;                     ///< of a flag, a mask, an optional: reading clears nothing
    unsigned bit = 0;                          ///< of `mask`: whether the field is set; reading the field sets it
    unsigned* (*mask)(void* record) = nullptr; ///< the record's mask, if one of its bits stands for the field
    bool clearsFirst = false;                  ///< of a sequence: what was in it goes before it is read

    /// The same row, whose failure to be written is none of the record.
    [[nodiscard]] constexpr QelWireField unchecked() const {
        QelWireField row = *this;
        row.ignoresWriteFailure = true;
        return row;
    }

    /// The same row of a container in an element of its own, which no reader takes without any items.
    [[nodiscard]] constexpr QelWireField filled() const {
        QelWireField row = *this;
        row.needsItems = true;
        return row;
    }

    /// The same row of a flag, a bit mask or an optional, whose missing elements leave what is set.
    [[nodiscard]] constexpr QelWireField kept() const {
        QelWireField row = *this;
        row.keepsSet = true;
        return row;
    }

    /// The same row of a sequence, which reading replaces where others add to what is there.
    [[nodiscard]] constexpr QelWireField cleared() const {
        QelWireField row = *this;
        row.clearsFirst = true;
        return row;
    }

    /// The same row of a step, with the form of what it writes.
    [[nodiscard]] constexpr QelWireField as(QelWireForm stepForm) const {
        QelWireField row = *this;
        row.form = stepForm;
        return row;
    }

    /// The same row of a sequence or set, each of whose items holds its value in an element of its own.
    [[nodiscard]] constexpr QelWireField holding(int valueID) const {
        QelWireField row = *this;
        row.value = valueID;
        return row;
    }

    /// The ID that tells this row from the others.
    [[nodiscard]] constexpr int ownID() const { return id != 0 ? id : item; }
};

/// A record's table: what the engine works on and what tools can walk.
struct QelWireLayout {
    std::string_view typeName; ///< the record's class, without its namespace
    int nsId;
    int typeId;
    std::span<const QelWireField> fields;        ///< in writing order
    std::span<const unsigned char> readingOrder; ///< indices of `fields`
};

/// Reads a record from the current element by its table.  -1 at the first field that fails; then, unless a reader below
/// has told it already, the error message names the element.
[[nodiscard]] int readByLayout(const QelWireLayout& layout, void* record, const QelMessageIterator& cursor);

/// Writes a record into the current element by its table.  -1 at the first field that fails.
[[nodiscard]] int writeByLayout(const QelWireLayout& layout, const void* record, QelMessageIterator& cursor);

} // namespace Qel
