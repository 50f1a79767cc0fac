#include "QelFunctionalityCore/Host/QelDisk.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDiskPartition> : WireWords<QelDiskPartition> {
    static constexpr QelWireField fields[] = {
        field<&QelDiskPartition::name>(1026, required, always),
        field<&QelDiskPartition::f1297>(1297, required, always),
        field<&QelDiskPartition::f1299>(1299, required, always),
        field<&QelDiskPartition::f1298>(1298, required, always),
        list<&QelDiskPartition::f1804>(1804, optional).cleared(),
        field<&QelDiskPartition::blocks>(1300, required, always),
        field<&QelDiskPartition::inodes>(1301, required, always),
    };
    static constexpr int readOrder[] = {1026, 1297, 1298, 1299, 1804, 1300, 1301};
};
template <> const QelWireLayout& qelWireLayout<QelDiskPartition>() {
    return wireLayoutOf<QelDiskPartition>;
}

template <> struct Wire<QelDisk> : WireWords<QelDisk> {
    static constexpr QelWireField fields[] = {list<&QelDisk::partitions>(1115, optional)};
};
template <> const QelWireLayout& qelWireLayout<QelDisk>() {
    return wireLayoutOf<QelDisk>;
}

} // namespace Qel
