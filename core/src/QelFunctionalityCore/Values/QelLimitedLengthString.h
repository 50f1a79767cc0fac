#pragma once

#include <cstddef>
#include <string>

#include "QelCore/QelContainers.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// Reads a limited-length string from the value of the current element; -1 if it has none.  A value that is too long
/// terminates the process, as does every such assignment.
struct QelReaderLimitedLengthString {
    template <std::size_t size>
    int operator()(const QelMessageIterator& cursor, limited_length_string<size, char>& value) const {
        std::string text;
        if (cursor.getValue(text, getEmptyID()) != 0)
            return -1;
        value = text;
        return 0;
    }
};

/// Writes a limited-length string as the value of the current element.  Does nothing if the string is unset.
struct QelWriterLimitedLengthString : QelWriterBase {
    template <std::size_t size>
    int operator()(QelMessageIterator& cursor, const limited_length_string<size, char>& value) const {
        if (!value.isSpecified())
            return 0;
        return cursor.putValue(value.c_str(), static_cast<int>(value.length()), getEmptyID()) == 0 ? 0 : -1;
    }
};

} // namespace Qel
