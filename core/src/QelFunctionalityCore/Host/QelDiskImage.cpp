#include "QelFunctionalityCore/Host/QelDiskImage.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDiskImage> : WireWords<QelDiskImage> {
    static constexpr int nsId = 308, typeId = 375;
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, ignored, ifSet),
        field<&R::f2248>(2248, ignored, ifSet),
        field<&R::name>(1026, ignored, ifSet),
        field<&R::description>(1496, ignored, ifSet, base64),
        field<&R::f2249>(2249, ignored, ifSet, base64),
        field<&R::f2262>(2262, ignored, ifSet, base64),
        field<&R::f1856>(1856, ignored, ifSet),
        field<&R::size>(1024, ignored, ifSet),
    };
};
const QelWireLayout& QelDiskImage::wire = wireLayoutOf<QelDiskImage>;

template <> struct Wire<QelImageInfo> : WireWords<QelImageInfo> {
    static constexpr QelWireField fields[] = {
        field<&R::type>(1007, required, always),
        field<&R::image>(2259, ignored, ifSet),
    };
};
const QelWireLayout& QelImageInfo::wire = wireLayoutOf<QelImageInfo>;

template <> struct Wire<QelFileShare> : WireWords<QelFileShare> {
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, ignored, ifSet),
        field<&R::name>(1026, ignored, ifSet),
        field<&R::path>(1156, ignored, ifSet, base64),
        field<&R::description>(1496, ignored, ifSet, base64),
        field<&R::f2247>(2247, ignored, ifSet, base64),
        field<&R::password>(1032, ignored, ifSet, base64),
        field<&R::f1192>(1192, ignored, ifSet),
        field<&R::f1845>(1845, ignored, ifSet),
        field<&R::f1712>(1712, ignored, ifSet),
        field<&R::size>(1024, ignored, ifSet),
    };
};
const QelWireLayout& QelFileShare::wire = wireLayoutOf<QelFileShare>;

} // namespace Qel
