#include "QelFunctionalityCore/Host/QelDiskImage.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDiskImage> : WireWords<QelDiskImage> {
    static constexpr int nsId = 308, typeId = 375;
    static constexpr QelWireField fields[] = {
        field<&QelDiskImage::id>(1010, ignored, ifSet),
        field<&QelDiskImage::f2248>(2248, ignored, ifSet),
        field<&QelDiskImage::name>(1026, ignored, ifSet),
        field<&QelDiskImage::description>(1496, ignored, ifSet, base64),
        field<&QelDiskImage::f2249>(2249, ignored, ifSet, base64),
        field<&QelDiskImage::f2262>(2262, ignored, ifSet, base64),
        field<&QelDiskImage::f1856>(1856, ignored, ifSet),
        field<&QelDiskImage::size>(1024, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelDiskImage>() {
    return wireLayoutOf<QelDiskImage>;
}

template <> struct Wire<QelImageInfo> : WireWords<QelImageInfo> {
    static constexpr QelWireField fields[] = {
        field<&QelImageInfo::type>(1007, required, always),
        field<&QelImageInfo::image>(2259, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelImageInfo>() {
    return wireLayoutOf<QelImageInfo>;
}

template <> struct Wire<QelFileShare> : WireWords<QelFileShare> {
    static constexpr QelWireField fields[] = {
        field<&QelFileShare::id>(1010, ignored, ifSet),
        field<&QelFileShare::name>(1026, ignored, ifSet),
        field<&QelFileShare::path>(1156, ignored, ifSet, base64),
        field<&QelFileShare::description>(1496, ignored, ifSet, base64),
        field<&QelFileShare::f2247>(2247, ignored, ifSet, base64),
        field<&QelFileShare::password>(1032, ignored, ifSet, base64),
        field<&QelFileShare::f1192>(1192, ignored, ifSet),
        field<&QelFileShare::f1845>(1845, ignored, ifSet),
        field<&QelFileShare::f1712>(1712, ignored, ifSet),
        field<&QelFileShare::size>(1024, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelFileShare>() {
    return wireLayoutOf<QelFileShare>;
}

} // namespace Qel
