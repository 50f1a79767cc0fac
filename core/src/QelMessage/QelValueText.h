#pragma once

#include <array>
#include <cstddef>
#include <string_view>

/// The text forms of typed values.  Every form reads back to the value it was made of.  A read that fails leaves its
/// output as it was; nothing but the form itself may stand in the text, no blanks either.
namespace Qel::QelValueText {

/// A text of limited length, held in place.
class Text {
public:
    [[nodiscard]] std::string_view view() const noexcept { return {m_characters.data(), m_size}; }
    [[nodiscard]] char* free() noexcept { return m_characters.data() + m_size; }
    [[nodiscard]] char* end() noexcept { return m_characters.data() + m_characters.size(); }
    [[nodiscard]] std::size_t room() const noexcept { return m_characters.size() - m_size; }
    /// Takes what was written from free() up to `end` as part of the text.
    void extendTo(const char* end) noexcept { m_size = static_cast<std::size_t>(end - m_characters.data()); }

private:
    std::array<char, 64> m_characters{};
    std::size_t m_size = 0;
};

/// Decimal.
[[nodiscard]] Text ofInteger(long long value) noexcept;

/// The shortest decimal text that reads back equal; "inf", "-inf", "nan".
[[nodiscard]] Text ofDouble(double value) noexcept;

/// Seconds since the epoch as "2026-11-20T09:30:00Z" (RFC 3339); outside the years 0 to 9999 as a decimal number.
[[nodiscard]] Text ofTime(long seconds) noexcept;

/// The same with the local time of a zone, which is given in minutes east of Greenwich: "2026-11-20T10:30:00+01:00".
/// Outside the years 0 to 9999 the number of seconds since the epoch, and the zone behind it.
[[nodiscard]] Text ofTimeZone(long seconds, int zone) noexcept;

/// "0", "false"; "1", "true"; an empty text is true.
[[nodiscard]] bool toBool(std::string_view text, bool& value) noexcept;

/// Any of the forms of ofTime() and ofTimeZone(), the zone being taken into account.
[[nodiscard]] bool toTime(std::string_view text, long& seconds) noexcept;

/// The same with the zone in minutes east of Greenwich, 0 where the text has "Z" or no zone.
[[nodiscard]] bool toTimeZone(std::string_view text, long& seconds, int& zone) noexcept;

} // namespace Qel::QelValueText
