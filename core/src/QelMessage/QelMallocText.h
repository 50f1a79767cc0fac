#pragma once

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace Qel {

/// A copy of `text` as a C string in malloc memory, which is the caller's; null if there is no memory.
[[nodiscard]] inline char* mallocText(std::string_view text) noexcept {
    auto* const copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy) {
        text.copy(copy, text.size());
        copy[text.size()] = '\0';
    }
    return copy;
}

} // namespace Qel
