#pragma once

#include <string>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// How a client that takes a long list page by page wants it sorted.
struct QelPagerSortCondition {
    std::string column;      ///< what the list's service calls it
    bool descending = false; ///< stays as it was where the message doesn't tell it

    using Reader = QelRecordReader<QelPagerSortCondition>;
    using Writer = QelRecordWriter<QelPagerSortCondition>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
