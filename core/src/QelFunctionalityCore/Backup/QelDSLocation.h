#pragma once

#include <string>

#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A storage of backups, and as whom to enter it.
struct QelDSLocation {
    int type = 0;
    std::string path;
    QelAuthName authName;
    std::string password; ///< goes out as it is, in no other form; never to be logged

    using Reader = QelRecordReader<QelDSLocation>;
    using Writer = QelRecordWriter<QelDSLocation>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The storage that a service works with.
struct QelDSConfiguration {
    QelDSLocation location;

    using Reader = QelRecordReader<QelDSConfiguration>;
    using Writer = QelRecordWriter<QelDSConfiguration>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
