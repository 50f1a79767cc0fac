#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace Qel::Tool {

/// What is shown in place of a secret.
inline constexpr const char* hiddenValue = "(hidden)";

/// Rows of cells in aligned columns, two blanks apart.
///
/// Widths count characters, that is code points of UTF-8; no line ends in blanks.  Control characters are shown as \n,
/// \t or \xHH, so that a row is one line whatever its cells hold, and no cell can speak to the terminal.
class Table {
public:
    enum class Align : std::uint8_t { left, right };

    /// Columns that `alignments` doesn't tell are aligned left.
    explicit Table(std::vector<Align> alignments = {}) : m_alignments(std::move(alignments)) {}

    void addRow(std::vector<std::string> cells);
    void print(std::ostream& out) const;

private:
    [[nodiscard]] std::vector<std::size_t> columnWidths() const;
    [[nodiscard]] Align alignmentOf(std::size_t column) const;

    std::vector<Align> m_alignments;
    std::vector<std::vector<std::string>> m_rows;
};

/// Code points in a text of UTF-8.
[[nodiscard]] std::size_t countCharacters(std::string_view text) noexcept;

/// `text` with its control characters made visible.
[[nodiscard]] std::string showControls(std::string_view text);

} // namespace Qel::Tool
