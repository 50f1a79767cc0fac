#pragma once

#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// Flags of a file operation.  What those without a name of their own mean lies with the file service.
class QelFilerOptions {
public:
    enum Flag : unsigned {
        overwrite = 1, ///< an existing file may be written to
        option1151 = 2,
        option1140 = 4,
        option1138 = 16, ///< the two exclude each other: with both, option1139 is what reaches the reader
        option1139 = 32,
        option1170 = 64,
        option1174 = 128,
    };

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    QelFilerOptions() = default;
    explicit QelFilerOptions(unsigned flags) : m_flags(flags) {}

    [[nodiscard]] unsigned flags() const { return m_flags; }
    [[nodiscard]] bool has(Flag flag) const { return (m_flags & flag) != 0; }

private:
    unsigned m_flags = 0;
};

/// Replaces the flags by what the empty children of the current element tell.  Always 0.
struct QelFilerOptions::Reader {
    int operator()(const QelMessageIterator& cursor, QelFilerOptions& options) const;
};

/// Always 0.
struct QelFilerOptions::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelFilerOptions& options) const;
};

} // namespace Qel
