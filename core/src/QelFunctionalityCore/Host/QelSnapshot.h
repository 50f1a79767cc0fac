#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelEnvConfig.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A snapshot of an environment.
struct QEL_EXPORT QelSnapshot : QelRecord<QelSnapshot> {
    QelGUID id;
    std::string name;
    std::string text1026;
    std::string description;                ///< any bytes
    boost::shared_ptr<QelEnvConfig> config; ///< of the environment when the snapshot was taken; may be null

    /// -1 if `id`, `name` or `text1026` cannot be read; the other fields are still read.  An existing configuration
    /// object is reused; if reading the configuration fails, the pointer becomes null.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelSnapshot& snapshot) const;
    };
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

} // namespace Qel
