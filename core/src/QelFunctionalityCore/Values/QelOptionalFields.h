#pragma once

#include <concepts>
#include <string>

#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelMessageIterator.h"

// Readers and writers for optional fields, stored as child `id` of the current element.
//
// Readers always return 0.  A missing or unreadable element leaves the property unspecified and its value unchanged.
// Writers return the result of the put; for an unspecified property they write nothing and return 0.

namespace Qel {

template <class T>
requires std::same_as<T, std::string> || std::same_as<T, int> || std::same_as<T, bool>
int readOptionalProperty(const QelMessageIterator& cursor, QelOptionalProperty<T>& property, int id) {
    property.specify(cursor.getValue(property.get(), id) == 0);
    return 0;
}

/// Writes a bool as 0 or 1.
template <class T>
requires std::same_as<T, std::string> || std::same_as<T, int> || std::same_as<T, bool>
int writeOptionalProperty(QelMessageIterator& cursor, const QelOptionalProperty<T>& property, int id) {
    if (!property.isSpecified())
        return 0;
    if constexpr (std::same_as<T, bool>)
        return cursor.putValue(property.get() ? 1 : 0, id);
    else
        return cursor.putValue(property.get(), id);
}

/// A 32-bit `long` receives the low 32 bits of the value.
template <class T>
requires std::same_as<T, long> || std::same_as<T, long long>
int readOptionalLongLong(const QelMessageIterator& cursor, QelOptionalProperty<T>& property, int id) {
    long long value = 0;
    if (cursor.getValueLongLong(value, id) == 0)
        property.set(static_cast<T>(value));
    else
        property.specify(false);
    return 0;
}

template <class T>
requires std::same_as<T, long> || std::same_as<T, long long>
int writeOptionalLongLong(QelMessageIterator& cursor, const QelOptionalProperty<T>& property, int id) {
    return property.isSpecified() ? cursor.putValueLongLong(property.get(), id) : 0;
}

/// If reading the record fails half way, it keeps the fields read so far.
template <class T> int readOptionalComplex(const QelMessageIterator& cursor, QelOptionalProperty<T>& property, int id) {
    property.specify(cursor.getObj(property.get(), id) == 0);
    return 0;
}

template <class T>
int writeOptionalComplex(QelMessageIterator& cursor, const QelOptionalProperty<T>& property, int id) {
    return property.isSpecified() ? cursor.putObj(property.get(), id) : 0;
}

} // namespace Qel
