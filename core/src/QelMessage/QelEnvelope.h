#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Qel {

/// The metadata of a message. An empty string is an unset field.
struct QelEnvelope {
    std::optional<long> time; ///< seconds since the epoch
    std::string requestId;
    std::string sender; ///< the sending agent's identifier, a GUID in its string form
    std::string session;
    std::string origin;
    std::vector<std::string> subscriptions; ///< in the order in which they were added

    /// Subscription names are encoded as a space-separated list, so they must not be empty or contain white space.
    [[nodiscard]] static bool isSubscription(std::string_view name) noexcept {
        return !name.empty() && name.find_first_of(" \t\r\n") == std::string_view::npos;
    }

    bool operator==(const QelEnvelope&) const = default;
};

} // namespace Qel
