#pragma once

#include <string>

#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Properties of a virtualisation technology.  It has no fields: each technology derives its own class.
struct QelVtInfo : QelRecord<QelVtInfo> {
    virtual ~QelVtInfo() = default;

    static const QelWireLayout& wire;
};

/// Settings of a virtualisation technology.
struct QelVtSettings : QelRecord<QelVtSettings> {
    virtual ~QelVtSettings() = default;

    QelOptionalProperty<QelGUID> settingsId;
    QelOptionalProperty<std::string> description;

    static const QelWireLayout& wire;
};

/// Configuration in the native format of a virtualisation technology; each technology derives its own class.
struct QelNativeConfig : QelRecord<QelNativeConfig> {
    virtual ~QelNativeConfig() = default;

    static const QelWireLayout& wire;
};

/// Options of a request for the logs of an environment; each technology derives its own class.
struct QelLogOptions : QelRecord<QelLogOptions> {
    virtual ~QelLogOptions() = default;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelVtInfo>;
extern template class QelDerivedParserFactory<QelVtSettings>;
extern template class QelDerivedParserFactory<QelNativeConfig>;
extern template class QelDerivedParserFactory<QelLogOptions>;

extern QelDerivedParserFactoryT<QelVtInfo, QelVtInfo> factoryQelVtInfo;
extern QelDerivedParserFactoryT<QelVtSettings, QelVtSettings> factoryQelVtSettings;
extern QelDerivedParserFactoryT<QelNativeConfig, QelNativeConfig> factoryQelNativeConfig;
extern QelDerivedParserFactoryT<QelLogOptions, QelLogOptions> factoryQelLogOptions;

} // namespace Qel
