#include "QelMessage/QelXmlText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

#include "QelCommon/Utf8.h"

namespace Qel::QelXmlText {

namespace {

constexpr std::string_view namespacePrefix = "urn:qel:";
constexpr std::string_view emptyName = "_x_";

bool isLetter(char c) noexcept {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}
bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}
bool isUpperHex(char c) noexcept {
    return isDigit(c) || (c >= 'A' && c <= 'F');
}
bool startsName(char c) noexcept {
    return isLetter(c) || c == '_';
}
bool continuesName(char c) noexcept {
    return startsName(c) || isDigit(c) || c == '-' || c == '.';
}

void appendHex(std::string& text, char byte) {
    constexpr std::string_view hexDigits = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    text += hexDigits[value >> 4];
    text += hexDigits[value & 0xF];
}

void appendEscaped(std::string& text, char byte) {
    text += "_x";
    appendHex(text, byte);
    text += '_';
}

char fromHex(std::string_view twoDigits) noexcept {
    unsigned value = 0;
    std::from_chars(twoDigits.data(), twoDigits.data() + twoDigits.size(), value, 16);
    return static_cast<char>(value);
}

/// True if the underscore at `at` could be taken for the start of "_xHH_".
bool looksEscaped(std::string_view name, std::size_t at) noexcept {
    if (at + 2 >= name.size() || name[at + 1] != 'x')
        return false;
    const char next = name[at + 2];
    return isUpperHex(next) || next == '_' || !continuesName(next);
}

/// Decodes the first character of `text`. Returns its length; 0 if it is malformed or not allowed in XML.
std::size_t decodeCharacter(std::string_view text, std::uint32_t& code) noexcept {
    const Utf8Character character = firstUtf8Character(text);
    code = character.code;
    const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
    const bool isNoCharacter = code == 0xFFFE || code == 0xFFFF;
    return isControl || isNoCharacter ? 0 : character.length;
}

std::size_t characterLength(std::string_view text) noexcept {
    std::uint32_t code = 0;
    return decodeCharacter(text, code);
}

struct CodeRange {
    std::uint32_t first;
    std::uint32_t last;
};

template <std::size_t count> bool isIn(const std::array<CodeRange, count>& ranges, std::uint32_t code) noexcept {
    return std::ranges::any_of(ranges, [&](const CodeRange& each) { return each.first <= code && code <= each.last; });
}

/// Whether XML allows a character as the first or as a later character of a name (XML 1.0, fifth edition, section 2.3).
bool isNameCharacter(std::uint32_t code, bool isFirst) noexcept {
    constexpr std::array<CodeRange, 12> starting{{{0xC0, 0xD6},
                                                  {0xD8, 0xF6},
                                                  {0xF8, 0x2FF},
                                                  {0x370, 0x37D},
                                                  {0x37F, 0x1FFF},
                                                  {0x200C, 0x200D},
                                                  {0x2070, 0x218F},
                                                  {0x2C00, 0x2FEF},
                                                  {0x3001, 0xD7FF},
                                                  {0xF900, 0xFDCF},
                                                  {0xFDF0, 0xFFFD},
                                                  {0x10000, 0xEFFFF}}};
    constexpr std::array<CodeRange, 3> continuing{{{0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}}};
    if (code < 0x80)
        return isFirst ? startsName(static_cast<char>(code)) : continuesName(static_cast<char>(code));
    return isIn(starting, code) || (!isFirst && isIn(continuing, code));
}

void appendUtf8(std::string& text, std::uint32_t code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
        return;
    }
    const unsigned following = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr std::array<unsigned, 4> lead{0, 0xC0, 0xE0, 0xF0};
    text += static_cast<char>(lead[following] | code >> (6 * following));
    for (unsigned left = following; left-- > 0;)
        text += static_cast<char>(0x80u | (code >> (6 * left) & 0x3Fu));
}

/// Appends the character that "&name;" refers to.
bool appendReference(std::string& text, std::string_view name) {
    constexpr std::array<std::pair<std::string_view, char>, 5> predefined{
        {{"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}}};
    for (const auto& [entity, character] : predefined)
        if (name == entity) {
            text += character;
            return true;
        }
    if (!name.starts_with('#'))
        return false;
    name.remove_prefix(1);
    const bool isHex = name.starts_with('x');
    if (isHex)
        name.remove_prefix(1);
    std::uint32_t code = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), code, isHex ? 16 : 10);
    if (error != std::errc{} || end != name.data() + name.size() || code > 0x10FFFF)
        return false;
    std::string character;
    appendUtf8(character, code);
    if (characterLength(character) != character.size())
        return false;
    text += character;
    return true;
}

} // namespace

std::size_t findForbidden(std::string_view text) noexcept {
    std::size_t offset = 0;
    while (offset < text.size()) {
        const auto byte = static_cast<unsigned char>(text[offset]);
        if (byte >= 0x20 && byte < 0x80) { // fast path: most text is ASCII
            ++offset;
            continue;
        }
        const std::size_t length = characterLength(text.substr(offset));
        if (length == 0)
            return offset;
        offset += length;
    }
    return offset;
}

bool isPlain(std::string_view text) noexcept {
    return text.find('\r') == std::string_view::npos && findForbidden(text) == text.size();
}

bool isName(std::string_view text) noexcept {
    for (std::size_t offset = 0; offset < text.size();) {
        std::uint32_t code = 0;
        const std::size_t length = decodeCharacter(text.substr(offset), code);
        if (length == 0 || !isNameCharacter(code, offset == 0))
            return false;
        offset += length;
    }
    return !text.empty();
}

bool isBlank(std::string_view text) noexcept {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string encodeName(std::string_view name) {
    if (name.empty())
        return std::string(emptyName);
    std::string encoded;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool isAllowed = i == 0 ? startsName(name[i]) : continuesName(name[i]);
        if (isAllowed && !(name[i] == '_' && looksEscaped(name, i)))
            encoded += name[i];
        else
            appendEscaped(encoded, name[i]);
    }
    return encoded;
}

std::string encodeReservedName(std::string_view name) {
    std::string encoded;
    appendEscaped(encoded, name.front());
    return name.size() == 1 ? encoded : encoded + encodeName("x" + std::string(name.substr(1))).substr(1);
}

std::string decodeName(std::string_view xmlName) {
    if (xmlName == emptyName)
        return {};
    constexpr std::size_t escapeLength = 5; // "_xHH_"
    std::string decoded;
    for (std::size_t i = 0; i < xmlName.size();) {
        const std::string_view escape = xmlName.substr(i, escapeLength);
        if (escape.size() == escapeLength && escape.starts_with("_x") && isUpperHex(escape[2]) &&
            isUpperHex(escape[3]) && escape.ends_with('_')) {
            decoded += fromHex(escape.substr(2, 2));
            i += escapeLength;
        } else {
            decoded += xmlName[i++];
        }
    }
    return decoded;
}

std::string encodeNamespace(std::string_view name) {
    std::string uri(namespacePrefix);
    for (const char byte : name) {
        if (continuesName(byte) || byte == '~') {
            uri += byte;
        } else {
            uri += '%';
            appendHex(uri, byte);
        }
    }
    return uri;
}

bool decodeNamespace(std::string_view uri, std::string& name) {
    if (!uri.starts_with(namespacePrefix) || uri.size() == namespacePrefix.size())
        return false;
    uri.remove_prefix(namespacePrefix.size());
    std::string decoded;
    for (std::size_t i = 0; i < uri.size(); ++i) {
        if (uri[i] != '%') {
            decoded += uri[i];
        } else if (i + 2 < uri.size() && isUpperHex(uri[i + 1]) && isUpperHex(uri[i + 2])) {
            decoded += fromHex(uri.substr(i + 1, 2));
            i += 2;
        } else {
            return false;
        }
    }
    name = std::move(decoded);
    return true;
}

bool decodeReferences(std::string_view text, std::string& decoded, std::size_t& place) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t reference = std::min(text.find('&', i), text.size());
        decoded += text.substr(i, reference - i);
        if (reference == text.size())
            return true;
        const std::size_t end = text.find(';', reference);
        if (end == std::string_view::npos ||
            !appendReference(decoded, text.substr(reference + 1, end - reference - 1))) {
            place = reference;
            return false;
        }
        i = end + 1;
    }
    return true;
}

} // namespace Qel::QelXmlText
