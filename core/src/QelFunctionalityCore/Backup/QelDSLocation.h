#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A backup storage and the account to access it with.
struct QEL_EXPORT QelDSLocation : QelRecord<QelDSLocation> {
    int type = 0;
    std::string path;
    QelAuthName authName;
    std::string password; ///< sent as plain text, not base64; never log it

    static const QelWireLayout& wire;
};

/// The storage that a service uses.
struct QEL_EXPORT QelDSConfiguration : QelRecord<QelDSConfiguration> {
    QelDSLocation location;

    static const QelWireLayout& wire;
};

} // namespace Qel
