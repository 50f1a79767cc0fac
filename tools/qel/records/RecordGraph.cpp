#include "qel/records/RecordGraph.h"

#include <algorithm>

#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelMessage/QelNames.h"
#include "QelMessage/QelWireLayout.h"

namespace Qel::Tool {

bool RecordNode::isTyped() const {
    constexpr int greatestPlainType = 100;
    return typeId > greatestPlainType;
}

std::string RecordNode::complexType() const {
    const std::string ns = QelNames::namespaceName(nsId);
    return ns.empty() ? QelNames::typeName(typeId) : ns + ':' + QelNames::typeName(typeId);
}

RecordNode recordOf(const QelRecordType& type) {
    return {std::string(type.name), type.layout, type.nsId, type.typeId};
}

RecordNode recordOf(const QelWireCodec& codec) {
    const QelWireLayout* const layout = codec.layout ? codec.layout() : nullptr;
    const std::string_view name = layout ? layout->typeName : codec.typeName;
    if (const QelRecordType* const type = findRecordType(name)) {
        RecordNode record = recordOf(*type);
        if (layout)
            record.layout = layout;
        return record;
    }
    return {std::string(name), layout, layout ? layout->nsId : 0, layout ? layout->typeId : 0};
}

std::vector<RecordNode> recordsOf(const QelWireClasses& classes) {
    std::vector<RecordNode> records;
    for (const QelRecordType& type : recordTypes()) {
        RecordNode record = recordOf(type);
        if (std::binary_search(classes.types.begin(), classes.types.end(), record.complexType()))
            records.push_back(std::move(record));
    }
    return records;
}

std::vector<RecordNode> recordsIn(const QelWireCodec& codec) {
    switch (codec.kind) {
    case QelWireKind::record:
    case QelWireKind::base:
        return {recordOf(codec)};
    case QelWireKind::derived:
        return recordsOf(codec.classes());
    case QelWireKind::group: {
        std::vector<RecordNode> records;
        for (const QelWireField& field : codec.layout()->fields)
            for (RecordNode& record : recordsIn(*field.codec))
                records.push_back(std::move(record));
        return records;
    }
    default:
        return codec.item ? recordsIn(*codec.item) : std::vector<RecordNode>();
    }
}

} // namespace Qel::Tool
