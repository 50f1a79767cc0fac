#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "QelCommon/ControlCharacters.h"
#include "qel/cli/Console.h"

namespace Qel::Tool {

/// What is shown in place of a secret.
inline constexpr const char* hiddenValue = "(hidden)";

/// Rows of cells in aligned columns, two blanks apart.
///
/// Widths count characters, that is code points of UTF-8; no line ends in blanks.  Cells are printed by
/// showControls(), so that each row is one line.
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

/// Whether the standard output of the process is meant, and is a terminal.
[[nodiscard]] bool isTerminal(const Console& console);

/// Prints a value that programs read, and a line end: as bytes, but on a terminal with its control characters escaped,
/// except line feeds and tabs.
void printValue(const Console& console, std::string_view value);

} // namespace Qel::Tool
