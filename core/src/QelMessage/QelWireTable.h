#pragma once

#include <array>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "QelCommon/Export.h"
#include "QelMessage/QelWireValue.h"

// Declares the wire form of a record.  Only the source file of a record includes this header:
//
//     template <> struct Wire<QelOS> : WireWords<QelOS> {
//         static constexpr int nsId = 292, typeId = 117;
//         static constexpr QelWireField fields[] = {        // in writing order
//             field<&R::osKind>(1846, optional, ifSet),
//             field<&R::osName>(1026, required, always),
//         };
//         static constexpr int readOrder[] = {1026, 1846};  // only if the reading order differs
//     };
//     const QelWireLayout& QelOS::wire = wireLayoutOf<QelOS>;
//
// `R` is the record.  nsId and typeId are its stamp: the namespace and complex type of its element.  A record without a
// stamp omits them; a record without fields omits `fields`.

namespace Qel {

/// The table of a record, specialised once for each record.
template <class Record> struct Wire;

namespace Internal {

template <auto member> consteval std::string_view memberName() {
    std::string_view name = __PRETTY_FUNCTION__;
    name = name.substr(name.find("member = ") + 9);
    name = name.substr(0, name.find_first_of(";]"));
    name = name.substr(name.rfind(':') + 1);
    return name.substr(0, name.find(')'));
}

template <class Member, auto predicate> bool testMember(const void* member) {
    return predicate(*static_cast<const Member*>(member));
}

template <class T, auto predicate> struct WireValidatedValue : QelWireValue<T> {
    static int read(const QelMessageIterator& cursor, T& value, int id, const QelWireField& field) {
        T taken{};
        if (QelWireValue<T>::read(cursor, taken, id, field) != 0 || !predicate(taken))
            return -1;
        value = std::move(taken);
        return 0;
    }
};

/// Whether a bool, or an optional wrapper of one, is set and true.
template <class Flag> bool isRaised(const void* member) {
    const Flag& flag = *static_cast<const Flag*>(member);
    if constexpr (std::is_same_v<Flag, bool>)
        return flag;
    else
        return QelWireValue<Flag>::isSet(flag) && flag.get();
}

template <class Flag>
inline constexpr QelWireCodec presenceCodec{
    .kind = QelWireKind::presence,
    .isOptional = !std::is_same_v<Flag, bool>,
    .read =
        [](const QelMessageIterator& cursor, void* member, int id, const QelWireField& field) {
            *static_cast<Flag*>(member) = cursor.seekPresence(id) == 0 || (field.isKept && isRaised<Flag>(member));
            return 0;
        },
    .write = [](QelMessageIterator& cursor, const void*, int id, const QelWireField&) { return cursor.putChild(id); },
    .isSet = &isRaised<Flag>,
};

template <QelWireBit... bits> inline constexpr QelWireBit wireBits[] = {bits...};

/// A mask in child `id`, or in the current element if `id` is 0.
template <class Mask, QelWireBit... bits>
inline constexpr QelWireCodec bitsCodec{
    .kind = QelWireKind::bits,
    .read =
        [](const QelMessageIterator& cursor, void* member, int id, const QelWireField& field) {
            Mask& mask = *static_cast<Mask*>(member);
            unsigned found = field.isKept ? static_cast<unsigned>(mask) : 0;
            if (id == 0 || cursor.seek(id) == 0) {
                for (const QelWireBit& each : wireBits<bits...>)
                    found |= cursor.seekPresence(each.id) == 0 ? each.bit : 0;
                if (id != 0)
                    cursor.seekUp();
            }
            mask = static_cast<Mask>(found);
            return 0;
        },
    .write =
        [](QelMessageIterator& cursor, const void* member, int id, const QelWireField&) {
            const auto mask = static_cast<unsigned>(*static_cast<const Mask*>(member));
            if (id != 0)
                cursor.newChild(id);
            for (const QelWireBit& each : wireBits<bits...>)
                if ((mask & each.bit) != 0)
                    cursor.putChild(each.id);
            if (id != 0)
                cursor.seekUp();
            return 0;
        },
    .isSet = [](const void* member) { return *static_cast<const Mask*>(member) != 0; },
    .bits = wireBits<bits...>,
};

template <class Base> const QelWireLayout* layoutOfBase() {
    if constexpr (WireRecordWithTable<Base>)
        return &layoutOf<Base>();
    else
        return nullptr;
}

/// Calls the functors of a base directly, so that they neither set the namespace and type of the element again nor
/// clear the saved namespace.
template <class Base>
inline constexpr QelWireCodec baseCodec{
    .kind = QelWireKind::base,
    .typeName = typeName<Base>(),
    .layout = &layoutOfBase<Base>,
    .read = [](const QelMessageIterator& cursor, void* base, int,
               const QelWireField&) { return typename Base::reader_type()(cursor, *static_cast<Base*>(base)); },
    .write = [](QelMessageIterator& cursor, const void* base, int,
                const QelWireField&) { return typename Base::writer_type()(cursor, *static_cast<const Base*>(base)); },
    .isSet = [](const void*) { return true; },
};

consteval bool haveDistinctIDs(std::span<const QelWireField> fields) {
    for (std::size_t i = 0; i < fields.size(); ++i)
        for (std::size_t j = i + 1; j < fields.size(); ++j)
            if (fields[i].ownID() == fields[j].ownID())
                return false;
    return true;
}

template <std::size_t count> consteval auto ascending() {
    std::array<unsigned char, count> indices{};
    for (std::size_t i = 0; i < count; ++i)
        indices[i] = static_cast<unsigned char>(i);
    return indices;
}

// A member, because g++ 12 exports the instances of a variable template whose type belongs to namespace std.
template <std::size_t count> struct WritingOrder { static constexpr auto indices = ascending<count>(); };

/// The rows of a group as a table; the reading order is the writing order.
template <class Record, const auto& rows, int nsID>
inline constexpr QelWireLayout groupLayout{.typeName = typeName<Record>(),
                                           .nsId = nsID,
                                           .typeId = 50,
                                           .fields = rows,
                                           .readingOrder = WritingOrder<std::size(rows)>::indices};

template <class Record, const auto& rows, int nsID>
inline constexpr QelWireCodec groupCodec{
    .kind = QelWireKind::group,
    .layout = [] { return &groupLayout<Record, rows, nsID>; },
    .read =
        [](const QelMessageIterator& cursor, void* record, int id, const QelWireField&) {
            if (cursor.seek(id) != 0)
                return -1;
            const int result = readByLayout(groupLayout<Record, rows, nsID>, record, cursor);
            cursor.seekUp();
            return result;
        },
    .write =
        [](QelMessageIterator& cursor, const void* record, int id, const QelWireField&) {
            cursor.newChild(id);
            if (nsID != 0)
                cursor.setNamespace(nsID);
            const int result = writeByLayout(groupLayout<Record, rows, nsID>, record, cursor);
            cursor.seekUp();
            return result;
        },
    .isSet = [](const void*) { return true; },
};

template <class Value> constexpr const QelWireCodec* contentOf() {
    if constexpr (std::is_void_v<Value>)
        return nullptr;
    else
        return &qelWireCodec<Value>;
}

template <class Record, auto readStep, auto writeStep, class Value>
inline constexpr QelWireCodec stepCodec{
    .kind = QelWireKind::step,
    .item = contentOf<Value>(),
    .read = [](const QelMessageIterator& cursor, void* record, int,
               const QelWireField&) { return readStep(cursor, *static_cast<Record*>(record)); },
    .write = [](QelMessageIterator& cursor, const void* record, int,
                const QelWireField&) { return writeStep(cursor, *static_cast<const Record*>(record)); },
    .isSet = [](const void*) { return true; },
};

} // namespace Internal

/// Base of a table: short names for the enumerators, and functions that create its rows.
template <class Record> struct WireWords {
    using R = Record;

    static constexpr QelWireRead required = QelWireRead::required;
    static constexpr QelWireRead optional = QelWireRead::optional;
    static constexpr QelWireRead ignored = QelWireRead::ignored;
    static constexpr QelWireWrite always = QelWireWrite::always;
    static constexpr QelWireWrite ifSet = QelWireWrite::ifSet;
    static constexpr QelWireForm plain = QelWireForm::plain;
    static constexpr QelWireForm base64 = QelWireForm::base64;
    static constexpr QelWireForm time = QelWireForm::time;

    // Defaults, which a table may hide.

    /// The name under which tools show the table.
    static constexpr std::string_view typeName = Internal::typeName<Record>();
    static constexpr int nsId = 0, typeId = 50;
    static constexpr std::span<const QelWireField> fields{};
    static constexpr std::span<const int> readOrder{};
    /// Whether failures to write its fields are ignored.
    static constexpr bool bestEffort = false;

    /// A value or record in element `id`.
    template <auto member>
    static constexpr QelWireField field(int id, QelWireRead read, QelWireWrite write, QelWireForm form = plain) {
        return row<member>(id, 0, read, write, form, &qelWireCodec<Member<member>>);
    }
    /// A value or record in element `id`, written only if `predicate(value)` is true.
    template <auto member, auto predicate>
    static constexpr QelWireField fieldIf(int id, QelWireRead read, QelWireForm form = plain) {
        QelWireField made = field<member>(id, read, ifSet, form);
        made.writtenIf = &Internal::testMember<Member<member>, predicate>;
        return made;
    }
    /// A value in element `id`, which is malformed if `predicate(value)` is false.
    template <auto member, auto predicate>
    static constexpr QelWireField validated(int id, QelWireRead read, QelWireWrite write, QelWireForm form = plain) {
        using Value = Internal::WireValidatedValue<Member<member>, predicate>;
        return row<member>(id, 0, read, write, form, &qelWireCodec<Member<member>, Value>);
    }
    /// A value or record in element `id`.  `bit` of the record's member `mask` indicates whether it is set; reading the
    /// element sets the bit.
    template <auto member, auto mask>
    static constexpr QelWireField marked(int id, unsigned bit, QelWireRead read, QelWireWrite write,
                                         QelWireForm form = plain) {
        static_assert(std::is_same_v<Member<mask>, unsigned>, "marked<> takes its bits from an unsigned mask");
        QelWireField made = field<member>(id, read, write, form);
        made.bit = bit;
        made.mask = [](void* record) { return &(static_cast<Record*>(record)->*mask); };
        return made;
    }
    /// A bool that is true if the empty element `id` is present.  Reading always specifies an optional bool.
    template <auto member> static constexpr QelWireField flag(int id) {
        static_assert(std::is_same_v<typename Internal::WireContent<Member<member>>::type, bool>,
                      "flag<> is for bool members: the presence of the element is the value");
        return row<member>(id, 0, optional, ifSet, plain, &Internal::presenceCodec<Member<member>>);
    }
    /// A mask of 32 bits: one empty element for each bit that is set, directly in the record's element.  Neither
    /// reading nor writing fails.
    template <auto member, QelWireBit... known> static constexpr QelWireField bits() {
        static_assert(std::is_integral_v<Member<member>> && sizeof(Member<member>) == sizeof(unsigned) &&
                          sizeof...(known) > 0,
                      "bits<> is for int and unsigned members, and takes the bits that it knows");
        return row<member>(0, Internal::wireBits<known...>[0].id, optional, ifSet, plain,
                           &Internal::bitsCodec<Member<member>, known...>);
    }
    /// The elements of bits<>, nested in an element `wrapper`.
    template <auto member, QelWireBit... known>
    static constexpr QelWireField wrappedBits(int wrapper, QelWireWrite write) {
        return wrap(bits<member, known...>(), wrapper, 0, write);
    }
    /// Elements `item`, one per item, directly in the record's element.
    template <auto member> static constexpr QelWireField list(int item, QelWireRead read, QelWireForm form = plain) {
        static_assert(qelWireCodec<Member<member>>.kind == QelWireKind::sequence ||
                          qelWireCodec<Member<member>>.kind == QelWireKind::set,
                      "list<> is for sequences and sets");
        return row<member>(0, item, read, ifSet, form, &qelWireCodec<Member<member>>);
    }
    /// The elements of list<>, nested in an element `wrapper`.
    template <auto member>
    static constexpr QelWireField wrapped(int wrapper, int item, QelWireRead read, QelWireWrite write,
                                          QelWireForm form = plain) {
        return wrap(list<member>(item, read, form), wrapper, item, write);
    }
    /// Elements `item`, one per entry, directly in the record's element.  Each contains the key in element `key` and
    /// the value in element `value`; if `value` is 0, the value is stored directly in element `item`.
    template <auto member>
    static constexpr QelWireField map(int item, int key, int value, QelWireRead read, QelWireForm form = plain) {
        static_assert(qelWireCodec<Member<member>>.kind == QelWireKind::map, "map<> is for maps");
        QelWireField made = row<member>(0, item, read, ifSet, form, &qelWireCodec<Member<member>>);
        made.key = key;
        made.value = value;
        return made;
    }
    /// The entries of map<>, nested in an element `wrapper`.
    template <auto member>
    static constexpr QelWireField wrappedMap(int wrapper, int item, int key, int value, QelWireRead read,
                                             QelWireWrite write, QelWireForm form = plain) {
        return wrap(map<member>(item, key, value, read, form), wrapper, item, write);
    }
    /// A pointer to a record of one of the classes registered for its base.  The element's complex type selects the
    /// class; if `useDefault` is set, an element of any other or no type is read as the default class.
    template <auto member, bool useDefault>
    static constexpr QelWireField derived(int id, QelWireRead read, QelWireWrite write) {
        using Pointer = Member<member>;
        using Value = Internal::WireDerivedValue<typename Pointer::element_type, useDefault>;
        return row<member>(id, 0, read, write, plain, &qelWireCodec<Pointer, Value>);
    }
    /// Records as in derived<> in elements `item`, directly in the record's element.
    template <auto member, bool useDefault> static constexpr QelWireField derivedList(int item, QelWireRead read) {
        using List = Member<member>;
        using ItemValue = Internal::WireDerivedValue<typename List::value_type::element_type, useDefault>;
        return row<member>(0, item, read, ifSet, plain,
                           &qelWireCodec<List, Internal::WireSequenceValue<List, ItemValue>>);
    }
    /// The elements of derivedList<>, nested in an element `wrapper`.
    template <auto member, bool useDefault>
    static constexpr QelWireField wrappedDerivedList(int wrapper, int item, QelWireRead read, QelWireWrite write) {
        return wrap(derivedList<member, useDefault>(item, read), wrapper, item, write);
    }
    /// The fields of a base class, at the same element.
    template <class Base> static constexpr QelWireField base(QelWireRead read = required) {
        static_assert(std::is_base_of_v<Base, Record>, "base<> takes a base class of the record");
        return {.name = Internal::typeName<Base>(),
                .read = read,
                .codec = &Internal::baseCodec<Base>,
                .member = [](void* record) -> void* { return static_cast<Base*>(static_cast<Record*>(record)); }};
    }
    /// Further rows of the record, nested in an element that is always written.  `rows` is another array of the table;
    /// `nsID` is the namespace of the element, 0 for that of its parent.
    template <const auto& rows, int nsID = 0>
    static constexpr QelWireField grouped(std::string_view name, int id, QelWireRead read) {
        static_assert(Internal::haveDistinctIDs(rows), "two rows of this group share one element ID");
        return whole(name, id, read, always, &Internal::groupCodec<Record, rows, nsID>);
    }
    /// A part that two functions read and write: `int (const QelMessageIterator&, Record&)` and
    /// `int (QelMessageIterator&, const Record&)`, both at the record's element.  `id` is the element that they use.
    /// `Value` describes the content of `id` to tools: the type of an equivalent field, a container if the element is
    /// repeated, void if there is no such type.
    template <auto readStep, auto writeStep, class Value = void>
    static constexpr QelWireField step(std::string_view name, int id, QelWireRead read, QelWireWrite write = always) {
        return whole(name, id, read, write, &Internal::stepCodec<Record, readStep, writeStep, Value>);
    }

private:
    /// A row whose codec works on the whole record.
    static constexpr QelWireField whole(std::string_view name, int id, QelWireRead read, QelWireWrite write,
                                        const QelWireCodec* codec) {
        return {.name = name, .id = id, .read = read, .write = write, .codec = codec, .member = [](void* record) {
                    return record;
                }};
    }

    /// Nests the elements of a row in an element `wrapper`.
    static constexpr QelWireField wrap(QelWireField row, int wrapper, int item, QelWireWrite write) {
        row.id = wrapper;
        row.item = item;
        row.write = write;
        return row;
    }

    template <auto member> using Member = std::remove_cvref_t<decltype(std::declval<Record&>().*member)>;

    template <auto member>
    static constexpr QelWireField row(int id, int item, QelWireRead read, QelWireWrite write, QelWireForm form,
                                      const QelWireCodec* codec) {
        return {.name = Internal::memberName<member>(),
                .id = id,
                .item = item,
                .read = read,
                .write = write,
                .form = form,
                .codec = codec,
                .member = [](void* record) -> void* { return &(static_cast<Record*>(record)->*member); }};
    }
};

namespace Internal {

consteval std::size_t indexOf(int id, std::span<const QelWireField> fields) {
    std::size_t index = 0;
    while (index < fields.size() && fields[index].ownID() != id)
        ++index;
    return index;
}

consteval bool namesEachFieldOnce(std::span<const int> order, std::span<const QelWireField> fields) {
    if (order.size() != fields.size())
        return false;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (indexOf(order[i], fields) == fields.size())
            return false;
        for (std::size_t j = i + 1; j < order.size(); ++j)
            if (order[i] == order[j])
                return false;
    }
    return true;
}

template <class Record>
inline constexpr std::size_t fieldCount = std::span<const QelWireField>(Wire<Record>::fields).size();

template <class Record> consteval auto readingOrder() {
    constexpr std::span<const QelWireField> fields(Wire<Record>::fields);
    constexpr std::span<const int> order(Wire<Record>::readOrder);
    static_assert(haveDistinctIDs(fields), "two fields of this record share one element ID");
    static_assert(order.empty() || namesEachFieldOnce(order, fields),
                  "readOrder must name each element ID of the table once, and no other");
    std::array<unsigned char, fieldCount<Record>> indices{};
    for (std::size_t i = 0; i < indices.size(); ++i)
        indices[i] = static_cast<unsigned char>(order.empty() ? i : indexOf(order[i], fields));
    return indices;
}

template <class Record> struct ReadingOrder { static constexpr auto indices = readingOrder<Record>(); };

} // namespace Internal

/// The table of a record as data.
template <class Record>
inline constexpr QelWireLayout wireLayoutOf{.typeName = Wire<Record>::typeName,
                                            .nsId = Wire<Record>::nsId,
                                            .typeId = Wire<Record>::typeId,
                                            .fields = Wire<Record>::fields,
                                            .readingOrder = Internal::ReadingOrder<Record>::indices,
                                            .isBestEffort = Wire<Record>::bestEffort};

} // namespace Qel
