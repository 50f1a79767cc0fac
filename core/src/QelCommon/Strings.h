#pragma once

#include <cstdarg>
#include <string>
#include <string_view>

#include "QelCommon/Export.h"

namespace Qel {

/// Returns the string that vprintf would print.
QEL_EXPORT [[nodiscard]] std::string formatString(const char* format, std::va_list arguments)
    __attribute__((format(printf, 1, 0)));

/// ASCII case-insensitive comparison: negative, zero or positive.  If `length` >= 0, compares at most the first
/// `length` characters of each string; otherwise all of them.
QEL_EXPORT [[nodiscard]] int compareNoCase(std::string_view a, std::string_view b, int length = -1) noexcept;

/// The number in decimal.
QEL_EXPORT [[nodiscard]] std::string intToStr(int value);
QEL_EXPORT [[nodiscard]] std::string longlongToStr(long long value);

/// Parses the decimal number at the start of `text`, as strtoul does; 0 if there is none.
QEL_EXPORT [[nodiscard]] unsigned long strToUlong(const std::string& text) noexcept;

/// Parses all of `text` as a decimal number with an optional sign.  Returns false and leaves `value` unchanged if
/// `text` contains anything else or the number is out of range.
template <class Number> QEL_EXPORT [[nodiscard]] bool parseNumber(std::string_view text, Number& value) noexcept;

extern template bool parseNumber(std::string_view, int&) noexcept;
extern template bool parseNumber(std::string_view, unsigned&) noexcept;
extern template bool parseNumber(std::string_view, long&) noexcept;
extern template bool parseNumber(std::string_view, unsigned long&) noexcept;
extern template bool parseNumber(std::string_view, long long&) noexcept;
extern template bool parseNumber(std::string_view, unsigned long long&) noexcept;
extern template bool parseNumber(std::string_view, double&) noexcept;

} // namespace Qel
