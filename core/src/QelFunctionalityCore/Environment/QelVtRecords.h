#pragma once

#include <string>

#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Properties of a virtualisation technology.  It has no fields: each technology derives its own class.
struct QelVtInfo {
    virtual ~QelVtInfo() = default;

    using Reader = QelRecordReader<QelVtInfo>;
    using Writer = QelRecordWriter<QelVtInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Settings of a virtualisation technology.
struct QelVtSettings {
    virtual ~QelVtSettings() = default;

    QelOptionalProperty<QelGUID> settingsId;
    QelOptionalProperty<std::string> description;

    using Reader = QelRecordReader<QelVtSettings>;
    using Writer = QelRecordWriter<QelVtSettings>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Configuration in the native format of a virtualisation technology; each technology derives its own class.
struct QelNativeConfig {
    virtual ~QelNativeConfig() = default;

    using Reader = QelRecordReader<QelNativeConfig>;
    using Writer = QelRecordWriter<QelNativeConfig>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Options of a request for the logs of an environment; each technology derives its own class.
struct QelLogOptions {
    virtual ~QelLogOptions() = default;

    using Reader = QelRecordReader<QelLogOptions>;
    using Writer = QelRecordWriter<QelLogOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
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
