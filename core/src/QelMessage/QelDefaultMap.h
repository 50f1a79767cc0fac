#pragma once

#include <string_view>

#include "QelCommon/Export.h"

namespace Qel {

namespace Internal {

/// A string with static storage duration.
class CharArray {
public:
    constexpr CharArray() = default;
    constexpr CharArray(const char* text, unsigned length) : m_text(text), m_length(length) {}
    [[nodiscard]] constexpr const char* text() const { return m_text; }
    [[nodiscard]] constexpr unsigned length() const { return m_length; }
    [[nodiscard]] constexpr bool empty() const { return m_length == 0; }
    [[nodiscard]] constexpr std::string_view view() const { return {m_text, m_length}; }

private:
    const char* m_text = "";
    unsigned m_length = 0;
};

} // namespace Internal

/// Names of element, namespace and type IDs. Empty for an ID without a name.
struct QEL_EXPORT QelDefaultMap {
    [[nodiscard]] static Internal::CharArray findElemID(int id);
    [[nodiscard]] static Internal::CharArray findNSID(int id);
    [[nodiscard]] static Internal::CharArray findTypeID(int id);
};

QEL_EXPORT [[nodiscard]] Internal::CharArray getStringByElemIdDefault(int id);
QEL_EXPORT [[nodiscard]] Internal::CharArray getStringByNSIdDefault(int id);
QEL_EXPORT [[nodiscard]] Internal::CharArray getStringByTypeIdDefault(int id);

} // namespace Qel
