#pragma once

#include <algorithm>
#include <array>
#include <string_view>

/// Names with a predefined meaning in the text form.
namespace Qel::QelXmlNames {

inline constexpr const char* message = "message";

inline constexpr const char* schemaInstance = "http://www.w3.org/2001/XMLSchema-instance";
inline constexpr const char* schemaInstancePrefix = "xsi";
inline constexpr const char* type = "type"; ///< in schemaInstance
inline constexpr const char* declaration = "xmlns";
inline constexpr const char* declarationNamespace = "http://www.w3.org/2000/xmlns/";
/// A prefix that is implicitly declared in every document and must not be used for anything else.
inline constexpr const char* reserved = "xml";
inline constexpr const char* reservedNamespace = "http://www.w3.org/XML/1998/namespace";

/// Attribute that marks an element whose value XML cannot represent; the only encoding is `base64`.
inline constexpr const char* encoding = "encoding";
inline constexpr const char* base64 = "base64";
/// Attribute that lists the names of the element's attributes whose values are base64-encoded.
inline constexpr const char* base64Attributes = "base64-attributes";

/// The envelope: attributes of `message`.
inline constexpr const char* time = "time";
inline constexpr const char* requestId = "request-id";
inline constexpr const char* sender = "sender";
inline constexpr const char* session = "session";
inline constexpr const char* origin = "origin";
inline constexpr const char* subscriptions = "subscriptions";

/// True if an attribute of an element must not have this name. Those of the envelope are reserved on `message` only.
[[nodiscard]] inline bool isReservedAttribute(std::string_view name, bool isMessage) noexcept {
    constexpr std::array<std::string_view, 3> everywhere{declaration, encoding, base64Attributes};
    constexpr std::array<std::string_view, 6> envelope{time, requestId, sender, session, origin, subscriptions};
    return std::ranges::find(everywhere, name) != everywhere.end() ||
           (isMessage && std::ranges::find(envelope, name) != envelope.end());
}

} // namespace Qel::QelXmlNames
