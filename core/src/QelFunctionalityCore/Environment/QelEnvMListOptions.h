#pragma once

#include <set>
#include <string>

#include "QelFunctionalityCore/Environment/QelEnvStatus.h"

namespace Qel {

/// Filter of a request for a list of environments.
struct QelEnvMListOptions {
    static constexpr int anyCount = -1;

    int count = anyCount;          ///< maximum number of environments
    std::string type;              ///< only this type; empty: all types
    std::set<QelEnvStatus> states; ///< only these states; empty: all states

    using Reader = QelRecordReader<QelEnvMListOptions>;
    using Writer = QelRecordWriter<QelEnvMListOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
