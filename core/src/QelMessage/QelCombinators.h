#pragma once

#include <algorithm>
#include <list>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelMessage/QelMessageIterator.h"

// Readers and writers of scalars, lists, sets, maps, pairs and pointers, composed from those of their parts.
//
// A reader is called with a cursor at the element that contains the value, a writer with a cursor at the element to
// fill. Both leave the cursor at that element. 0 is success; a list with a failed item returns -1 when read and 1 when
// written. Values read or written before a failure are kept.
//
//     <hosts><host>a</host><host>b</host></hosts>         std::vector<std::string>
//
//     cursor.getObject(names, QelReaderList(QelReaderString(), host, QelReaderOptional), hosts);
//     cursor.putObject(names, QelWriterList(QelWriterString(), host), hosts);

namespace Qel {

/// Reads the value of the current element with a get function of the cursor.
template <class T, auto getter> struct QelReaderSimple {
    int operator()(const QelMessageIterator& cursor, T& value) const { return (cursor.*getter)(value, getEmptyID()); }
};

/// Writes the value of the current element with a put function of the cursor.
template <class T, auto putter> struct QelWriterSimple : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const T& value) const { return (cursor.*putter)(value, getEmptyID()); }
};

namespace Internal {

template <class T> using Getter = int (QelMessageIterator::*)(T&, int) const;
template <class T> using Putter = int (QelMessageIterator::*)(T, int);

} // namespace Internal

using QelReaderString =
    QelReaderSimple<std::string, static_cast<Internal::Getter<std::string>>(&QelMessageIterator::getValue)>;
using QelWriterString =
    QelWriterSimple<std::string, static_cast<Internal::Putter<const std::string&>>(&QelMessageIterator::putValue)>;
using QelReaderBase64 =
    QelReaderSimple<std::string, static_cast<Internal::Getter<std::string>>(&QelMessageIterator::getValueBase64)>;
using QelWriterBase64 =
    QelWriterSimple<std::string,
                    static_cast<Internal::Putter<const std::string&>>(&QelMessageIterator::putValueBase64)>;
using QelReaderInt = QelReaderSimple<int, static_cast<Internal::Getter<int>>(&QelMessageIterator::getValue)>;
using QelWriterInt = QelWriterSimple<int, static_cast<Internal::Putter<int>>(&QelMessageIterator::putValue)>;
using QelReaderLongLong =
    QelReaderSimple<long long, static_cast<Internal::Getter<long long>>(&QelMessageIterator::getValueLongLong)>;
using QelWriterLongLong =
    QelWriterSimple<long long, static_cast<Internal::Putter<long long>>(&QelMessageIterator::putValueLongLong)>;
using QelReaderDouble =
    QelReaderSimple<double, static_cast<Internal::Getter<double>>(&QelMessageIterator::getValueDouble)>;
using QelWriterDouble =
    QelWriterSimple<double, static_cast<Internal::Putter<double>>(&QelMessageIterator::putValueDouble)>;

/// Writes nothing. Used as the key writer of a map whose values write their own keys.
struct QelWriterEmpty : QelWriterBase {
    template <class T> int operator()(QelMessageIterator&, const T&) const { return 0; }
};

/// Appends one item to a sequence. An item that fails to read is removed again.
template <class Reader> struct QelReaderListDataT : Reader {
    QelReaderListDataT() = default;
    explicit QelReaderListDataT(const Reader& reader) : Reader(reader) {}

    template <class Sequence> int operator()(const QelMessageIterator& cursor, Sequence& items) const {
        items.emplace_back();
        if (Reader::operator()(cursor, items.back()) == 0)
            return 0;
        items.pop_back();
        return -1;
    }
};

/// Inserts one item into a set; duplicates are dropped silently.
template <class Reader> struct QelReaderSetDataT : Reader {
    QelReaderSetDataT() = default;
    explicit QelReaderSetDataT(const Reader& reader) : Reader(reader) {}

    template <class Set> int operator()(const QelMessageIterator& cursor, Set& items) const {
        typename Set::value_type item{};
        if (Reader::operator()(cursor, item) != 0)
            return -1;
        items.insert(std::move(item));
        return 0;
    }
};

/// Reads a pair, both members from the current element.
template <class K, class V> struct QelReaderPairItemT {
    QelReaderPairItemT() = default;
    QelReaderPairItemT(const K& keyReader, const V& valueReader) : key(keyReader), value(valueReader) {}

    template <class First, class Second>
    int operator()(const QelMessageIterator& cursor, std::pair<First, Second>& pair) const {
        if (key(cursor, pair.first) != 0 || value(cursor, pair.second) != 0)
            return -1;
        return 0;
    }

    K key;
    V value;
};

/// Inserts one entry into a map. For a repeated key, a std::map keeps the first value and a std::multimap keeps all.
template <class K, class V> struct QelReaderMapDataT : QelReaderPairItemT<K, V> {
    using QelReaderPairItemT<K, V>::QelReaderPairItemT;

    template <class Map> int operator()(const QelMessageIterator& cursor, Map& map) const {
        std::pair<typename Map::key_type, typename Map::mapped_type> entry{};
        if (QelReaderPairItemT<K, V>::operator()(cursor, entry) != 0)
            return -1;
        map.insert(std::move(entry));
        return 0;
    }
};

/// Writes a pair, both members to the current element.
template <class K, class V> struct QelWriterPairItemT : QelWriterBase {
    QelWriterPairItemT() = default;
    QelWriterPairItemT(const K& keyWriter, const V& valueWriter) : key(keyWriter), value(valueWriter) {}

    template <class Pair> int operator()(QelMessageIterator& cursor, const Pair& pair) const {
        if (key(cursor, pair.first) != 0 || value(cursor, pair.second) != 0)
            return -1;
        return 0;
    }

    K key;
    V value;
};

/// Reads the children `id` (with an empty ID, all children) into a container, in order. The container is not cleared,
/// so a second read appends to the first.
template <class ID, class ItemReader> struct QelReaderListT : ItemReader {
    QelReaderListT(ID elementID, QelReaderFlags flags) : id(elementID), optional(!flags) {}
    QelReaderListT(const ItemReader& reader, ID elementID, QelReaderFlags flags)
        : ItemReader(reader), id(elementID), optional(!flags) {}

    template <class Container> int operator()(const QelMessageIterator& cursor, Container& items) const {
        if (first(cursor) != 0)
            return optional ? 0 : -1;
        int result = 0;
        do
            result = ItemReader::operator()(cursor, items);
        while (result == 0 && next(cursor) == 0);
        cursor.seekUp();
        return result;
    }

    ID id;
    bool optional;

private:
    int first(const QelMessageIterator& cursor) const {
        return isIdEmpty(id) ? cursor.firstChild() : cursor.firstChild(id);
    }
    int next(const QelMessageIterator& cursor) const {
        return isIdEmpty(id) ? cursor.nextSibling() : cursor.nextSibling(id);
    }
};

/// Writes one item of a list; returns true if the item failed.
template <class ItemWriterIDT> struct QelWriterListItemT : QelWriterBaseT<ItemWriterIDT> {
    QelWriterListItemT(QelMessageIterator& at, const ItemWriterIDT& writer) : cursor(at), item(&writer) {}

    template <class T> bool operator()(const T& value) const { return (*item)(cursor, value) != 0; }

    QelMessageIterator& cursor;
    const ItemWriterIDT* item;
};

/// Writes each item of a container to a separate child. Returns 1 at the first failed item; that item is incomplete and
/// later ones are not written. The list itself has no element, hence no complex type.
template <class ItemWriterIDT> struct QelWriterListT : QelWriterBase {
    explicit QelWriterListT(int id) : item(id) {}
    explicit QelWriterListT(const ItemWriterIDT& writer) : item(writer) {}

    template <class Container> int operator()(QelMessageIterator& cursor, const Container& items) const {
        const auto end = items.end();
        const auto found = std::find_if(items.begin(), end, QelWriterListItemT<ItemWriterIDT>(cursor, item));
        return found != end ? 1 : 0;
    }

    ItemWriterIDT item;
};

/// Reads into a new object; on failure the pointer is null.
template <class Reader> struct QelReaderPointerT : Reader {
    QelReaderPointerT() = default;
    explicit QelReaderPointerT(const Reader& reader) : Reader(reader) {}

    template <class T> int operator()(const QelMessageIterator& cursor, boost::shared_ptr<T>& pointer) const {
        pointer.reset(new T());
        if (Reader::operator()(cursor, *pointer) == 0)
            return 0;
        pointer.reset();
        return -1;
    }
};

/// Reads into a new `T` owned by the caller; on failure `out` is unchanged.
template <class T, class Reader> struct QelReaderPointerDataT : Reader {
    QelReaderPointerDataT() = default;
    explicit QelReaderPointerDataT(const Reader& reader) : Reader(reader) {}

    template <class Base> int operator()(const QelMessageIterator& cursor, Base*& out) const {
        auto* const object = new T();
        if (Reader::operator()(cursor, *object) != 0) {
            delete object;
            return -1;
        }
        out = object;
        return 0;
    }
};

/// Writes the object that the pointer refers to; -1 for a null pointer.
template <class Writer> struct QelWriterPointerT : QelWriterBaseT<Writer> {
    QelWriterPointerT() = default;
    explicit QelWriterPointerT(const Writer& w) : writer(w) {}

    template <class T> int operator()(QelMessageIterator& cursor, const boost::shared_ptr<T>& pointer) const {
        return pointer ? writer(cursor, *pointer) : -1;
    }

    Writer writer;
};

template <class T, class Writer> struct QelWriterPointerDataT : QelWriterBaseT<Writer> {
    QelWriterPointerDataT() = default;
    explicit QelWriterPointerDataT(const Writer& w) : writer(w) {}

    int operator()(QelMessageIterator& cursor, const T* pointer) const {
        return pointer ? writer(cursor, *pointer) : -1;
    }

    Writer writer;
};

/// Writes the value if the predicate is true for it, otherwise nothing.
template <class Writer, class Predicate> struct QelWriterIFT : QelWriterBaseT<Writer> {
    QelWriterIFT(const Writer& w, const Predicate& p) : writer(w), predicate(p) {}

    template <class T> int operator()(QelMessageIterator& cursor, const T& value) const {
        return predicate(value) ? writer(cursor, value) : 0;
    }

    Writer writer;
    Predicate predicate;
};

template <class Reader> QelReaderListDataT<Reader> QelReaderListData(const Reader& reader) {
    return QelReaderListDataT<Reader>(reader);
}
template <class Reader> QelReaderSetDataT<Reader> QelReaderSetData(const Reader& reader) {
    return QelReaderSetDataT<Reader>(reader);
}
template <class K, class V> QelReaderMapDataT<K, V> QelReaderMapData(const K& key, const V& value) {
    return {key, value};
}
template <class K, class V> QelReaderPairItemT<K, V> QelReaderPairItem(const K& key, const V& value) {
    return {key, value};
}
template <class K, class V> QelWriterPairItemT<K, V> QelWriterPairItem(const K& key, const V& value) {
    return {key, value};
}

template <class DataReader>
QelReaderListT<int, DataReader> QelReaderListEx(const DataReader& reader, int id, QelReaderFlags flags) {
    return {reader, id, flags};
}
template <class Reader> auto QelReaderList(const Reader& itemReader, int id, QelReaderFlags flags) {
    return QelReaderListEx(QelReaderListData(itemReader), id, flags);
}
template <class Reader> auto QelReaderSet(const Reader& itemReader, int id, QelReaderFlags flags) {
    return QelReaderListEx(QelReaderSetData(itemReader), id, flags);
}
template <class K, class V> auto QelReaderMap(int id, QelReaderFlags flags, const K& keyReader, const V& valueReader) {
    return QelReaderListEx(QelReaderMapData(keyReader, valueReader), id, flags);
}

template <class Reader> QelReaderPointerT<Reader> QelReaderPointer(const Reader& reader) {
    return QelReaderPointerT<Reader>(reader);
}
template <class T, class Reader> QelReaderPointerDataT<T, Reader> QelReaderPointerData(const Reader& reader) {
    return QelReaderPointerDataT<T, Reader>(reader);
}
template <class Writer> QelWriterPointerT<Writer> QelWriterPointer(const Writer& writer) {
    return QelWriterPointerT<Writer>(writer);
}
template <class T, class Writer> QelWriterPointerDataT<T, Writer> QelWriterPointerData(const Writer& writer) {
    return QelWriterPointerDataT<T, Writer>(writer);
}
template <class Writer, class Predicate>
QelWriterIFT<Writer, Predicate> QelWriterIF(const Writer& writer, const Predicate& predicate) {
    return {writer, predicate};
}

template <class ItemWriterIDT> QelWriterListT<ItemWriterIDT> QelWriterList(const ItemWriterIDT& itemWriter) {
    return QelWriterListT<ItemWriterIDT>(itemWriter);
}
template <class Writer> auto QelWriterList(const Writer& itemWriter, int id) {
    return QelWriterList(QelWriterID(itemWriter, id));
}
template <class Writer> auto QelWriterList(const Writer& itemWriter, int id, int nsType) {
    return QelWriterList(QelWriterID(itemWriter, id, nsType));
}
template <class K, class V> auto QelWriterMap(int id, const K& keyWriter, const V& valueWriter) {
    return QelWriterList(QelWriterID(QelWriterPairItem(keyWriter, valueWriter), id));
}

/// The reader and writer of a type: those of a record, the plain ones for a scalar, the pointer forms for a
/// boost::shared_ptr.
template <class T> struct QelFunctorsOf {
    using Reader = typename T::reader_type;
    using Writer = typename T::writer_type;
};
template <> struct QelFunctorsOf<std::string> {
    using Reader = QelReaderString;
    using Writer = QelWriterString;
};
template <> struct QelFunctorsOf<int> {
    using Reader = QelReaderInt;
    using Writer = QelWriterInt;
};
template <> struct QelFunctorsOf<long long> {
    using Reader = QelReaderLongLong;
    using Writer = QelWriterLongLong;
};
template <> struct QelFunctorsOf<double> {
    using Reader = QelReaderDouble;
    using Writer = QelWriterDouble;
};
template <class T> struct QelFunctorsOf<boost::shared_ptr<T>> {
    using Reader = QelReaderPointerT<typename QelFunctorsOf<T>::Reader>;
    using Writer = QelWriterPointerT<typename QelFunctorsOf<T>::Writer>;
};

/// Reads items `id` with the reader of the container's item type.
template <class T, class Allocator> auto QelReaderData(const std::vector<T, Allocator>&, int id, QelReaderFlags flags) {
    return QelReaderList(typename QelFunctorsOf<T>::Reader(), id, flags);
}
template <class T, class Allocator> auto QelReaderData(const std::list<T, Allocator>&, int id, QelReaderFlags flags) {
    return QelReaderList(typename QelFunctorsOf<T>::Reader(), id, flags);
}
template <class T, class Compare, class Allocator>
auto QelReaderData(const std::set<T, Compare, Allocator>&, int id, QelReaderFlags flags) {
    return QelReaderSet(typename QelFunctorsOf<T>::Reader(), id, flags);
}
/// Writes items `id` with the writer of the container's item type.
template <class Container> auto QelWriterData(const Container&, int id) {
    return QelWriterList(typename QelFunctorsOf<typename Container::value_type>::Writer(), id);
}

} // namespace Qel
