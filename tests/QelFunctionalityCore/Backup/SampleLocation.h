#pragma once

#include <string>

#include "QelFunctionalityCore/Backup/QelDSLocation.h"

namespace Qel {

/// A storage with an account.
inline QelDSLocation vault() {
    QelDSLocation location;
    location.type = 2;
    location.path = "/vault";
    location.authName.name = std::string("keeper");
    location.password = "secret";
    return location;
}

} // namespace Qel
