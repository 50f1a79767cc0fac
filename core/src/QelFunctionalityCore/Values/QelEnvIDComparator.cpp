#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"

#include <utility>

namespace Qel {

namespace {

// Constant-initialised, so that it may be set from any other file's static initialiser.
constinit QelEnvIDComparator::SortKeySource sortKeySource = nullptr;

} // namespace

QelEnvIDComparator::SortKeySource QelEnvIDComparator::setSortKeySource(SortKeySource source) noexcept {
    return std::exchange(sortKeySource, source);
}

bool QelEnvIDComparator::isLessBySortKey(const QelEID& a, const QelEID& b) {
    if (sortKeySource == nullptr)
        return a < b;
    const std::optional<std::uint32_t> keyOfA = sortKeySource(a);
    // One unknown key is enough, and a cache that can't be had is asked for once a comparison only.
    const std::optional<std::uint32_t> keyOfB = keyOfA ? sortKeySource(b) : std::nullopt;
    if (!keyOfB || *keyOfA == *keyOfB)
        return a < b;
    return *keyOfA < *keyOfB;
}

} // namespace Qel
