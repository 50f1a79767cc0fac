#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelFunctionalityCore/Profile/QelTextBool.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Options of the management interface.  The console defines them; they are named after their element IDs.
struct QEL_EXPORT QelInterfaceSettings : QelRecord<QelInterfaceSettings, QelProfileRecord> {
    int option2197 = 0;
    QelTextBool option2195;
    QelTextBool option2299;
    QelTextBool option2199;
    std::string option2192;
    std::string option2193;
    std::string option2007;
    std::string option2194;
    std::string option2198;

    static const QelWireLayout& wire;
};

} // namespace Qel
