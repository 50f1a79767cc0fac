#pragma once

#include <cstdlib>
#include <cstring>
#include <string_view>

#include "QelCommon/ErrorMessage.h"

namespace Qel {

/// A copy of `text` as a C string, allocated with malloc and owned by the caller; null with an error message if out of
/// memory.
[[nodiscard]] inline char* mallocText(std::string_view text) noexcept {
    auto* const copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (!copy) {
        setErrorMessage("out of memory");
        return nullptr;
    }
    text.copy(copy, text.size());
    copy[text.size()] = '\0';
    return copy;
}

} // namespace Qel
