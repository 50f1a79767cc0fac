#pragma once

#include <new>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

/// Returns the result of `parse`, or QelMessage::outOfMemory with an error message if an allocation fails.
template <class Parse> [[nodiscard]] int guardParse(Parse parse) {
    try {
        return parse();
    } catch (const std::bad_alloc&) {
        // Fits the small-string buffer of std::string, so it does not allocate.
        setErrorMessage("out of memory");
        return QelMessage::outOfMemory;
    }
}

} // namespace Qel
