#pragma once

#include <string>

#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Identity of the user of the management interface.  The console defines the strings.
struct QelPersonalSettings : QelProfileRecord {
    std::string personalName;
    std::string personalText;

    using Reader = QelRecordReader<QelPersonalSettings>;
    using Writer = QelRecordWriter<QelPersonalSettings>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
