#pragma once

#include <string>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// Sort order requested by a client that fetches a long list page by page.
struct QelPagerSortCondition {
    std::string column;      ///< column name, defined by the service of the list
    bool descending = false; ///< unchanged if the message has none

    using Reader = QelRecordReader<QelPagerSortCondition>;
    using Writer = QelRecordWriter<QelPagerSortCondition>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
