#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A disk image.  All fields are optional; a field that cannot be read becomes unspecified.
struct QEL_EXPORT QelDiskImage : QelRecord<QelDiskImage> {
    QelOptionalProperty<QelGUID> id;
    QelOptionalProperty<QelGUID> f2248;
    QelOptionalProperty<std::string> name;
    QelOptionalProperty<std::string> description;
    QelOptionalProperty<std::string> f2249;
    QelOptionalProperty<std::string> f2262;
    QelOptionalProperty<bool> f1856;
    QelOptionalProperty<long long> size; ///< bytes

    static const QelWireLayout& wire;
};

/// A disk image with its type.
struct QEL_EXPORT QelImageInfo : QelRecord<QelImageInfo> {
    int type = 0;
    QelOptionalProperty<QelDiskImage> image;

    static const QelWireLayout& wire;
};

/// A directory shared with other hosts.  All fields are optional; a field that cannot be read becomes unspecified.
struct QEL_EXPORT QelFileShare : QelRecord<QelFileShare> {
    QelOptionalProperty<QelGUID> id;
    QelOptionalProperty<std::string> name;
    QelOptionalProperty<std::string> path;
    QelOptionalProperty<std::string> description;
    QelOptionalProperty<std::string> f2247;
    QelOptionalProperty<std::string> password; ///< must never be logged
    QelOptionalProperty<int> f1192;
    QelOptionalProperty<long> f1845;
    QelOptionalProperty<int> f1712;
    QelOptionalProperty<long long> size; ///< bytes

    static const QelWireLayout& wire;
};

} // namespace Qel
