#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Escaping of names and values that XML cannot represent directly.
namespace Qel::QelXmlText {

/// Offset of the first byte that is not allowed in an XML 1.0 document in UTF-8: malformed UTF-8, a control character
/// other than tab, line feed and carriage return, U+FFFE or U+FFFF. The length if there is none.
[[nodiscard]] std::size_t findForbidden(std::string_view text) noexcept;

/// True if `text` can be written to a document with only "&", "<" and similar characters escaped, and is read back
/// unchanged. Text with a carriage return cannot, since XML parsers convert it to a line feed.
[[nodiscard]] bool isPlain(std::string_view text) noexcept;

/// True for a name without a colon (NCName in "Namespaces in XML 1.0"). `text` must be valid UTF-8.
[[nodiscard]] bool isName(std::string_view text) noexcept;

/// True if the string is empty or consists only of spaces, tabs and line ends.
[[nodiscard]] bool isBlank(std::string_view text) noexcept;

/// Encodes any bytes as an XML name without a colon, and decodes it. ASCII letters, digits, "-", "." and "_" are kept
/// where XML allows them. Every other byte becomes "_xHH_" with two upper-case hexadecimal digits, and so does an
/// underscore that could be taken for the start of an escape. The empty string becomes "_x_".
[[nodiscard]] std::string encodeName(std::string_view name);
[[nodiscard]] std::string decodeName(std::string_view xmlName);
/// Like encodeName(), but always escapes the first character, so that the result differs from a reserved name.
[[nodiscard]] std::string encodeReservedName(std::string_view name);

/// Converts the name of a namespace to its URI and back: "urn:qel:" followed by the name, with everything but letters,
/// digits, "-", ".", "_" and "~" percent-encoded (RFC 3986).
[[nodiscard]] std::string encodeNamespace(std::string_view name);
/// Returns false and leaves `name` unchanged if the URI was not produced by encodeNamespace().
[[nodiscard]] bool decodeNamespace(std::string_view uri, std::string& name);

/// Replaces character references ("&#10;") and the five predefined entity references ("&lt;"). Returns false for any
/// other or a malformed reference, and stores its offset in `place`.
[[nodiscard]] bool decodeReferences(std::string_view text, std::string& decoded, std::size_t& place);

} // namespace Qel::QelXmlText
