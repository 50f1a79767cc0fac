#pragma once

#include <string>

#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A backup storage and the account to access it with.
struct QelDSLocation {
    int type = 0;
    std::string path;
    QelAuthName authName;
    std::string password; ///< sent as plain text, not base64; never log it

    using Reader = QelRecordReader<QelDSLocation>;
    using Writer = QelRecordWriter<QelDSLocation>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The storage that a service uses.
struct QelDSConfiguration {
    QelDSLocation location;

    using Reader = QelRecordReader<QelDSConfiguration>;
    using Writer = QelRecordWriter<QelDSConfiguration>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
