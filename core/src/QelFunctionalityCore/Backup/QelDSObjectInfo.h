#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// What a storage records about an object that it holds.  Reading returns -1 if a field other than `info` is missing.
struct QEL_EXPORT QelDSObjectInfo : QelRecord<QelDSObjectInfo> {
    virtual ~QelDSObjectInfo() = default;

    long time = 0;      ///< when the object was stored; seconds since the epoch
    long long size = 0; ///< bytes
    int type = 0;
    std::string id;
    QelEID eid; ///< environment that holds the storage
    QelInfo info;

    void swap(QelDSObjectInfo& other) noexcept;

    static const QelWireLayout& wire;
};

} // namespace Qel
