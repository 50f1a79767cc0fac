#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// Validation of a document's markup before it is parsed.
namespace Qel::QelXmlMarkup {

struct Fault {
    std::size_t offset;
    std::string what;
};

/// The first error that the parser does not report: two hyphens in a comment, an invalid or reserved processing
/// instruction target, more elements than QelLimits::elements. `text` must be valid UTF-8. Other errors are ignored.
[[nodiscard]] std::optional<Fault> findFault(std::string_view text);

} // namespace Qel::QelXmlMarkup
