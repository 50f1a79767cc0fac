#pragma once

#include <cstddef>

#include "QelFunctionalityCore/Values/QelIPFunctors.h"
#include "QelFunctionalityCore/Values/QelLimitedLengthString.h"
#include "QelFunctionalityCore/Values/QelOptionalFields.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelWireValue.h"

// Codecs that make the non-record types of this folder usable in lists and wire tables.  Private header.

namespace Qel {

template <std::size_t size> struct QelFunctorsOf<limited_length_string<size, char>> {
    using Reader = QelReaderLimitedLengthString;
    using Writer = QelWriterLimitedLengthString;
};

template <> struct QelFunctorsOf<QelIPv6> {
    using Reader = QelIPReader;
    using Writer = QelIPWriter;
};

namespace Internal {

/// Codec for a string-like type with its own functors.
template <class T> struct WireTextByFunctors {
    static constexpr QelWireKind kind = QelWireKind::text;
    static int read(const QelMessageIterator& cursor, T& value, int id, const QelWireField&) {
        return cursor.getObject(value, typename QelFunctorsOf<T>::Reader(), id);
    }
    static int write(QelMessageIterator& cursor, const T& value, int id, const QelWireField&) {
        return cursor.putObject(value, typename QelFunctorsOf<T>::Writer(), id);
    }
};

} // namespace Internal

template <std::size_t size>
struct QelWireValue<limited_length_string<size, char>>
    : Internal::WireTextByFunctors<limited_length_string<size, char>> {
    static bool isSet(const limited_length_string<size, char>& value) { return value.isSpecified(); }
};

template <> struct QelWireValue<QelIPv6> : Internal::WireTextByFunctors<QelIPv6> {
    static bool isSet(const QelIPv6& value) { return !value.isAny(); }
};

/// A read marks the property specified if it succeeds, and unspecified if it fails.  In a row with kept(), a failed
/// read leaves the mark unchanged.
template <class T> struct QelWireValue<QelOptionalProperty<T>> : QelWireValue<T> {
    using Specified = T;
    static int read(const QelMessageIterator& cursor, QelOptionalProperty<T>& property, int id,
                    const QelWireField& field) {
        const int result = QelWireValue<T>::read(cursor, property.get(), id, field);
        if (result == 0 || !field.isKept)
            property.specify(result == 0);
        return result;
    }
    static int write(QelMessageIterator& cursor, const QelOptionalProperty<T>& property, int id,
                     const QelWireField& field) {
        return QelWireValue<T>::write(cursor, property.get(), id, field);
    }
    static bool isSet(const QelOptionalProperty<T>& property) { return property.isSpecified(); }
};

/// A 32-bit `long` receives the low 32 bits of the value.
template <> struct QelWireValue<QelOptionalProperty<long>> : QelWireValue<long> {
    using Specified = long;
    static int read(const QelMessageIterator& cursor, QelOptionalProperty<long>& property, int id,
                    const QelWireField& field) {
        if (field.form != QelWireForm::time)
            readOptionalLongLong(cursor, property, id);
        else
            property.specify(cursor.getValueTime(property.get(), id) == 0);
        return property.isSpecified() ? 0 : -1;
    }
    static int write(QelMessageIterator& cursor, const QelOptionalProperty<long>& property, int id,
                     const QelWireField& field) {
        return QelWireValue<long>::write(cursor, property.get(), id, field);
    }
    static bool isSet(const QelOptionalProperty<long>& property) { return property.isSpecified(); }
};

} // namespace Qel
