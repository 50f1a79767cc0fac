#pragma once

#include <string>

#include "QelMessage/QelRecord.h"

namespace Qel {

/// Where the single sign-on server is.
struct QelSSOServerConfig {
    std::string server;
    std::string serverVersion;
    bool enabled = false;

    struct Reader;
    using Writer = QelRecordWriter<QelSSOServerConfig>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// -1, and an error in the log, if a parameter that must be set is missing.
struct QelSSOServerConfig::Reader {
    int operator()(const QelMessageIterator& cursor, QelSSOServerConfig& config) const;
};

/// How a service registers with the single sign-on server.  The fields that have the number of their element for a name
/// are the server's: they are carried and not looked at.
struct QelSSOServiceProviderConfig {
    std::string name;
    bool enabled = false;
    std::string field2137;
    std::string field2138;
    std::string field2139;
    std::string field2140; ///< any bytes; may be left out
    std::string field2141; ///< may be left out
    std::string field2142;
    std::string field2143;
    std::string field2144;       ///< any bytes
    std::string providerVersion; ///< may be left out

    struct Reader;
    using Writer = QelRecordWriter<QelSSOServiceProviderConfig>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// -1, and an error in the log, if a parameter that must be set is missing.
struct QelSSOServiceProviderConfig::Reader {
    int operator()(const QelMessageIterator& cursor, QelSSOServiceProviderConfig& config) const;
};

} // namespace Qel
