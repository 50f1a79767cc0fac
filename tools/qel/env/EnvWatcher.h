#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Environment/QelEnvCache.h"

namespace Qel::Tool {

/// What happened to an environment between two looks at the cache.
struct EnvChange {
    enum class Kind : std::uint8_t { came, changed, went };

    Kind kind;
    QelEID eid;
    std::string title; ///< as it is now; of one that went as it was
    std::string parts; ///< what changed, as words: "status, alerts"
};

/// Tells what changed in a cache from one look at it to the next.
///
/// It keeps copies and no snapshot: writers aren't made to copy the list for somebody who looks once a second, and a
/// watcher that is killed leaves nothing behind.
class EnvWatcher {
public:
    /// The changes since the last look, in the order of the EIDs; at the first look every environment came.
    [[nodiscard]] std::vector<EnvChange> look(const QelEnvCache::EnvValuesList& list);

private:
    struct Known {
        std::string record; ///< without its reference count
        std::string title;
    };

    std::map<QelEID, Known> m_known;
};

} // namespace Qel::Tool
