#include "QelFunctionalityCore/Security/QelInfrastructureNode.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

bool isFolderType(int type) {
    using Attributes = QelInfrastructureFolderAttributes;
    return type >= Attributes::leastType && type <= Attributes::greatestType;
}

} // namespace

template <> struct Wire<QelInfrastructureFolderAttributes> : WireWords<QelInfrastructureFolderAttributes> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),
        validated<&R::type, isFolderType>(1007, required, always),
        field<&R::description>(1496, optional, ifSet),
    };
};
const QelWireLayout& QelInfrastructureFolderAttributes::wire = wireLayoutOf<QelInfrastructureFolderAttributes>;

template <> struct Wire<QelInfrastructureNode> : WireWords<QelInfrastructureNode> {
    static constexpr QelWireField fields[] = {
        field<&R::nodeID>(1010, required, always),
        field<&R::parentID>(2241, required, always),
        field<&R::folder>(2240, optional, ifSet),
    };
};
const QelWireLayout& QelInfrastructureNode::wire = wireLayoutOf<QelInfrastructureNode>;

// On failure these writers return 1, the readers -1.  Callers test for nonzero.

int QelInfrastructureFolderAttributes::Writer::operator()(QelMessageIterator& cursor,
                                                          const QelInfrastructureFolderAttributes& attributes) const {
    return writeByLayout(QelInfrastructureFolderAttributes::wire, &attributes, cursor) == 0 ? 0 : 1;
}

int QelInfrastructureNode::Writer::operator()(QelMessageIterator& cursor, const QelInfrastructureNode& node) const {
    return writeByLayout(QelInfrastructureNode::wire, &node, cursor) == 0 ? 0 : 1;
}

} // namespace Qel
