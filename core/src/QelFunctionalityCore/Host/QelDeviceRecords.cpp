#include "QelFunctionalityCore/Host/QelDeviceRecords.h"

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDevMountInfo> : WireWords<QelDevMountInfo> {
    static constexpr QelWireField fields[] = {
        field<&QelDevMountInfo::f1114>(1114, ignored, ifSet),  field<&QelDevMountInfo::f1113>(1113, ignored, ifSet),
        field<&QelDevMountInfo::f1116>(1116, ignored, always), field<&QelDevMountInfo::f1118>(1118, ignored, always),
        field<&QelDevMountInfo::size>(1024, ignored, always),  field<&QelDevMountInfo::f1117>(1117, required, ifSet),
        field<&QelDevMountInfo::f1250>(1250, ignored, ifSet),
    };
    static constexpr int readOrder[] = {1114, 1113, 1116, 1118, 1024, 1250, 1117};
};
template <> const QelWireLayout& qelWireLayout<QelDevMountInfo>() {
    return wireLayoutOf<QelDevMountInfo>;
}

int QelDevMountInfo::Writer::operator()(QelMessageIterator& cursor, const QelDevMountInfo& info) const {
    const int result = writeByLayout(qelWireLayout<QelDevMountInfo>(), &info, cursor);
    if (result == 0 && info.f1117.empty()) {
        setErrorMessage("can't write QelDevMountInfo: f1117 is empty");
        return -1;
    }
    return result;
}

template <> struct Wire<QelDeviceInfo> : WireWords<QelDeviceInfo> {
    static constexpr QelWireField fields[] = {
        list<&QelDeviceInfo::f1113>(1113, optional),
        list<&QelDeviceInfo::f1114>(1114, optional),
        list<&QelDeviceInfo::f1115>(1115, optional),
    };
};
template <> const QelWireLayout& qelWireLayout<QelDeviceInfo>() {
    return wireLayoutOf<QelDeviceInfo>;
}

template <> struct Wire<QelForwardPoint> : WireWords<QelForwardPoint> {
    static constexpr QelWireField fields[] = {
        field<&QelForwardPoint::eid>(1866, optional, ifSet),
        derived<&QelForwardPoint::device, true>(1114, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelForwardPoint>() {
    return wireLayoutOf<QelForwardPoint>;
}

template <> struct Wire<QelForwardDevice> : WireWords<QelForwardDevice> {
    static constexpr QelWireField fields[] = {
        field<&QelForwardDevice::source>(1803, required, always),
        field<&QelForwardDevice::destination>(1338, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelForwardDevice>() {
    return wireLayoutOf<QelForwardDevice>;
}

} // namespace Qel
