#include "QelFunctionalityCore/Host/QelDeviceRecords.h"

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDevMountInfo> : WireWords<QelDevMountInfo> {
    static constexpr QelWireField fields[] = {
        field<&R::f1114>(1114, ignored, ifSet),  field<&R::f1113>(1113, ignored, ifSet),
        field<&R::f1116>(1116, ignored, always), field<&R::f1118>(1118, ignored, always),
        field<&R::size>(1024, ignored, always),  field<&R::f1117>(1117, required, ifSet),
        field<&R::f1250>(1250, ignored, ifSet),
    };
    static constexpr int readOrder[] = {1114, 1113, 1116, 1118, 1024, 1250, 1117};
};
const QelWireLayout& QelDevMountInfo::wire = wireLayoutOf<QelDevMountInfo>;

int QelDevMountInfo::Writer::operator()(QelMessageIterator& cursor, const QelDevMountInfo& info) const {
    const int result = writeByLayout(QelDevMountInfo::wire, &info, cursor);
    if (result == 0 && info.f1117.empty()) {
        setErrorMessage("cannot write QelDevMountInfo: f1117 is empty");
        return -1;
    }
    return result;
}

template <> struct Wire<QelDeviceInfo> : WireWords<QelDeviceInfo> {
    static constexpr QelWireField fields[] = {
        list<&R::f1113>(1113, optional),
        list<&R::f1114>(1114, optional),
        list<&R::f1115>(1115, optional),
    };
};
const QelWireLayout& QelDeviceInfo::wire = wireLayoutOf<QelDeviceInfo>;

template <> struct Wire<QelForwardPoint> : WireWords<QelForwardPoint> {
    static constexpr QelWireField fields[] = {
        field<&R::eid>(1866, optional, ifSet),
        derived<&R::device, true>(1114, required, always),
    };
};
const QelWireLayout& QelForwardPoint::wire = wireLayoutOf<QelForwardPoint>;

template <> struct Wire<QelForwardDevice> : WireWords<QelForwardDevice> {
    static constexpr QelWireField fields[] = {
        field<&R::source>(1803, required, always),
        field<&R::destination>(1338, required, always),
    };
};
const QelWireLayout& QelForwardDevice::wire = wireLayoutOf<QelForwardDevice>;

} // namespace Qel
