#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A class of performance counters that can be logged.
struct QEL_EXPORT QelLogClass : QelRecord<QelLogClass> {
    std::string name;
    std::string f1905;
    std::string f1906;

    static const QelWireLayout& wire;
};

/// The settings of one part of a log.
struct QEL_EXPORT QelLogInfo : QelRecord<QelLogInfo> {
    std::string name;
    int f1089 = 0;

    static const QelWireLayout& wire;
};

/// The settings of an environment's log.
struct QEL_EXPORT QelLogParameters : QelRecord<QelLogParameters> {
    static constexpr std::string_view subscriptionName = "log_subscription";

    QelEID eid;
    int f1089 = 0;
    std::vector<QelLogInfo> logs;

    static const QelWireLayout& wire;
};

} // namespace Qel
