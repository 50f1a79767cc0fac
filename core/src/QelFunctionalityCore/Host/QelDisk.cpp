#include "QelFunctionalityCore/Host/QelDisk.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDiskPartition> : WireWords<QelDiskPartition> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),   field<&R::f1297>(1297, required, always),
        field<&R::f1299>(1299, required, always),  field<&R::f1298>(1298, required, always),
        list<&R::f1804>(1804, optional).cleared(), field<&R::blocks>(1300, required, always),
        field<&R::inodes>(1301, required, always),
    };
    static constexpr int readOrder[] = {1026, 1297, 1298, 1299, 1804, 1300, 1301};
};
const QelWireLayout& QelDiskPartition::wire = wireLayoutOf<QelDiskPartition>;

template <> struct Wire<QelDisk> : WireWords<QelDisk> {
    static constexpr QelWireField fields[] = {list<&R::partitions>(1115, optional)};
};
const QelWireLayout& QelDisk::wire = wireLayoutOf<QelDisk>;

} // namespace Qel
