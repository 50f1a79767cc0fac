#pragma once

#include <cstdint>
#include <optional>

#include "QelCommon/Export.h"
#include "QelCore/QelSortOrder.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

/// Ordering for sets of environment identifiers.  If `sort_order_by_veid` is nonzero and the sort keys of both
/// environments are known and differ, compares the keys as unsigned numbers; otherwise compares the identifiers.
///
/// Sort keys are stored in the environment cache.  The order of a set therefore depends on the cache content at
/// insertion, and is a strict weak ordering only as long as the keys of its members do not change.
struct QEL_EXPORT QelEnvIDComparator {
    /// Returns an environment's sort key; nullopt if the environment is unknown or the cache is unavailable.
    using SortKeySource = std::optional<std::uint32_t> (*)(const QelEID&);

    /// Sets the sort key source and returns the previous one.  Call it during library load, before any set is built.
    /// Null, the initial value: no key is known.
    static SortKeySource setSortKeySource(SortKeySource source) noexcept;

    bool operator()(const QelEID& a, const QelEID& b) const {
        return sort_order_by_veid == 0 ? a < b : isLessBySortKey(a, b);
    }

private:
    [[nodiscard]] static bool isLessBySortKey(const QelEID& a, const QelEID& b);
};

} // namespace Qel
