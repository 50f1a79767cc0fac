#pragma once

#include <string>

#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// What a virtualisation technology tells of itself.  It has no fields: the technologies derive theirs.
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

/// Configuration in a virtualisation technology's own form; derived by the technologies.
struct QelNativeConfig {
    virtual ~QelNativeConfig() = default;

    using Reader = QelRecordReader<QelNativeConfig>;
    using Writer = QelRecordWriter<QelNativeConfig>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Options of a request for an environment's logs; derived by the technologies.
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
