#include "QelFunctionalityCore/Backup/QelBackupTrace.h"

#include "QelCommon/Debug.h"
#include "QelCommon/Log.h"

namespace Qel {

void traceBackupCall(const char* signature) {
    Log2(QEL_MODULE, "core/src/QelFunctionalityCore/QelBackupMBase", __LINE__, "operator()", signature)
        .put(LogLevel::trace, "Calling [%s]", signature);
}

} // namespace Qel
