#pragma once

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

class QelEnv;

/// An info named "env" that identifies an environment.  Its text is the title; its parameters are "eid", "title" and
/// "type".
struct QEL_EXPORT QelEnvInfo : QelRecordAs<QelInfo, 292, 161> {
    explicit QelEnvInfo(const QelEnv& env);
    /// Looks the environment up in this process's cache.  If it is not found, or there is no cache, the identifier
    /// serves as the title and "type" is not set.
    explicit QelEnvInfo(const QelEID& eid);

    /// Sets the three parameters.
    void fill(const QelEnv& env);

private:
    void set(const char* parameterName, std::string parameterText);
};

} // namespace Qel
