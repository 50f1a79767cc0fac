#pragma once

#include <string>

#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Who the user of the management interface is.  The console gives the texts their meaning.
struct QelPersonalSettings : QelProfileRecord {
    std::string personalName;
    std::string personalText;

    using Reader = QelRecordReader<QelPersonalSettings>;
    using Writer = QelRecordWriter<QelPersonalSettings>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
