#pragma once

#include "QelMessage/QelRecord.h"

namespace Qel {

/// Four limits on the numbers of users and groups.  What each of them bounds lies with the host's user service.
struct QelUGIDLimits {
    int limit1 = 0;
    int limit2 = 0;
    int limit3 = 0;
    int limit4 = 0;

    using Reader = QelRecordReader<QelUGIDLimits>;
    using Writer = QelRecordWriter<QelUGIDLimits>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
