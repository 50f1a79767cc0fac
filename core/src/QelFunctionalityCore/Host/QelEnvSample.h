#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Environment/QelOS.h"
#include "QelFunctionalityCore/Environment/QelVEnvConfig.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The version of a virtualisation technology.
struct QelVtVersion {
    std::string f1846;
    std::string f1276;
    std::string f2103;

    using Reader = QelRecordReader<QelVtVersion>;
    using Writer = QelRecordWriter<QelVtVersion>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Names of file types.  Reading always succeeds.
struct QelFileListType {
    std::vector<std::string> f2289;

    using Reader = QelRecordReader<QelFileListType>;
    using Writer = QelRecordWriter<QelFileListType>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A configuration from which new environments are created.
struct QelEnvSample {
    QelGUID id;
    boost::shared_ptr<QelVEnvConfig> config; ///< may be null

    using Reader = QelRecordReader<QelEnvSample>;
    using Writer = QelRecordWriter<QelEnvSample>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A sample with its name and version.
struct QelSampleConf {
    boost::shared_ptr<QelEnvConfig> config; ///< must not be null
    QelGUID id;
    std::string name;
    std::string f1034; ///< any bytes
    QelVtVersion vtVersion;

    using Reader = QelRecordReader<QelSampleConf>;
    using Writer = QelRecordWriter<QelSampleConf>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Criteria for looking up a host.
struct QelHNLookupInfoType {
    std::string hostname;
    std::vector<std::string> f1072;
    QelOS os;

    /// Logs an error and returns -1 if the host name or the list cannot be read.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelHNLookupInfoType& info) const;
    };
    using Writer = QelRecordWriter<QelHNLookupInfoType>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
