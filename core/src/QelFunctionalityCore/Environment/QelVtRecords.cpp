#include "QelFunctionalityCore/Environment/QelVtRecords.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelVtInfo> : WireWords<QelVtInfo> { static constexpr int nsId = 292, typeId = 151; };
const QelWireLayout& QelVtInfo::wire = wireLayoutOf<QelVtInfo>;

template <> struct Wire<QelVtSettings> : WireWords<QelVtSettings> {
    static constexpr int nsId = 292, typeId = 152;
    static constexpr QelWireField fields[] = {
        field<&R::settingsId>(1897, ignored, ifSet),
        field<&R::description>(1496, ignored, ifSet),
    };
};
const QelWireLayout& QelVtSettings::wire = wireLayoutOf<QelVtSettings>;

template <> struct Wire<QelNativeConfig> : WireWords<QelNativeConfig> {
    static constexpr int nsId = 292, typeId = 309;
};
const QelWireLayout& QelNativeConfig::wire = wireLayoutOf<QelNativeConfig>;

template <> struct Wire<QelLogOptions> : WireWords<QelLogOptions> { static constexpr int nsId = 292, typeId = 311; };
const QelWireLayout& QelLogOptions::wire = wireLayoutOf<QelLogOptions>;

template class QelDerivedParserFactory<QelVtInfo>;
template class QelDerivedParserFactory<QelVtSettings>;
template class QelDerivedParserFactory<QelNativeConfig>;
template class QelDerivedParserFactory<QelLogOptions>;

QelDerivedParserFactoryT<QelNativeConfig, QelNativeConfig> factoryQelNativeConfig(true);
QelDerivedParserFactoryT<QelLogOptions, QelLogOptions> factoryQelLogOptions(true);

} // namespace Qel
