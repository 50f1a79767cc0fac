#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

namespace {

// A record that occupies a whole message.
template <class Record> QelRecordType wholeMessage(std::string_view name) {
    QelRecordType type = makeRecordType<Record>(name);
    type.isWholeMessage = true;
    return type;
}

} // namespace

std::vector<QelRecordType> configurationRecordTypes() {
    return {
        tableRecordType<QelAuthName>(),
        tableRecordType<QelConnectionInfo>(),
        tableRecordType<QelRealm>(),
        makeRecordType<QelConnectivityInfo>("QelConnectivityInfo", &QelConnectivityInfo::wire),
        makeRecordType<QelSecurityPrincipal>("QelSecurityPrincipal", &QelSecurityPrincipal::wire),
        wholeMessage<QelConfiguration>("QelConfiguration"),
    };
}

} // namespace Qel
