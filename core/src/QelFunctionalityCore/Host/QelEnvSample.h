#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelOS.h"
#include "QelFunctionalityCore/Environment/QelVEnvConfig.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The version of a virtualisation technology.
struct QEL_EXPORT QelVtVersion : QelRecord<QelVtVersion> {
    std::string f1846;
    std::string f1276;
    std::string f2103;

    static const QelWireLayout& wire;
};

/// Names of file types.  Reading always succeeds.
struct QEL_EXPORT QelFileListType : QelRecord<QelFileListType> {
    std::vector<std::string> f2289;

    static const QelWireLayout& wire;
};

/// A configuration from which new environments are created.
struct QEL_EXPORT QelEnvSample : QelRecord<QelEnvSample> {
    QelGUID id;
    boost::shared_ptr<QelVEnvConfig> config; ///< may be null

    static const QelWireLayout& wire;
};

/// A sample with its name and version.
struct QEL_EXPORT QelSampleConf : QelRecord<QelSampleConf> {
    boost::shared_ptr<QelEnvConfig> config; ///< must not be null
    QelGUID id;
    std::string name;
    std::string f1034; ///< any bytes
    QelVtVersion vtVersion;

    static const QelWireLayout& wire;
};

/// Criteria for looking up a host.
struct QEL_EXPORT QelHNLookupInfoType : QelRecord<QelHNLookupInfoType> {
    std::string hostname;
    std::vector<std::string> f1072;
    QelOS os;

    /// Logs an error and returns -1 if the host name or the list cannot be read.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelHNLookupInfoType& info) const;
    };
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

} // namespace Qel
