#pragma once

#include <string>

#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// How a graphical console is reached.
struct QelVncConnectionInfo {
    std::string password; ///< must be there, though it may be empty; never to be logged
    QelOptionalProperty<QelConnectivityInfo> server2308;
    QelOptionalProperty<QelConnectivityInfo> server2309;

    using Reader = QelRecordReader<QelVncConnectionInfo>;
    using Writer = QelRecordWriter<QelVncConnectionInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A graphical console.  It stands at the same element as its connection, and bears that one's type.
struct QelVncConsoleInfo {
    QelOptionalProperty<int> value2310;
    int value2311 = 0; ///< 0 after a failed read
    int value2312 = 0; ///< the same
    QelVncConnectionInfo connection;

    using Reader = QelRecordReader<QelVncConsoleInfo>;
    using Writer = QelRecordWriter<QelVncConsoleInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
