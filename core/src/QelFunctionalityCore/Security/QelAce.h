#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Rights on an object, as right numbers and as operation names.  The agent defines the meaning of the numbers.
struct QelObjectRights {
    QelGUID object;
    std::vector<int> rights;
    std::set<std::string> operations;

    using Reader = QelRecordReader<QelObjectRights>;
    using Writer = QelRecordWriter<QelObjectRights>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Granted rights.
struct QelAce : QelObjectRights {
    using Reader = QelReaderAs<QelObjectRights>;
    using Writer = QelWriterAs<QelObjectRights, 0, 50>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Rights to be checked.
struct QelCheck : QelObjectRights {
    using Reader = QelReaderAs<QelObjectRights>;
    using Writer = QelWriterAs<QelObjectRights, 0, 50>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
