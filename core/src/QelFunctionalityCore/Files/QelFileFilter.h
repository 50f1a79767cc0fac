#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Criteria of a file search.  A criterion applies if its bit is in the mask.  Reading always returns 0: a field that
/// cannot be read is not a criterion.
struct QEL_EXPORT QelFileFilter : QelRecord<QelFileFilter> {
    enum ValidMask : unsigned {
        validType = 1,
        validUserName = 2,
        validUid = 4,
        validUserRange = 8,
        validGroupName = 16,
        validGid = 32,
        validGroupRange = 64,
        validTimeFrom = 128,
        validTimeTo = 256,
        validSizeTo = 512,
        validSizeFrom = 1024,
        validName = 2048,
        validPath = 4096,
    };
    /// A range of user or group IDs, including both ends.
    struct Range {
        int from = 0;
        int to = 0;
    };

    std::string name; ///< may contain any bytes, as may `path`
    int type = 0;
    std::string path;   ///< where the search starts
    long mtimeFrom = 0; ///< seconds since the epoch, as is `mtimeTo`
    long mtimeTo = 0;
    long long sizeFrom = 0; ///< bytes, as is `sizeTo`
    long long sizeTo = 0;
    /// Owner and group each have three forms, of which one applies.  Writing prefers the range, then the name, then the
    /// number.  Reading prefers the name, then the number, then the range.
    Range userRange;
    std::string userName;
    int uid = 0;
    Range groupRange;
    std::string groupName;
    int gid = 0;
    unsigned validMask = 0; ///< bits of ValidMask

    void setValid(unsigned bit) { validMask |= bit; }
    [[nodiscard]] bool isValid(unsigned bit) const { return (validMask & bit) != 0; }

    static const QelWireLayout& wire;
};

} // namespace Qel
