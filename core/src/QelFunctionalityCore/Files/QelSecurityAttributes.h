#pragma once

#include "QelMessage/QelRecord.h"

namespace Qel {

/// What a new file is created with.
struct QelSecurityAttributes {
    int mode = 0777; ///< permissions, as of chmod(2); the process's umask takes nothing from them

    using Reader = QelRecordReader<QelSecurityAttributes>;
    using Writer = QelRecordWriter<QelSecurityAttributes>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
