#include "QelFunctionalityCore/Host/QelStatistics.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelUsageStats> : WireWords<QelUsageStats> {
    static constexpr int nsId = 292, typeId = 144;
    static constexpr QelWireField fields[] = {
        field<&QelUsageStats::total>(1040, required, always),
        field<&QelUsageStats::used>(1058, required, always),
        field<&QelUsageStats::free>(1059, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelUsageStats>() {
    return wireLayoutOf<QelUsageStats>;
}

template <> struct Wire<QelStats> : WireWords<QelStats> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&QelStats::f1040>(1040, required, always), field<&QelStats::f1065>(1065, required, always),
        field<&QelStats::f1060>(1060, required, always), field<&QelStats::f1061>(1061, required, always),
        field<&QelStats::f1062>(1062, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelStats>() {
    return wireLayoutOf<QelStats>;
}

template <> struct Wire<QelNetTransferStat> : WireWords<QelNetTransferStat> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&QelNetTransferStat::f1056>(1056, ignored, always),
        field<&QelNetTransferStat::f1055>(1055, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelNetTransferStat>() {
    return wireLayoutOf<QelNetTransferStat>;
}

template <> struct Wire<QelNetTransfer> : WireWords<QelNetTransfer> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&QelNetTransfer::in>(1054, required, always),
        field<&QelNetTransfer::out>(1057, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelNetTransfer>() {
    return wireLayoutOf<QelNetTransfer>;
}

template <> struct Wire<QelCPULoad> : WireWords<QelCPULoad> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&QelCPULoad::f1044>(1044, required, always),
        field<&QelCPULoad::f1025>(1025, required, always),
        field<&QelCPULoad::f1045>(1045, required, always),
        field<&QelCPULoad::f1046>(1046, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelCPULoad>() {
    return wireLayoutOf<QelCPULoad>;
}

int QelCPULoad::Reader::operator()(const QelMessageIterator& cursor, QelCPULoad& load) const {
    for (const QelWireField& field : Wire<QelCPULoad>::fields)
        if (cursor.getValueLongLong(*static_cast<long long*>(field.member(&load)), field.id) == -1)
            return -1;
    return 0;
}

template <> struct Wire<QelLoadAvg1> : WireWords<QelLoadAvg1> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&QelLoadAvg1::f1065>(1065, required, always),
        field<&QelLoadAvg1::f1060>(1060, ignored, always).unchecked(),
        field<&QelLoadAvg1::f1061>(1061, ignored, always).unchecked(),
        field<&QelLoadAvg1::f1062>(1062, ignored, always).unchecked(),
    };
    static constexpr int readOrder[] = {1060, 1061, 1062, 1065};
};
template <> const QelWireLayout& qelWireLayout<QelLoadAvg1>() {
    return wireLayoutOf<QelLoadAvg1>;
}

template <> struct Wire<QelLoadAvg> : WireWords<QelLoadAvg> {
    static constexpr int nsId = 292;
    static constexpr QelWireField fields[] = {
        field<&QelLoadAvg::f1041>(1041, required, always),
        field<&QelLoadAvg::f1042>(1042, required, always),
        field<&QelLoadAvg::f1043>(1043, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelLoadAvg>() {
    return wireLayoutOf<QelLoadAvg>;
}

} // namespace Qel
