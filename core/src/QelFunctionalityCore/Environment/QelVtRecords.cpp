#include "QelFunctionalityCore/Environment/QelVtRecords.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelVtInfo> : WireWords<QelVtInfo> { static constexpr int nsId = 292, typeId = 151; };
template <> const QelWireLayout& qelWireLayout<QelVtInfo>() {
    return wireLayoutOf<QelVtInfo>;
}

template <> struct Wire<QelVtSettings> : WireWords<QelVtSettings> {
    static constexpr int nsId = 292, typeId = 152;
    static constexpr QelWireField fields[] = {
        field<&QelVtSettings::settingsId>(1897, ignored, ifSet),
        field<&QelVtSettings::description>(1496, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelVtSettings>() {
    return wireLayoutOf<QelVtSettings>;
}

template <> struct Wire<QelNativeConfig> : WireWords<QelNativeConfig> {
    static constexpr int nsId = 292, typeId = 309;
};
template <> const QelWireLayout& qelWireLayout<QelNativeConfig>() {
    return wireLayoutOf<QelNativeConfig>;
}

template <> struct Wire<QelLogOptions> : WireWords<QelLogOptions> { static constexpr int nsId = 292, typeId = 311; };
template <> const QelWireLayout& qelWireLayout<QelLogOptions>() {
    return wireLayoutOf<QelLogOptions>;
}

template class QelDerivedParserFactory<QelVtInfo>;
template class QelDerivedParserFactory<QelVtSettings>;
template class QelDerivedParserFactory<QelNativeConfig>;
template class QelDerivedParserFactory<QelLogOptions>;

QelDerivedParserFactoryT<QelNativeConfig, QelNativeConfig> factoryQelNativeConfig(true);
QelDerivedParserFactoryT<QelLogOptions, QelLogOptions> factoryQelLogOptions(true);

} // namespace Qel
