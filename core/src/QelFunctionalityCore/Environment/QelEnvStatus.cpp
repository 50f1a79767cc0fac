#include "QelFunctionalityCore/Environment/QelEnvStatus.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelEnvStatus> : WireWords<QelEnvStatus> {
    static constexpr int nsId = 292, typeId = 118;
    static constexpr QelWireField fields[] = {
        field<&QelEnvStatus::state>(1421, ignored, always),
        field<&QelEnvStatus::transition>(1588, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelEnvStatus>() {
    return wireLayoutOf<QelEnvStatus>;
}

} // namespace Qel
