#include "QelFunctionalityCore/Environment/QelEnvStatus.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelEnvStatus> : WireWords<QelEnvStatus> {
    static constexpr int nsId = 292, typeId = 118;
    static constexpr QelWireField fields[] = {
        field<&R::state>(1421, ignored, always),
        field<&R::transition>(1588, ignored, ifSet),
    };
};
const QelWireLayout& QelEnvStatus::wire = wireLayoutOf<QelEnvStatus>;

} // namespace Qel
