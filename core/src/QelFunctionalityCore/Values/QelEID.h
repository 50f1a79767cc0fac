#pragma once

#include "QelFunctionalityCore/Values/QelGUID.h"

namespace Qel {

/// The identifier of an environment.
class QelEID : public QelGUID {
public:
    constexpr QelEID() noexcept = default;
    constexpr QelEID(long long first, long long second) noexcept : QelGUID(first, second) {}
    constexpr QelEID(const QelGUID& guid) noexcept : QelGUID(guid) {}
};

} // namespace Qel
