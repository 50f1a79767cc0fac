#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Qel::Tool {

/// What the value of an option is.
enum class OptionKind : std::uint8_t {
    text,
    texts, ///< one each time the option is given
    words, ///< all words that follow
    integer,
    real
};

/// An option of a command.
struct Option {
    std::string name;
    char letter = '\0';  ///< its short form, if it has one
    std::string value{}; ///< the name of its value in the help; empty for a flag
    OptionKind kind = OptionKind::text;
    std::string byDefault{};
    bool isRequired = false;
    std::string help{};
};

/// The options of a command, in the order in which its help lists them.
class Options {
public:
    void add(Option option) { m_all.push_back(std::move(option)); }

    /// The option with this name, or with this short form: "help", "-h".  Null if there is none.
    [[nodiscard]] const Option* find(std::string_view name) const;

    [[nodiscard]] auto begin() const { return m_all.begin(); }
    [[nodiscard]] auto end() const { return m_all.end(); }

private:
    std::vector<Option> m_all;
};

} // namespace Qel::Tool
