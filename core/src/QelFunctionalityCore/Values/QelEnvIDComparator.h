#pragma once

#include <cstdint>
#include <optional>

#include "QelCore/QelSortOrder.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

/// The order of sets of environment identifiers: with `sort_order_by_veid` by the numeric sort keys of the
/// environments, as unsigned numbers, where both are known and differ; in all other cases that of the identifiers.
///
/// Sort keys lie in the environment cache, so the order of a set depends on the cache while it is built, and is strict
/// only as long as the keys of its members stay as they are.
struct QelEnvIDComparator {
    /// Looks up an environment's sort key; nothing if the environment or the cache can't be had.
    using SortKeySource = std::optional<std::uint32_t> (*)(const QelEID&);

    /// Tells where sort keys come from, and gives back where they came from before.  To be called while the library is
    /// loaded, before sets are built; without it no key is known.
    static SortKeySource setSortKeySource(SortKeySource source) noexcept;

    bool operator()(const QelEID& a, const QelEID& b) const {
        return sort_order_by_veid == 0 ? a < b : isLessBySortKey(a, b);
    }

private:
    [[nodiscard]] static bool isLessBySortKey(const QelEID& a, const QelEID& b);
};

} // namespace Qel
