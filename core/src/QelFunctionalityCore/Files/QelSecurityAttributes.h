#pragma once

#include "QelMessage/QelRecord.h"

namespace Qel {

/// Attributes of a new file.
struct QelSecurityAttributes {
    int mode = 0777; ///< permissions as in chmod(2), not restricted by the umask

    using Reader = QelRecordReader<QelSecurityAttributes>;
    using Writer = QelRecordWriter<QelSecurityAttributes>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
