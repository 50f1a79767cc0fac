#include "QelCommon/Strings.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <strings.h>

namespace Qel {

std::string formatString(const char* format, std::va_list arguments) {
    std::va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    if (length > 0)
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    va_end(again);
    return text;
}

int compareNoCase(std::string_view a, std::string_view b, int length) noexcept {
    if (length >= 0) {
        a = a.substr(0, static_cast<std::size_t>(length));
        b = b.substr(0, static_cast<std::size_t>(length));
    }
    if (const int order = strncasecmp(a.data(), b.data(), std::min(a.size(), b.size())))
        return order;
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

std::string intToStr(int value) {
    return std::to_string(value);
}

std::string longlongToStr(long long value) {
    return std::to_string(value);
}

unsigned long strToUlong(const std::string& text) noexcept {
    return std::strtoul(text.c_str(), nullptr, 10);
}

template <class Number> bool parseNumber(std::string_view text, Number& value) noexcept {
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    Number parsed{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (error != std::errc{} || end != text.data() + text.size())
        return false;
    value = parsed;
    return true;
}

template bool parseNumber(std::string_view, int&) noexcept;
template bool parseNumber(std::string_view, unsigned&) noexcept;
template bool parseNumber(std::string_view, long&) noexcept;
template bool parseNumber(std::string_view, unsigned long&) noexcept;
template bool parseNumber(std::string_view, long long&) noexcept;
template bool parseNumber(std::string_view, unsigned long long&) noexcept;
template bool parseNumber(std::string_view, double&) noexcept;

} // namespace Qel
