#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "QelCommon/ControlCharacters.h"
#include "qel/cli/Command.h"
#include "qel/cli/Console.h"
#include "qel/cli/Json.h"

namespace Qel::Tool {

/// Placeholder for a secret.
inline constexpr const char* hiddenValue = "(hidden)";

/// Rows of cells in aligned columns, separated by two spaces.
///
/// Widths count UTF-8 code points.  Trailing spaces are removed.  Control characters in cells are escaped by
/// showControls(), so each row is one line.
class Table {
public:
    enum class Align : std::uint8_t { left, right };

    /// Columns beyond `alignments` are left-aligned.
    explicit Table(std::vector<Align> alignments = {}) : m_alignments(std::move(alignments)) {}

    void addRow(std::vector<std::string> cells);
    void print(std::ostream& out) const;

private:
    [[nodiscard]] std::vector<std::size_t> columnWidths() const;
    [[nodiscard]] Align alignmentOf(std::size_t column) const;

    std::vector<Align> m_alignments;
    std::vector<std::vector<std::string>> m_rows;
};

/// Number of code points in a UTF-8 string.
[[nodiscard]] std::size_t countCharacters(std::string_view string) noexcept;

/// Whether `console.out` is the standard output of the process and a terminal.
[[nodiscard]] bool isTerminal(const Console& console);

/// Prints a value for use in scripts, and a newline.  On a terminal, control characters other than newline and tab are
/// escaped; otherwise the bytes are unchanged.
void printValue(const Console& console, std::string_view value);

/// The result of a command on standard output: JSON with `--json`, text otherwise.
///
/// The command supplies both forms as callables, of which only the requested one is called: `makeJson` returns the
/// result as a Json value; `printText` prints it to the std::ostream that it is passed.
class Output {
public:
    Output(const Invocation& invocation, const Console& console);

    /// Prints a result; JSON is indented.
    template <class MakeJson, class PrintText> void print(const MakeJson& makeJson, const PrintText& printText) const {
        if (m_isJson)
            printDocument(makeJson());
        else
            printText(m_out);
    }
    /// Prints one of many results, or a small result; JSON is printed on one line.
    template <class MakeJson, class PrintText>
    void printLine(const MakeJson& makeJson, const PrintText& printText) const {
        if (m_isJson)
            printDocumentOnLine(makeJson());
        else
            printText(m_out);
    }
    /// Prints a part of the text output that JSON does not have, such as the table of results that JSON prints one by
    /// one.
    template <class PrintText> void printTextOnly(const PrintText& printText) const {
        if (!m_isJson)
            printText(m_out);
    }

private:
    void printDocument(const Json& document) const;
    void printDocumentOnLine(const Json& document) const;

    std::ostream& m_out;
    bool m_isJson;
};

} // namespace Qel::Tool
