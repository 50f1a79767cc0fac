#pragma once

#include <set>
#include <string>

#include "QelFunctionalityCore/Environment/QelEnvStatus.h"

namespace Qel {

/// What a request for a list of environments asks for.
struct QelEnvMListOptions {
    static constexpr int anyCount = -1;

    int count = anyCount;          ///< at most so many environments
    std::string type;              ///< of this type; empty for every type
    std::set<QelEnvStatus> states; ///< in one of these states; empty for every state

    using Reader = QelRecordReader<QelEnvMListOptions>;
    using Writer = QelRecordWriter<QelEnvMListOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
