#include "QelFunctionalityCore/Files/QelFileFilter.h"
#include "QelFunctionalityCore/Files/QelFileInfo.h"
#include "QelFunctionalityCore/Files/QelFileType.h"
#include "QelFunctionalityCore/Files/QelFilerOptions.h"
#include "QelFunctionalityCore/Files/QelSecurityAttributes.h"
#include "QelFunctionalityCore/Files/QelUGIDLimits.h"
#include "QelFunctionalityCore/Files/QelUserCredentials.h"
#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

std::vector<QelRecordType> filesRecordTypes() {
    return {
        tableRecordType<QelFileFilter>(),         tableRecordType<QelFileInfo>(),
        tableRecordType<QelFileType>(),           tableRecordType<QelFilerOptions>(),
        tableRecordType<QelSecurityAttributes>(), tableRecordType<QelUGIDLimits>(),
        tableRecordType<QelUserCredentials>(),
    };
}

} // namespace Qel
