#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Attributes of a folder in the infrastructure tree.
struct QEL_EXPORT QelInfrastructureFolderAttributes : QelRecord<QelInfrastructureFolderAttributes> {
    static constexpr int leastType = 1;
    static constexpr int greatestType = 5;

    std::string name;
    int type = 0; ///< `leastType` to `greatestType`, checked by reads but not by writes
    QelOptionalProperty<std::string> description;

    struct Writer;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

/// 1 if a field could not be written.
struct QEL_EXPORT QelInfrastructureFolderAttributes::Writer : QelRecordWriter<QelInfrastructureFolderAttributes> {
    int operator()(QelMessageIterator& cursor, const QelInfrastructureFolderAttributes& attributes) const;
};

/// Position of an object in the infrastructure tree.
struct QEL_EXPORT QelInfrastructureNode : QelRecord<QelInfrastructureNode> {
    QelGUID nodeID;
    QelGUID parentID;
    QelOptionalProperty<QelInfrastructureFolderAttributes> folder; ///< folders only

    struct Writer;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

/// 1 if a field could not be written.
struct QEL_EXPORT QelInfrastructureNode::Writer : QelRecordWriter<QelInfrastructureNode> {
    int operator()(QelMessageIterator& cursor, const QelInfrastructureNode& node) const;
};

} // namespace Qel
