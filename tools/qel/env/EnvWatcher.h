#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Environment/QelEnvCache.h"

namespace Qel::Tool {

/// A change of an environment between two calls of EnvWatcher::poll().
struct EnvChange {
    enum class Kind : std::uint8_t { added, changed, removed };

    Kind kind;
    QelEID eid;
    std::string title; ///< the current title, or the last one of a removed environment
    std::string parts; ///< the changed parts: "status, alerts"
};

/// Detects changes in a cache by polling.
///
/// Keeps copies of the records instead of a snapshot: a snapshot held between polls would force writers to copy the
/// list, and would leak if the watcher was killed.
class EnvWatcher {
public:
    /// Returns the changes since the last call, sorted by EID.  The first call reports every environment as added.
    [[nodiscard]] std::vector<EnvChange> poll(const QelEnvCache::EnvValuesList& list);

private:
    struct Known {
        std::string record; ///< without its reference count
        std::string title;
    };

    std::map<QelEID, Known> m_known;
};

} // namespace Qel::Tool
