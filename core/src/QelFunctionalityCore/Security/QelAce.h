#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// An object, and what may be done with it: by numbers, and by names of operations.  The agent settles the numbers.
struct QelObjectRights {
    QelGUID object;
    std::vector<int> rights;
    std::set<std::string> operations;

    using Reader = QelRecordReader<QelObjectRights>;
    using Writer = QelRecordWriter<QelObjectRights>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Rights that are granted.
struct QelAce : QelObjectRights {
    using Reader = QelReaderAs<QelObjectRights>;
    using Writer = QelWriterAs<QelObjectRights, 0, 50>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Rights that are asked for.
struct QelCheck : QelObjectRights {
    using Reader = QelReaderAs<QelObjectRights>;
    using Writer = QelWriterAs<QelObjectRights, 0, 50>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
