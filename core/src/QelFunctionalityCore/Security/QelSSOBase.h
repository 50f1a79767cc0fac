#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Location of the single sign-on server.
struct QEL_EXPORT QelSSOServerConfig : QelRecord<QelSSOServerConfig> {
    std::string server;
    std::string serverVersion;
    bool enabled = false;

    struct Reader;
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

/// Logs an error and returns -1 if a required parameter is missing.
struct QEL_EXPORT QelSSOServerConfig::Reader {
    int operator()(const QelMessageIterator& cursor, QelSSOServerConfig& config) const;
};

/// Registration of a service with the single sign-on server.  Fields named after their element ID are opaque data of
/// the server.
struct QEL_EXPORT QelSSOServiceProviderConfig : QelRecord<QelSSOServiceProviderConfig> {
    std::string name;
    bool enabled = false;
    std::string field2137;
    std::string field2138;
    std::string field2139;
    std::string field2140; ///< any bytes; optional
    std::string field2141; ///< optional
    std::string field2142;
    std::string field2143;
    std::string field2144;       ///< any bytes
    std::string providerVersion; ///< optional

    struct Reader;
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

/// Logs an error and returns -1 if a required parameter is missing.
struct QEL_EXPORT QelSSOServiceProviderConfig::Reader {
    int operator()(const QelMessageIterator& cursor, QelSSOServiceProviderConfig& config) const;
};

} // namespace Qel
