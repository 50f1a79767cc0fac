#pragma once

#include "QelCommon/Export.h"
#include "QelCore/QelGUIDBase.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// A 128-bit identifier.  Its wire form is its string form, stored as the value of the element.
class QelGUID : public QelGUIDBase {
public:
    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    using QelGUIDBase::QelGUIDBase;
    constexpr QelGUID() noexcept = default;
};

/// -1, and `guid` unchanged, if the element has no value or the value is not a GUID.
struct QEL_EXPORT QelGUID::Reader {
    int operator()(const QelMessageIterator& cursor, QelGUID& guid) const;
};

struct QEL_EXPORT QelGUID::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelGUID& guid) const;
};

} // namespace Qel
