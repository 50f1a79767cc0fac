#include "QelFunctionalityCore/Host/QelStatistics.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelUsageStats> : WireWords<QelUsageStats> {
    static constexpr int nsId = 292, typeId = 144;
    static constexpr QelWireField fields[] = {
        field<&R::total>(1040, required, always),
        field<&R::used>(1058, required, always),
        field<&R::free>(1059, required, always),
    };
};
const QelWireLayout& QelUsageStats::wire = wireLayoutOf<QelUsageStats>;

template <> struct Wire<QelStats> : WireWords<QelStats> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&R::f1040>(1040, required, always), field<&R::f1065>(1065, required, always),
        field<&R::f1060>(1060, required, always), field<&R::f1061>(1061, required, always),
        field<&R::f1062>(1062, required, always),
    };
};
const QelWireLayout& QelStats::wire = wireLayoutOf<QelStats>;

template <> struct Wire<QelNetTransferStat> : WireWords<QelNetTransferStat> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&R::f1056>(1056, ignored, always),
        field<&R::f1055>(1055, required, always),
    };
};
const QelWireLayout& QelNetTransferStat::wire = wireLayoutOf<QelNetTransferStat>;

template <> struct Wire<QelNetTransfer> : WireWords<QelNetTransfer> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&R::in>(1054, required, always),
        field<&R::out>(1057, required, always),
    };
};
const QelWireLayout& QelNetTransfer::wire = wireLayoutOf<QelNetTransfer>;

template <> struct Wire<QelCPULoad> : WireWords<QelCPULoad> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&R::f1044>(1044, required, always),
        field<&R::f1025>(1025, required, always),
        field<&R::f1045>(1045, required, always),
        field<&R::f1046>(1046, required, always),
    };
};
const QelWireLayout& QelCPULoad::wire = wireLayoutOf<QelCPULoad>;

int QelCPULoad::Reader::operator()(const QelMessageIterator& cursor, QelCPULoad& load) const {
    for (const QelWireField& field : Wire<QelCPULoad>::fields)
        if (cursor.getValueLongLong(*static_cast<long long*>(field.member(&load)), field.id) == -1)
            return -1;
    return 0;
}

template <> struct Wire<QelLoadAvg1> : WireWords<QelLoadAvg1> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&R::f1065>(1065, required, always),
        field<&R::f1060>(1060, ignored, always).bestEffort(),
        field<&R::f1061>(1061, ignored, always).bestEffort(),
        field<&R::f1062>(1062, ignored, always).bestEffort(),
    };
    static constexpr int readOrder[] = {1060, 1061, 1062, 1065};
};
const QelWireLayout& QelLoadAvg1::wire = wireLayoutOf<QelLoadAvg1>;

template <> struct Wire<QelLoadAvg> : WireWords<QelLoadAvg> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&R::f1041>(1041, required, always),
        field<&R::f1042>(1042, required, always),
        field<&R::f1043>(1043, required, always),
    };
};
const QelWireLayout& QelLoadAvg::wire = wireLayoutOf<QelLoadAvg>;

} // namespace Qel
