#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// How names and texts that XML can't hold as they are travel in it.
namespace Qel::QelXmlText {

/// Offset of the first byte that no XML 1.0 document in UTF-8 holds: of malformed UTF-8, a control character other than
/// tab, line feed and carriage return, or U+FFFE and U+FFFF; the length if there is none.
[[nodiscard]] std::size_t findForbidden(std::string_view text) noexcept;

/// True if the text can stand in a document, with nothing but "&", "<" and their like escaped, and is read back equal.
/// A carriage return can't, since every reader makes a line feed of it.
[[nodiscard]] bool isPlain(std::string_view text) noexcept;

/// True for a name without a colon (NCName in "Namespaces in XML 1.0").  The text is valid UTF-8.
[[nodiscard]] bool isName(std::string_view text) noexcept;

/// True if the text consists of blanks, tabs and line ends only, or is empty.
[[nodiscard]] bool isBlank(std::string_view text) noexcept;

/// Any bytes as an XML name without a colon, and the reverse.  ASCII letters, digits, "-", "." and "_" stand for
/// themselves where XML allows them; every other byte is "_xHH_" with two upper-case hexadecimal digits, and an
/// underscore that could be taken for the beginning of that is written so, too.  No bytes at all are "_x_".
[[nodiscard]] std::string encodeName(std::string_view name);
[[nodiscard]] std::string decodeName(std::string_view xmlName);
/// The same, but with the first character encoded, so that the name differs from one that means something else.
[[nodiscard]] std::string encodeReservedName(std::string_view name);

/// The URI of a namespace, and the reverse: "urn:qel:" and the name, in which everything but letters, digits, "-",
/// ".", "_" and "~" is percent-encoded (RFC 3986).
[[nodiscard]] std::string encodeNamespace(std::string_view name);
/// False, and `name` unchanged, if the URI isn't that of a namespace of this system.
[[nodiscard]] bool decodeNamespace(std::string_view uri, std::string& name);

/// Replaces the references in a text ("&lt;", "&#10;").  False if one isn't a character's, or not one of the five that
/// XML has without declarations; `place` is then its offset.
[[nodiscard]] bool decodeReferences(std::string_view text, std::string& decoded, std::size_t& place);

} // namespace Qel::QelXmlText
