#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

using QelNamedStrListProperty = QelNamedProperty<std::vector<std::string>, QelProperty>;

/// -1 if the attribute has no name.
struct QEL_EXPORT QelDirAttributeReader {
    int operator()(const QelMessageIterator& cursor, QelNamedStrListProperty& attribute) const;
};

struct QEL_EXPORT QelDirAttributeWriter : QelWriterBase {
    int operator()(QelMessageIterator& cursor, const QelNamedStrListProperty& attribute) const;
};

/// An attribute of a directory entry: its name and values.
struct QelDirAttribute : QelNamedStrListProperty {
    using QelNamedStrListProperty::QelNamedProperty;
    using QelNamedStrListProperty::operator=;

    using Reader = QelDirAttributeReader;
    using Writer = QelDirAttributeWriter;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// An entry of a directory.
struct QEL_EXPORT QelDirEntry : QelRecord<QelDirEntry> {
    std::string dn; ///< distinguished name
    std::vector<QelDirAttribute> attributes;

    /// -1 if the name cannot be written; 1, the failure code of list writers, if an attribute cannot be written.
    struct Writer : QelRecordWriter<QelDirEntry> {
        int operator()(QelMessageIterator& cursor, const QelDirEntry& entry) const;
    };
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

} // namespace Qel
