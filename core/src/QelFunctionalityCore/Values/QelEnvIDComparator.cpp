#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"

namespace Qel {

namespace {

// Constant-initialised, so that it may be set from any other file's static initialiser.
constinit QelEnvIDComparator::SortKeySource sortKeySource = nullptr;

} // namespace

void QelEnvIDComparator::setSortKeySource(SortKeySource source) noexcept {
    sortKeySource = source;
}

bool QelEnvIDComparator::isLessBySortKey(const QelEID& a, const QelEID& b) {
    if (sortKeySource == nullptr)
        return a < b;
    const std::optional<std::uint32_t> keyOfA = sortKeySource(a);
    const std::optional<std::uint32_t> keyOfB = sortKeySource(b);
    if (!keyOfA || !keyOfB || *keyOfA == *keyOfB)
        return a < b;
    return *keyOfA < *keyOfB;
}

} // namespace Qel
