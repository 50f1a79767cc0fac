#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "QelCommon/Export.h"

/// String forms of typed values. Every form reads back to the original value. A failed read leaves its output
/// unchanged. No other characters may surround the form, not even white space.
namespace Qel::QelValueText {

/// A string of limited length in a fixed buffer.
class Text {
public:
    [[nodiscard]] std::string_view view() const noexcept { return {m_characters.data(), m_size}; }
    [[nodiscard]] char* free() noexcept { return m_characters.data() + m_size; }
    [[nodiscard]] char* end() noexcept { return m_characters.data() + m_characters.size(); }
    [[nodiscard]] std::size_t room() const noexcept { return m_characters.size() - m_size; }
    /// Appends the characters that the caller has written between free() and `end`.
    void extendTo(const char* end) noexcept { m_size = static_cast<std::size_t>(end - m_characters.data()); }

private:
    std::array<char, 64> m_characters{};
    std::size_t m_size = 0;
};

/// The decimal form.
QEL_EXPORT [[nodiscard]] Text ofInteger(long long value) noexcept;

/// The shortest decimal form that reads back equal; "inf", "-inf", "nan".
QEL_EXPORT [[nodiscard]] Text ofDouble(double value) noexcept;

/// Seconds since the epoch as "2026-11-20T09:30:00Z" (RFC 3339), or as a decimal number outside the years 0 to 9999.
QEL_EXPORT [[nodiscard]] Text ofTime(long seconds) noexcept;

/// Local time with the zone, which is in minutes east of Greenwich: "2026-11-20T10:30:00+01:00". Outside the years 0 to
/// 9999, the number of seconds since the epoch followed by the zone.
QEL_EXPORT [[nodiscard]] Text ofTimeZone(long seconds, int zone) noexcept;

/// Accepts "0", "false", "1", "true" and the empty string, which is true.
QEL_EXPORT [[nodiscard]] bool toBool(std::string_view text, bool& value) noexcept;

/// Parses any form of ofTime() and ofTimeZone() to seconds since the epoch. The zone of a date and time is applied; a
/// number is already relative to UTC.
QEL_EXPORT [[nodiscard]] bool toTime(std::string_view text, long& seconds) noexcept;

/// Like toTime(), and also returns the zone in minutes east of Greenwich; 0 for "Z" or if there is no zone.
QEL_EXPORT [[nodiscard]] bool toTimeZone(std::string_view text, long& seconds, int& zone) noexcept;

} // namespace Qel::QelValueText
