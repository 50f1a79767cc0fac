#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

namespace Qel {

/// The text that vprintf would print.
[[nodiscard]] std::string formatText(const char* format, std::va_list arguments) __attribute__((format(printf, 1, 0)));

/// Compares without regard to ASCII case: below zero, zero or above zero.  With `length` not below zero only that many
/// characters are compared; with -1 all of them.
[[nodiscard]] int compareNoCase(std::string_view a, std::string_view b, int length = -1) noexcept;

/// Decimal text of a number.
[[nodiscard]] std::string intToStr(int value);
[[nodiscard]] std::string longlongToStr(long long value);

/// The number that `text` begins with, in decimal, as strtoul reads it; 0 if it begins with none.
[[nodiscard]] unsigned long strToUlong(const std::string& text) noexcept;

/// Parses the whole of `text` as a decimal number with an optional sign.  False, and `value` unchanged, if anything
/// else stands there or the number doesn't fit.
template <class Number> [[nodiscard]] bool parseNumber(std::string_view text, Number& value) noexcept;

extern template bool parseNumber(std::string_view, int&) noexcept;
extern template bool parseNumber(std::string_view, unsigned&) noexcept;
extern template bool parseNumber(std::string_view, long&) noexcept;
extern template bool parseNumber(std::string_view, unsigned long&) noexcept;
extern template bool parseNumber(std::string_view, long long&) noexcept;
extern template bool parseNumber(std::string_view, unsigned long long&) noexcept;
extern template bool parseNumber(std::string_view, double&) noexcept;

} // namespace Qel
