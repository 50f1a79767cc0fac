#pragma once

#include <string>

#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// What makes an object of the infrastructure tree a folder.
struct QelInfrastructureFolderAttributes {
    static constexpr int leastType = 1;
    static constexpr int greatestType = 5;

    std::string name;
    int type = 0; ///< `leastType` to `greatestType`: another one is written but not read
    QelOptionalProperty<std::string> description;

    using Reader = QelRecordReader<QelInfrastructureFolderAttributes>;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// 1 when a field could not be written.
struct QelInfrastructureFolderAttributes::Writer : QelRecordWriter<QelInfrastructureFolderAttributes> {
    int operator()(QelMessageIterator& cursor, const QelInfrastructureFolderAttributes& attributes) const;
};

/// An object's place in the infrastructure tree.
struct QelInfrastructureNode {
    QelGUID nodeID;
    QelGUID parentID;
    QelOptionalProperty<QelInfrastructureFolderAttributes> folder; ///< of a folder only

    using Reader = QelRecordReader<QelInfrastructureNode>;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// 1 when a field could not be written.
struct QelInfrastructureNode::Writer : QelRecordWriter<QelInfrastructureNode> {
    int operator()(QelMessageIterator& cursor, const QelInfrastructureNode& node) const;
};

} // namespace Qel
