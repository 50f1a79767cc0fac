#include "QelFunctionalityCore/QelFamilyRecordTypes.h"
#include "QelFunctionalityCore/Security/QelAce.h"
#include "QelFunctionalityCore/Security/QelDirControl.h"
#include "QelFunctionalityCore/Security/QelDirEntry.h"
#include "QelFunctionalityCore/Security/QelDirRealm.h"
#include "QelFunctionalityCore/Security/QelInfrastructureNode.h"
#include "QelFunctionalityCore/Security/QelPolicy.h"
#include "QelFunctionalityCore/Security/QelRole.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Security/QelSSOBase.h"
#include "QelFunctionalityCore/Security/QelSession.h"
#include "QelFunctionalityCore/Security/QelToken.h"

namespace Qel {

std::vector<QelRecordType> securityRecordTypes() {
    return {
        tableRecordType<QelDirEntry>(),
        tableRecordType<QelDirRealm::LoginType>(),
        tableRecordType<QelDirSortControl>(),
        tableRecordType<QelDirVlvControl>(),
        tableRecordType<QelEffectivePolicyAssignment>(),
        tableRecordType<QelInfrastructureFolderAttributes>(),
        tableRecordType<QelInfrastructureNode>(),
        tableRecordType<QelObjectRights>(),
        tableRecordType<QelObjectToPolicyAssignment>(),
        tableRecordType<QelPolicy>(),
        tableRecordType<QelRegisteredClient>(),
        tableRecordType<QelRole>(),
        tableRecordType<QelRoleAssignment>(),
        tableRecordType<QelSSOServerConfig>(),
        tableRecordType<QelSSOServiceProviderConfig>(),
        tableRecordType<QelTask>(),
        makeRecordType<QelAce>("QelAce", &QelObjectRights::wire),
        makeRecordType<QelCheck>("QelCheck", &QelObjectRights::wire),
        makeRecordType<QelDirAttribute>("QelDirAttribute"),
        makeRecordType<QelDirControl>("QelDirControl", &QelDirControl::wire),
        makeRecordType<QelDirRealm>("QelDirRealm", &QelDirRealm::wire),
        makeRecordType<QelSID>("QelSID"),
        makeRecordType<QelSession>("QelSession", &QelSession::wire),
        makeRecordType<QelToken>("QelToken", &QelToken::wire),
    };
}

} // namespace Qel
