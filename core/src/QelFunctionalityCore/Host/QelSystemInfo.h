#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelOS.h"
#include "QelFunctionalityCore/Host/QelStatistics.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Architecture, operating system, processors and memory of a host.
struct QEL_EXPORT QelSystemInfo : QelRecord<QelSystemInfo> {
    std::string arch;
    QelOS os;

    // Processors; nested in an element of their own.
    int f1049 = 0;
    int f1052 = 0;
    int f1047 = 0;
    std::string f1050;
    int f1048 = 0;
    int f2122 = 0;
    int f2123 = 0;
    std::string name;
    std::string f1051;

    QelUsageStats memory; ///< bytes
    QelUsageStats swap;   ///< bytes

    static const QelWireLayout& wire;
};

} // namespace Qel
