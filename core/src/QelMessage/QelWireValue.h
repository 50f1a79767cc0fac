#pragma once

#include <limits>
#include <map>
#include <string>
#include <type_traits>
#include <utility>

#include <boost/shared_ptr.hpp>

#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"
#include "QelMessage/QelWireLayout.h"

// Reads and writes each type of member.  A specialisation of QelWireValue adds a type:
//
//     template <> struct QelWireValue<T> {
//         static constexpr QelWireKind kind = QelWireKind::text;
//         static int read(const QelMessageIterator& cursor, T& value, int id, const QelWireField& field);
//         static int write(QelMessageIterator& cursor, const T& value, int id, const QelWireField& field);
//         static bool isSet(const T& value);
//     };
//
// The specialisation of an optional wrapper derives from that of the wrapped type, and declares that type as
// `Specified`.
//
// An `id` of 0 is the current element.  Reading a missing element fails.  A failed read leaves a scalar or a pointer
// unchanged; records and containers keep the parts that were read before the failure.

namespace Qel {

template <class T> struct QelWireValue {
    static_assert(sizeof(T) == 0, "no QelWireValue<> for this member type: give it a Reader and a Writer, "
                                  "or specialise QelWireValue");
};

namespace Internal {

template <class T>
concept WireRecord = requires {
    typename T::reader_type;
    typename T::writer_type;
};

template <class T>
concept WireRecordWithTable = WireRecord<T> && std::same_as<typename T::reader_type, QelRecordReader<T>>;

template <class T>
concept WireNumber = std::is_enum_v<T> ||(std::is_integral_v<T> && !std::is_same_v<T, bool>);

// A container that has functors is a record.
template <class T>
concept WireSequence = !std::same_as<T, std::string> && !WireRecord<T> && requires(T container) {
    container.emplace_back();
};

template <class T>
concept WireSet = !WireRecord<T> && requires(T container, typename T::key_type key) {
    container.insert(key);
    requires std::same_as<typename T::key_type, typename T::value_type>;
};

/// The name of a class, without its namespaces.
template <class T> consteval std::string_view typeName() {
    std::string_view name = __PRETTY_FUNCTION__;
    name = name.substr(name.find("T = ") + 4);
    name = name.substr(0, name.find_first_of(";]"));
    for (const std::string_view scope : {"Qel::", "{anonymous}::", "(anonymous namespace)::"})
        if (name.starts_with(scope))
            name.remove_prefix(scope.size());
    return name;
}

/// The record class that a pointer refers to, declared as RecordType by its QelWireValue; T for any other type.
template <class T, class Value> struct WireRecordType { using type = T; };
template <class T, class Value>
requires requires {
    typename Value::RecordType;
}
struct WireRecordType<T, Value> {
    using type = typename Value::RecordType;
};

template <class T> constexpr const QelWireLayout* layoutOfRecord() {
    return &layoutOf<T>();
}

/// The type inside an optional wrapper; T for any other type.
template <class T> struct WireContent { using type = T; };
template <class T>
requires requires {
    typename QelWireValue<T>::Specified;
}
struct WireContent<T> {
    using type = typename QelWireValue<T>::Specified;
};

} // namespace Internal

template <class T, class Value> constexpr QelWireCodec makeWireCodec();
/// The codec of a type.
template <class T, class Value = QelWireValue<T>>
inline constexpr QelWireCodec qelWireCodec = makeWireCodec<T, Value>();

template <> struct QelWireValue<std::string> {
    static constexpr QelWireKind kind = QelWireKind::text;
    static int read(const QelMessageIterator& cursor, std::string& value, int id, const QelWireField& field) {
        return field.form == QelWireForm::base64 ? cursor.getValueBase64(value, id) : cursor.getValue(value, id);
    }
    static int write(QelMessageIterator& cursor, const std::string& value, int id, const QelWireField& field) {
        return field.form == QelWireForm::base64 ? cursor.putValueBase64(value, id) : cursor.putValue(value, id);
    }
    static bool isSet(const std::string& value) { return !value.empty(); }
};

/// Numbers and enumerations.  A number out of the member's range is malformed.
template <Internal::WireNumber T> struct QelWireValue<T> {
    // A long is a time or a size and is encoded with 64 bits, although it has 32 bits on i386.
    static constexpr QelWireKind kind = sizeof(T) > sizeof(int) || std::is_same_v<T, long> ? QelWireKind::longInteger
                                                                                           : QelWireKind::integer;
    static int read(const QelMessageIterator& cursor, T& value, int id, const QelWireField& field) {
        if constexpr (std::is_same_v<T, long>)
            if (field.form == QelWireForm::time)
                return cursor.getValueTime(value, id);
        long long number = 0;
        if (cursor.getValueLongLong(number, id) != 0 || !fits(number))
            return -1;
        value = static_cast<T>(number);
        return 0;
    }
    static int write(QelMessageIterator& cursor, const T& value, int id, const QelWireField& field) {
        if constexpr (std::is_same_v<T, long>)
            if (field.form == QelWireForm::time)
                return cursor.putValueTime(value, id);
        return cursor.putValueLongLong(static_cast<long long>(value), id);
    }
    static bool isSet(const T& value) { return value != T{}; }

private:
    static constexpr bool fits(long long number) {
        if constexpr (std::is_enum_v<T>)
            return std::in_range<std::underlying_type_t<T>>(number);
        else
            return std::in_range<T>(number);
    }
};

template <> struct QelWireValue<double> {
    static constexpr QelWireKind kind = QelWireKind::real;
    static int read(const QelMessageIterator& cursor, double& value, int id, const QelWireField&) {
        return cursor.getValueDouble(value, id);
    }
    static int write(QelMessageIterator& cursor, const double& value, int id, const QelWireField&) {
        return cursor.putValueDouble(value, id);
    }
    static bool isSet(const double& value) { return value != 0; }
};

template <> struct QelWireValue<bool> {
    static constexpr QelWireKind kind = QelWireKind::boolean;
    static int read(const QelMessageIterator& cursor, bool& value, int id, const QelWireField&) {
        return cursor.getValue(value, id);
    }
    static int write(QelMessageIterator& cursor, const bool& value, int id, const QelWireField&) {
        return cursor.putValue(value ? 1 : 0, id);
    }
    static bool isSet(const bool& value) { return value; }
};

template <Internal::WireRecord T> struct QelWireValue<T> {
    static constexpr QelWireKind kind = QelWireKind::record;
    static int read(const QelMessageIterator& cursor, T& value, int id, const QelWireField&) {
        return cursor.getObj(value, id);
    }
    static int write(QelMessageIterator& cursor, const T& value, int id, const QelWireField&) {
        return cursor.putObj(value, id);
    }
    static bool isSet(const T& value) {
        if constexpr (requires { value.isValid(); })
            return value.isValid();
        else
            return true;
    }
};

namespace Internal {

/// Reads the items of a container, which are nested in element `id`, or in the current element if `id` is 0.
template <class ReadItem>
int readWireItems(const QelMessageIterator& cursor, int id, const QelWireField& field, const ReadItem& readItem) {
    if (id != 0 && cursor.seek(id) != 0)
        return -1;
    int result = 0;
    if (cursor.firstChild(field.item) == 0) {
        do
            result = readItem();
        while (result == 0 && cursor.nextSibling(field.item) == 0);
        cursor.seekUp();
    } else if (field.isNonEmpty || (id == 0 && field.read == QelWireRead::required)) {
        result = -1;
    }
    if (id != 0)
        cursor.seekUp();
    return result;
}

template <class Container, class WriteItem>
int writeWireItems(QelMessageIterator& cursor, const Container& items, int id, const QelWireField& field,
                   const WriteItem& writeItem) {
    if (id != 0)
        cursor.newChild(id);
    int result = 0;
    for (const auto& item : items) {
        cursor.newChild(field.item);
        result = writeItem(item);
        cursor.seekUp();
        if (result != 0)
            break;
    }
    if (id != 0)
        cursor.seekUp();
    return result == 0 ? 0 : -1;
}

/// Items in order.  `V` reads and writes one item.
template <class C, class V> struct WireSequenceValue {
    using ItemValue = V;
    using Item = typename C::value_type;
    static constexpr QelWireKind kind = QelWireKind::sequence;
    static int read(const QelMessageIterator& cursor, C& items, int id, const QelWireField& field) {
        if (field.isCleared)
            items.clear();
        return readWireItems(cursor, id, field, [&] {
            items.emplace_back();
            if (V::read(cursor, items.back(), field.value, field) == 0)
                return 0;
            items.pop_back();
            return -1;
        });
    }
    static int write(QelMessageIterator& cursor, const C& items, int id, const QelWireField& field) {
        return writeWireItems(cursor, items, id, field,
                              [&](const Item& item) { return V::write(cursor, item, field.value, field); });
    }
    static bool isSet(const C& items) { return !items.empty(); }
};

/// A pointer to a record whose class is selected by the element's complex type.
template <class Base, bool useDefault> struct WireDerivedValue {
    using RecordType = Base;
    static constexpr QelWireKind kind = QelWireKind::derived;
    static int read(const QelMessageIterator& cursor, boost::shared_ptr<Base>& value, int id, const QelWireField&) {
        return cursor.getObject(value, QelReaderDerived<Base>(useDefault), id);
    }
    static int write(QelMessageIterator& cursor, const boost::shared_ptr<Base>& value, int id, const QelWireField&) {
        return value ? cursor.putObject(value, QelWriterDerived<Base>(), id) : -1;
    }
    static bool isSet(const boost::shared_ptr<Base>& value) { return value != nullptr; }
    static QelWireClasses classes() {
        using Registry = QelDerivedParserFactory<Base>;
        QelWireClasses found;
        for (const auto& [type, factory] : Registry::factories()) {
            found.types.push_back(type);
            if (useDefault && factory == Registry::defaultFactory())
                found.byDefault = type;
        }
        return found;
    }
};

} // namespace Internal

template <Internal::WireSequence C>
struct QelWireValue<C> : Internal::WireSequenceValue<C, QelWireValue<typename C::value_type>> {};

template <Internal::WireSet C> struct QelWireValue<C> {
    using Item = typename C::value_type;
    using ItemValue = QelWireValue<Item>;
    static constexpr QelWireKind kind = QelWireKind::set;
    static int read(const QelMessageIterator& cursor, C& items, int id, const QelWireField& field) {
        return Internal::readWireItems(cursor, id, field, [&] {
            Item item{};
            if (ItemValue::read(cursor, item, field.value, field) != 0)
                return -1;
            items.insert(std::move(item));
            return 0;
        });
    }
    static int write(QelMessageIterator& cursor, const C& items, int id, const QelWireField& field) {
        return Internal::writeWireItems(cursor, items, id, field, [&](const Item& item) {
            return ItemValue::write(cursor, item, field.value, field);
        });
    }
    static bool isSet(const C& items) { return !items.empty(); }
};

/// Entries in elements `field.item`.  Each contains the key in element `field.key` and the value in element
/// `field.value`; if that is 0, the value is stored directly in the entry's element.  Of several entries with one key,
/// reading keeps the first.
template <class K, class M, class Compare> struct QelWireValue<std::map<K, M, Compare>> {
    using Key = K;
    using KeyValue = QelWireValue<K>;
    using Item = M;
    using ItemValue = QelWireValue<M>;
    using Map = std::map<K, M, Compare>;
    static constexpr QelWireKind kind = QelWireKind::map;
    static int read(const QelMessageIterator& cursor, Map& map, int id, const QelWireField& field) {
        return Internal::readWireItems(cursor, id, field, [&] {
            K key{};
            M value{};
            if (KeyValue::read(cursor, key, field.key, field) != 0 ||
                ItemValue::read(cursor, value, field.value, field) != 0)
                return -1;
            map.emplace(std::move(key), std::move(value));
            return 0;
        });
    }
    static int write(QelMessageIterator& cursor, const Map& map, int id, const QelWireField& field) {
        return Internal::writeWireItems(cursor, map, id, field, [&](const auto& entry) {
            if (KeyValue::write(cursor, entry.first, field.key, field) != 0)
                return -1;
            return writeValue(cursor, entry.second, field);
        });
    }
    static bool isSet(const Map& map) { return !map.empty(); }

private:
    // A value stored directly in the entry's element must not set its namespace and type: the element is the pair's.
    static int writeValue(QelMessageIterator& cursor, const M& value, const QelWireField& field) {
        if constexpr (Internal::WireRecord<M>)
            if (field.value == 0)
                return typename M::writer_type()(cursor, value);
        return ItemValue::write(cursor, value, field.value, field);
    }
};

/// A pointer to a record of exactly this class.  Null is not written; reading allocates a new record.
template <Internal::WireRecord T> struct QelWireValue<boost::shared_ptr<T>> {
    using RecordType = T;
    static constexpr QelWireKind kind = QelWireKind::record;
    static int read(const QelMessageIterator& cursor, boost::shared_ptr<T>& value, int id, const QelWireField&) {
        boost::shared_ptr<T> fresh(new T());
        if (cursor.getObj(*fresh, id) != 0)
            return -1;
        value = fresh;
        return 0;
    }
    static int write(QelMessageIterator& cursor, const boost::shared_ptr<T>& value, int id, const QelWireField&) {
        return value ? cursor.putObj(*value, id) : -1;
    }
    static bool isSet(const boost::shared_ptr<T>& value) { return value != nullptr; }
};

template <class T, class Value> constexpr QelWireCodec makeWireCodec() {
    using Content = typename Internal::WireContent<T>::type;
    QelWireCodec codec{};
    codec.kind = Value::kind;
    using Record = typename Internal::WireRecordType<Content, Value>::type;
    if constexpr (Value::kind == QelWireKind::record || Value::kind == QelWireKind::derived)
        codec.typeName = Internal::typeName<Record>();
    if constexpr (Value::kind != QelWireKind::derived && Internal::WireRecordWithTable<Record>)
        codec.layout = &Internal::layoutOfRecord<Record>;
    if constexpr (requires { typename Value::Key; })
        codec.key = &qelWireCodec<typename Value::Key>;
    if constexpr (requires { typename Value::Item; })
        codec.item = &qelWireCodec<typename Value::Item, typename Value::ItemValue>;
    if constexpr (requires { Value::classes(); })
        codec.classes = &Value::classes;
    codec.isOptional = !std::is_same_v<Content, T>;
    codec.read = [](const QelMessageIterator& cursor, void* member, int id, const QelWireField& field) {
        return Value::read(cursor, *static_cast<T*>(member), id, field);
    };
    codec.write = [](QelMessageIterator& cursor, const void* member, int id, const QelWireField& field) {
        return Value::write(cursor, *static_cast<const T*>(member), id, field);
    };
    codec.isSet = [](const void* member) { return Value::isSet(*static_cast<const T*>(member)); };
    return codec;
}

} // namespace Qel
