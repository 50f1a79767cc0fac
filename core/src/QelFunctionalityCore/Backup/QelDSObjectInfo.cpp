#include "QelFunctionalityCore/Backup/QelDSObjectInfo.h"

#include <utility>

#include "QelMessage/QelWireTable.h"

namespace Qel {

void QelDSObjectInfo::swap(QelDSObjectInfo& other) noexcept {
    std::swap(time, other.time);
    std::swap(size, other.size);
    std::swap(type, other.type);
    id.swap(other.id);
    std::swap(eid, other.eid);
    info.swap(other.info);
}

template <> struct Wire<QelDSObjectInfo> : WireWords<QelDSObjectInfo> {
    static constexpr int nsId = 286, typeId = 175;
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, required, always),   field<&R::time>(1004, required, always, WireWords::time),
        field<&R::size>(1024, required, always), field<&R::type>(1007, required, always),
        field<&R::eid>(2028, required, always),  field<&R::info>(1134, ignored, always),
    };
};
const QelWireLayout& QelDSObjectInfo::wire = wireLayoutOf<QelDSObjectInfo>;

} // namespace Qel
