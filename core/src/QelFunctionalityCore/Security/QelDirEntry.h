#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

using QelNamedStrListProperty = QelNamedProperty<std::vector<std::string>, QelProperty>;

/// -1 for an attribute without a name.
struct QelDirAttributeReader {
    int operator()(const QelMessageIterator& cursor, QelNamedStrListProperty& attribute) const;
};

struct QelDirAttributeWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelNamedStrListProperty& attribute) const;
};

/// An attribute of a directory entry: its name and its values.
struct QelDirAttribute : QelNamedStrListProperty {
    using QelNamedStrListProperty::QelNamedProperty;
    using QelNamedStrListProperty::operator=;

    using Reader = QelDirAttributeReader;
    using Writer = QelDirAttributeWriter;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// An entry of a directory.
struct QelDirEntry {
    std::string dn; ///< its distinguished name
    std::vector<QelDirAttribute> attributes;

    using Reader = QelRecordReader<QelDirEntry>;
    /// -1 when the name isn't taken, and what a list gives, 1, when an attribute isn't.
    struct Writer : QelRecordWriter<QelDirEntry> {
        int operator()(QelMessageIterator& cursor, const QelDirEntry& entry) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
