#pragma once

#include <string>

#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// What a storage knows of an object that it holds.
struct QelDSObjectInfo {
    virtual ~QelDSObjectInfo() = default;

    long time = 0;      ///< when it was stored; seconds since the epoch
    long long size = 0; ///< bytes
    int type = 0;
    std::string id;
    QelEID eid; ///< the environment that holds the storage
    QelInfo info;

    void swap(QelDSObjectInfo& other) noexcept;

    /// -1 unless everything but the info is there.
    using Reader = QelRecordReader<QelDSObjectInfo>;
    using Writer = QelRecordWriter<QelDSObjectInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
