#pragma once

#include "QelCore/QelGUIDBase.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// A 128-bit identifier that travels as its text, in the value of the element.
class QelGUID : public QelGUIDBase {
public:
    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    using QelGUIDBase::QelGUIDBase;
    constexpr QelGUID() noexcept = default;
};

/// -1 if the element has no value or its text is not an identifier; the identifier then stays as it was.
struct QelGUID::Reader {
    int operator()(const QelMessageIterator& cursor, QelGUID& guid) const;
};

struct QelGUID::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelGUID& guid) const;
};

} // namespace Qel
