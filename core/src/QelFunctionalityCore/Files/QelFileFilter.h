#pragma once

#include <string>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// Which files a search is for.  A criterion counts if its bit is in the mask.
struct QelFileFilter {
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
    /// Numbers of users or groups, both ends included.
    struct Range {
        int from = 0;
        int to = 0;
    };

    std::string name; ///< may hold any bytes, as may `path`
    int type = 0;
    std::string path;   ///< where the search begins
    long mtimeFrom = 0; ///< seconds since the epoch, as is `mtimeTo`
    long mtimeTo = 0;
    long long sizeFrom = 0; ///< bytes, as is `sizeTo`
    long long sizeTo = 0;
    /// The owner, and the group, is told in one of three forms.  A writer takes the range before the name and the name
    /// before the number; a reader takes the name before the number, and that before the range.
    Range userRange;
    std::string userName;
    int uid = 0;
    Range groupRange;
    std::string groupName;
    int gid = 0;
    unsigned validMask = 0; ///< of ValidMask

    void setValid(unsigned bit) { validMask |= bit; }
    [[nodiscard]] bool isValid(unsigned bit) const { return (validMask & bit) != 0; }

    /// Always 0: what can't be read isn't a criterion.
    using Reader = QelRecordReader<QelFileFilter>;
    using Writer = QelRecordWriter<QelFileFilter>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
