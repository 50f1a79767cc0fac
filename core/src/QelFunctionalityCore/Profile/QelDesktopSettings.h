#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelFunctionalityCore/Profile/QelTextBool.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// An action on the desktop of the management interface.
struct QEL_EXPORT QelDesktopAction : QelRecord<QelDesktopAction, QelProfileRecord> {
    QelTextBool flag2206;
    std::string name;

    static const QelWireLayout& wire;
};

/// Desktop of the management interface.  The console defines the numbered options.
struct QEL_EXPORT QelDesktopSettings : QelRecord<QelDesktopSettings, QelProfileRecord> {
    QelTextBool option2207;
    QelTextBool option2203;
    QelTextBool option2202;
    QelTextBool option2201;
    std::string option2208;
    std::vector<QelDesktopAction> actions;

    static const QelWireLayout& wire;
};

} // namespace Qel
