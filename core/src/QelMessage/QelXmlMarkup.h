#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// A scan of a document's markup before it is parsed.
namespace Qel::QelXmlMarkup {

struct Fault {
    std::size_t offset;
    std::string what;
};

/// The first fault that the parser doesn't report: two hyphens in a comment, a processing instruction whose target is
/// no name or reserved, more elements than a message may have.  The text is valid UTF-8; other faults are ignored.
[[nodiscard]] std::optional<Fault> findFault(std::string_view text);

} // namespace Qel::QelXmlMarkup
