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
        field<&QelDSObjectInfo::id>(1010, required, always),
        field<&QelDSObjectInfo::time>(1004, required, always, WireWords::time),
        field<&QelDSObjectInfo::size>(1024, required, always),
        field<&QelDSObjectInfo::type>(1007, required, always),
        field<&QelDSObjectInfo::eid>(2028, required, always),
        field<&QelDSObjectInfo::info>(1134, ignored, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelDSObjectInfo>() {
    return wireLayoutOf<QelDSObjectInfo>;
}

} // namespace Qel
