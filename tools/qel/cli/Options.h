#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Qel::Tool {

/// The type of an option's value.
enum class OptionKind : std::uint8_t {
    string,
    strings, ///< a list with one element per occurrence of the option
    words,   ///< a list of all words that follow the option
    integer,
    real
};

/// An option of a command.
struct Option {
    std::string name;
    char letter = '\0';  ///< short form, or '\0'
    std::string value{}; ///< value name in the help; empty for a flag
    OptionKind kind = OptionKind::string;
    std::string byDefault{};
    bool isRequired = false;
    std::string help{};
};

/// The options of a command, in help order.
class Options {
public:
    void add(Option option) { m_all.push_back(std::move(option)); }

    /// Finds an option by name ("help") or short form ("-h").  Returns null if not found.
    [[nodiscard]] const Option* find(std::string_view name) const;

    [[nodiscard]] auto begin() const { return m_all.begin(); }
    [[nodiscard]] auto end() const { return m_all.end(); }

private:
    std::vector<Option> m_all;
};

} // namespace Qel::Tool
