#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Properties of a virtualisation technology.  It has no fields: each technology derives its own class.
struct QEL_EXPORT QelVtInfo : QelRecord<QelVtInfo> {
    virtual ~QelVtInfo() = default;

    static const QelWireLayout& wire;
};

/// Settings of a virtualisation technology.
struct QEL_EXPORT QelVtSettings : QelRecord<QelVtSettings> {
    virtual ~QelVtSettings() = default;

    QelOptionalProperty<QelGUID> settingsId;
    QelOptionalProperty<std::string> description;

    static const QelWireLayout& wire;
};

/// Configuration in the native format of a virtualisation technology; each technology derives its own class.
struct QEL_EXPORT QelNativeConfig : QelRecord<QelNativeConfig> {
    virtual ~QelNativeConfig() = default;

    static const QelWireLayout& wire;
};

/// Options of a request for the logs of an environment; each technology derives its own class.
struct QEL_EXPORT QelLogOptions : QelRecord<QelLogOptions> {
    virtual ~QelLogOptions() = default;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelVtInfo>;
extern template class QelDerivedParserFactory<QelVtSettings>;
extern template class QelDerivedParserFactory<QelNativeConfig>;
extern template class QelDerivedParserFactory<QelLogOptions>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelVtInfo, QelVtInfo> factoryQelVtInfo;
QEL_EXPORT extern QelDerivedParserFactoryT<QelVtSettings, QelVtSettings> factoryQelVtSettings;
QEL_EXPORT extern QelDerivedParserFactoryT<QelNativeConfig, QelNativeConfig> factoryQelNativeConfig;
QEL_EXPORT extern QelDerivedParserFactoryT<QelLogOptions, QelLogOptions> factoryQelLogOptions;

} // namespace Qel
