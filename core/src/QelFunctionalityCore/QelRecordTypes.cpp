#include "QelFunctionalityCore/QelRecordTypes.h"

#include <algorithm>
#include <vector>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Configuration/QelConnectionInfo.h"
#include "QelFunctionalityCore/Configuration/QelRealm.h"
#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelFunctionalityCore/Environment/QelEnvMListOptions.h"
#include "QelFunctionalityCore/Environment/QelVtRecords.h"
#include "QelFunctionalityCore/Events/QelEvent.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Events/QelRequestProgressData.h"
#include "QelFunctionalityCore/Events/QelResourceAlertData.h"
#include "QelFunctionalityCore/Events/QelServerGroupAlertData.h"
#include "QelFunctionalityCore/Monitoring/QelMonitorData.h"
#include "QelFunctionalityCore/Monitoring/QelPerfMonValue.h"
#include "QelFunctionalityCore/Profile/QelProfile.h"
#include "QelFunctionalityCore/Scheduling/QelScheduleTask.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Security/QelToken.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelFunctionalityCore/Values/QelNamedOpStrListProperty.h"
#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

namespace Qel {

namespace {

// A record that its table tells whole.
template <class Record> QelRecordType byTable() {
    const QelWireLayout& layout = qelWireLayout<Record>();
    return makeRecordType<Record>(layout.typeName, &layout);
}

// A record that is all that a message holds.
template <class Record> QelRecordType wholeMessage(std::string_view name) {
    QelRecordType type = makeRecordType<Record>(name);
    type.isWholeMessage = true;
    return type;
}

// A base without objects of its own: the element's complex type tells the class, and that has its own table.
template <class Base> struct AnyReader {
    int operator()(const QelMessageIterator& cursor, boost::shared_ptr<Base>& record) const {
        return QelReaderDerived<Base>(false)(cursor, record);
    }
};
template <class Base> QelRecordType anyOf() {
    const QelWireLayout& layout = qelWireLayout<Base>();
    QelRecordType type =
        makeRecordType<boost::shared_ptr<Base>, AnyReader<Base>, QelWriterDerived<Base>>(layout.typeName);
    type.nsId = layout.nsId;
    type.typeId = layout.typeId;
    return type;
}

// An identity in a message of its own, not that of the vocabulary around it.
struct LoneVocIDReader : QelVocID::Reader {
    LoneVocIDReader() : Reader(true) {}
};

std::vector<QelRecordType> makeTypes() {
    std::vector<QelRecordType> types{
        byTable<QelAlertData>(),
        byTable<QelAnyEventData>(),
        byTable<QelAuthName>(),
        byTable<QelBrowseColumn>(),
        byTable<QelBrowseInfo>(),
        byTable<QelBrowseSettings>(),
        byTable<QelConnectionInfo>(),
        byTable<QelDashboardSection>(),
        byTable<QelDesktopAction>(),
        byTable<QelDesktopSettings>(),
        byTable<QelEnvMListOptions>(),
        byTable<QelEnvStatus>(),
        byTable<QelEvent>(),
        byTable<QelInfo>(),
        byTable<QelInterfaceSettings>(),
        byTable<QelLogOptions>(),
        byTable<QelNativeConfig>(),
        byTable<QelOS>(),
        byTable<QelPersonalSettings>(),
        byTable<QelProfile>(),
        byTable<QelQoS>(),
        byTable<QelRealm>(),
        byTable<QelScheduleTask>(),
        byTable<QelSchedulerDailyTrigger>(),
        byTable<QelSchedulerMonthlyDayOfWeekTrigger>(),
        byTable<QelSchedulerMonthlyTrigger>(),
        byTable<QelSchedulerOnceTrigger>(),
        byTable<QelSchedulerWeeklyTrigger>(),
        byTable<QelScreenInfo>(),
        byTable<QelScreenSettings>(),
        byTable<QelVtInfo>(),
        byTable<QelVtSettings>(),
        makeRecordType<QelConnectivityInfo>("QelConnectivityInfo", &qelWireLayout<QelConnectivityInfo>()),
        makeRecordType<QelEID>("QelEID"),
        makeRecordType<QelEIDList>("QelEIDList"),
        makeRecordType<QelEnv>("QelEnv", &qelWireLayout<QelEnv>()),
        makeRecordType<QelEnvConfig>("QelEnvConfig", &qelWireLayout<QelEnvConfig>()),
        makeRecordType<QelGUID>("QelGUID"),
        makeRecordType<QelIPAddress>("QelIPAddress"),
        makeRecordType<QelMonitorData>("QelMonitorData"),
        makeRecordType<QelNamedOpStrListProperty>("QelNamedOpStrListProperty"),
        makeRecordType<QelPerfMonActualValue>("QelPerfMonActualValue"),
        makeRecordType<QelPerfMonHistoricalValue>("QelPerfMonHistoricalValue"),
        makeRecordType<QelPerfStat>("QelPerfStat"),
        makeRecordType<QelRequestProgressData>("QelRequestProgressData", &qelWireLayout<QelRequestProgressData>()),
        makeRecordType<QelResourceAlertData>("QelResourceAlertData", &qelWireLayout<QelResourceAlertData>()),
        makeRecordType<QelSID>("QelSID"),
        makeRecordType<QelSecurityPrincipal>("QelSecurityPrincipal", &qelWireLayout<QelSecurityPrincipal>()),
        makeRecordType<QelToken>("QelToken", &qelWireLayout<QelToken>()),
        makeRecordType<QelTimeInterval>("QelTimeInterval"),
        makeRecordType<QelServerGroupAlertData>("QelServerGroupAlertData", &qelWireLayout<QelServerGroupAlertData>()),
        anyOf<QelSchedulerTrigger>(),
        makeRecordType<QelVEnvConfig>("QelVEnvConfig", &qelWireLayout<QelEnvConfig>()),
        makeRecordType<QelVocID, LoneVocIDReader>("QelVocID", &qelWireLayout<QelVocID>()),
        makeRecordType<QelVocPrototype>("QelVocPrototype"),
        wholeMessage<QelConfiguration>("QelConfiguration"),
    };
    std::sort(types.begin(), types.end(),
              [](const QelRecordType& a, const QelRecordType& b) { return a.name < b.name; });
    return types;
}

} // namespace

std::span<const QelRecordType> recordTypes() {
    static const std::vector<QelRecordType> types = makeTypes();
    return types;
}

const QelRecordType* findRecordType(std::string_view name) {
    const auto types = recordTypes();
    const auto found =
        std::lower_bound(types.begin(), types.end(), name,
                         [](const QelRecordType& type, std::string_view key) { return type.name < key; });
    return found != types.end() && found->name == name ? &*found : nullptr;
}

} // namespace Qel
