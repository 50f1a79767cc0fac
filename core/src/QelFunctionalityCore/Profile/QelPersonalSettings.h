#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Identity of the user of the management interface.  The console defines the strings.
struct QEL_EXPORT QelPersonalSettings : QelRecord<QelPersonalSettings, QelProfileRecord> {
    std::string personalName;
    std::string personalText;

    static const QelWireLayout& wire;
};

} // namespace Qel
