#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"

#include <utility>

namespace Qel {

namespace {

// Constant-initialised: static initialisers of other translation units may set it.
constinit QelEnvIDComparator::SortKeySource sortKeySource = nullptr;

} // namespace

QelEnvIDComparator::SortKeySource QelEnvIDComparator::setSortKeySource(SortKeySource source) noexcept {
    return std::exchange(sortKeySource, source);
}

bool QelEnvIDComparator::isLessBySortKey(const QelEID& a, const QelEID& b) {
    if (sortKeySource == nullptr)
        return a < b;
    const std::optional<std::uint32_t> keyOfA = sortKeySource(a);
    // If the first key is unknown, the identifiers decide: an unavailable cache is queried only once per comparison.
    const std::optional<std::uint32_t> keyOfB = keyOfA ? sortKeySource(b) : std::nullopt;
    if (!keyOfB || *keyOfA == *keyOfB)
        return a < b;
    return *keyOfA < *keyOfB;
}

} // namespace Qel
