#include "QelCommon/ControlCharacters.h"

#include <algorithm>
#include <array>
#include <utility>

#include "QelCommon/Utf8.h"

namespace Qel {

namespace {

using Interval = std::pair<std::uint32_t, std::uint32_t>; // both ends included

constexpr std::array<Interval, 7> controlCharacters{{
    {0x00, 0x1F},     // C0
    {0x7F, 0x9F},     // DEL and C1
    {0x061C, 0x061C}, // Arabic letter mark
    {0x200E, 0x200F}, // left-to-right and right-to-left mark
    {0x2028, 0x2029}, // line and paragraph separator
    {0x202A, 0x202E}, // embeddings and overrides
    {0x2066, 0x2069}, // isolates
}};

void appendEscaped(std::string& shown, char c) {
    if (c == '\n') {
        shown += "\\n";
    } else if (c == '\t') {
        shown += "\\t";
    } else {
        constexpr std::string_view digits = "0123456789abcdef";
        const auto byte = static_cast<unsigned char>(c);
        shown += {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
    }
}

} // namespace

bool isControlCharacter(std::uint32_t code) noexcept {
    return std::any_of(controlCharacters.begin(), controlCharacters.end(),
                       [&](const Interval& each) { return each.first <= code && code <= each.second; });
}

std::string showControls(std::string_view text, std::string_view kept) {
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const auto [length, code] = firstUtf8Character(text);
        const std::string_view bytes = text.substr(0, length == 0 ? 1 : length);
        const bool isSafe = length != 0 && !isControlCharacter(code);
        if (isSafe || kept.find(bytes.front()) != std::string_view::npos)
            shown += bytes;
        else
            for (const char byte : bytes)
                appendEscaped(shown, byte);
        text.remove_prefix(bytes.size());
    }
    return shown;
}

} // namespace Qel
