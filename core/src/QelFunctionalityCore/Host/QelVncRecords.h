#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// How to connect to a graphical console.
struct QEL_EXPORT QelVncConnectionInfo : QelRecord<QelVncConnectionInfo> {
    std::string password; ///< required, may be empty; must never be logged
    QelOptionalProperty<QelConnectivityInfo> server2308;
    QelOptionalProperty<QelConnectivityInfo> server2309;

    static const QelWireLayout& wire;
};

/// A graphical console.  Its fields are stored in the element of its connection, with the type of the connection.
struct QEL_EXPORT QelVncConsoleInfo : QelRecord<QelVncConsoleInfo> {
    QelOptionalProperty<int> value2310;
    int value2311 = 0; ///< 0 after a failed read
    int value2312 = 0; ///< 0 after a failed read
    QelVncConnectionInfo connection;

    static const QelWireLayout& wire;
};

} // namespace Qel
