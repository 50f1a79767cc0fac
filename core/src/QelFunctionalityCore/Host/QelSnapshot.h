#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Environment/QelEnvConfig.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A snapshot of an environment.
struct QelSnapshot {
    QelGUID id;
    std::string name;
    std::string text1026;
    std::string description;                ///< any bytes
    boost::shared_ptr<QelEnvConfig> config; ///< what the environment was; may be null

    /// -1 when `id`, `name` or `text1026` can't be read; the rest is read all the same.  A configuration is read into
    /// the object that is there, and one that can't be read leaves none.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelSnapshot& snapshot) const;
    };
    using Writer = QelRecordWriter<QelSnapshot>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
