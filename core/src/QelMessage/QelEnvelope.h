#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Qel {

/// What a message says about itself.  An empty text is a field that is unset.
struct QelEnvelope {
    std::optional<long> time; ///< seconds since the epoch
    std::string requestId;
    std::string sender; ///< the sending agent's identifier, a GUID in text form
    std::string session;
    std::string origin;
    std::vector<std::string> subscriptions; ///< in the order they were added

    /// Subscription names are written side by side with blanks between them, so that they neither are empty nor hold
    /// white space.
    [[nodiscard]] static bool isSubscription(std::string_view name) noexcept {
        return !name.empty() && name.find_first_of(" \t\r\n") == std::string_view::npos;
    }

    bool operator==(const QelEnvelope&) const = default;
};

} // namespace Qel
