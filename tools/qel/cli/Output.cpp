#include "qel/cli/Output.h"

#include <algorithm>
#include <iostream>

#include <unistd.h>

#include "QelCommon/Utf8.h"

namespace Qel::Tool {

namespace {

constexpr std::string_view columnGap = "  ";

std::string padded(const std::string& cell, std::size_t width, Table::Align alignment) {
    const std::string blanks(width - countCharacters(cell), ' ');
    return alignment == Table::Align::right ? blanks + cell : cell + blanks;
}

} // namespace

void Table::addRow(std::vector<std::string> cells) {
    for (std::string& cell : cells)
        cell = showControls(cell);
    m_rows.push_back(std::move(cells));
}

void Table::print(std::ostream& out) const {
    const std::vector<std::size_t> widths = columnWidths();
    for (const auto& row : m_rows) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            if (column != 0)
                line += columnGap;
            line += padded(row[column], widths[column], alignmentOf(column));
        }
        line.erase(line.find_last_not_of(' ') + 1);
        out << line << '\n';
    }
}

std::vector<std::size_t> Table::columnWidths() const {
    std::vector<std::size_t> widths;
    for (const auto& row : m_rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], countCharacters(row[column]));
    }
    return widths;
}

Table::Align Table::alignmentOf(std::size_t column) const {
    return column < m_alignments.size() ? m_alignments[column] : Align::left;
}

std::size_t countCharacters(std::string_view string) noexcept {
    return string.size() - static_cast<std::size_t>(std::count_if(string.begin(), string.end(), isUtf8Continuation));
}

bool isTerminal(const Console& console) {
    return &console.out == &std::cout && isatty(STDOUT_FILENO) == 1;
}

void printValue(const Console& console, std::string_view value) {
    console.out << (isTerminal(console) ? showControls(value, "\n\t") : std::string(value)) << '\n';
}

Output::Output(const Invocation& invocation, const Console& console)
    : m_out(console.out), m_isJson(invocation.has("json")) {}

void Output::printDocument(const Json& document) const {
    printJson(m_out, document);
}

void Output::printDocumentOnLine(const Json& document) const {
    m_out << document << '\n';
}

} // namespace Qel::Tool
