#pragma once

#include <concepts>
#include <string>

#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelMessageIterator.h"

// How a field that may be left out crosses the wire, as child `id` of the current element.
//
// A read always succeeds: a missing or unreadable element leaves the property unspecified and its value as it was.  A
// write gives the result of the put, and does nothing and succeeds for an unspecified property.

namespace Qel {

template <class T>
requires std::same_as<T, std::string> || std::same_as<T, int> || std::same_as<T, bool>
int readOptionalProperty(const QelMessageIterator& cursor, QelOptionalProperty<T>& property, int id) {
    property.specify(cursor.getValue(property.get(), id) == 0);
    return 0;
}

/// A bool goes out as 0 or 1.
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

/// Where a long has 32 bits, it takes the lower half of what was sent.
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

/// A record that fails inside keeps what it had read until then.
template <class T> int readOptionalComplex(const QelMessageIterator& cursor, QelOptionalProperty<T>& property, int id) {
    property.specify(cursor.getObj(property.get(), id) == 0);
    return 0;
}

template <class T>
int writeOptionalComplex(QelMessageIterator& cursor, const QelOptionalProperty<T>& property, int id) {
    return property.isSpecified() ? cursor.putObj(property.get(), id) : 0;
}

} // namespace Qel
