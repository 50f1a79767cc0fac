#include "qel/Output.h"

#include <algorithm>
#include <ostream>

namespace Qel::Tool {

namespace {

constexpr std::string_view columnGap = "  ";

constexpr bool isContinuationByte(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

constexpr bool isControl(char c) {
    constexpr unsigned char firstPrintable = 0x20;
    constexpr unsigned char del = 0x7F;
    const auto byte = static_cast<unsigned char>(c);
    return byte < firstPrintable || byte == del;
}

/// Whether a code point from U+0080 to U+009F comes first; terminals obey those like escape sequences.
constexpr bool startsHighControl(std::string_view text) {
    return text.size() >= 2 && text[0] == '\xC2' && static_cast<unsigned char>(text[1]) < 0xA0U &&
           isContinuationByte(text[1]);
}

std::string escapeOf(char c) {
    if (c == '\n')
        return "\\n";
    if (c == '\t')
        return "\\t";
    constexpr std::string_view digits = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    return {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
}

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

std::size_t countCharacters(std::string_view text) noexcept {
    return text.size() - static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isContinuationByte));
}

std::string showControls(std::string_view text) {
    std::string shown;
    shown.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = startsHighControl(text) ? 2 : 1;
        for (const char c : text.substr(0, length))
            shown += length == 2 || isControl(c) ? escapeOf(c) : std::string(1, c);
        text.remove_prefix(length);
    }
    return shown;
}

} // namespace Qel::Tool
