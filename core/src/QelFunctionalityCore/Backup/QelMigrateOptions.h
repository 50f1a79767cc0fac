#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Environment/QelEnvConfig.h"
#include "QelFunctionalityCore/Host/QelService.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

// What moves a server into another form.  Options that are named after their elements have their meaning from the
// migration service; here they are kept and passed on.  Each class begins a family of its own.
//
// Reading always leaves a configuration, an empty one if the message has none; and an option that is told by an empty
// element is specified afterwards, as false if the message lacks it.

namespace Qel {

/// A physical server becomes a virtual one.
struct QelP2VMigrateOptions {
    virtual ~QelP2VMigrateOptions() = default;

    boost::shared_ptr<QelEnvConfig> config; ///< of the new server; null isn't sent
    std::vector<std::string> list1346;
    QelOptionalProperty<bool> option1821; ///< sent as a number
    std::vector<QelService> services;
    std::string nestedName; ///< of a partition of the server's disk

    /// Always 0.
    using Reader = QelRecordReader<QelP2VMigrateOptions>;
    using Writer = QelRecordWriter<QelP2VMigrateOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Which notes on a hardware node to calculate.
struct QelCalculateHWNodeNotes {
    virtual ~QelCalculateHWNodeNotes() = default;

    using Reader = QelRecordReader<QelCalculateHWNodeNotes>;
    using Writer = QelRecordWriter<QelCalculateHWNodeNotes>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A virtual server becomes a physical one.
struct QelV2PMigrateOptions {
    virtual ~QelV2PMigrateOptions() = default;

    using Reader = QelRecordReader<QelV2PMigrateOptions>;
    using Writer = QelRecordWriter<QelV2PMigrateOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A virtual machine or container moves to another one.
struct QelV2VMigrateOptions {
    virtual ~QelV2VMigrateOptions() = default;

    // Sent as empty elements.
    QelOptionalProperty<bool> option1152;
    QelOptionalProperty<bool> option1296;
    QelOptionalProperty<bool> option1014;

    QelOptionalProperty<std::string> text2103;
    QelOptionalProperty<int> type;
    boost::shared_ptr<QelEnvConfig> config; ///< of the new one; null isn't sent

    /// Both always 0.
    using Reader = QelRecordReader<QelV2VMigrateOptions>;
    using Writer = QelRecordWriter<QelV2VMigrateOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A virtual server is doubled.
struct QelMigratorCloneOptions {
    virtual ~QelMigratorCloneOptions() = default;

    using Reader = QelRecordReader<QelMigratorCloneOptions>;
    using Writer = QelRecordWriter<QelMigratorCloneOptions>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelP2VMigrateOptions>;
extern template class QelDerivedParserFactory<QelCalculateHWNodeNotes>;
extern template class QelDerivedParserFactory<QelV2PMigrateOptions>;
extern template class QelDerivedParserFactory<QelV2VMigrateOptions>;
extern template class QelDerivedParserFactory<QelMigratorCloneOptions>;

extern QelDerivedParserFactoryT<QelP2VMigrateOptions, QelP2VMigrateOptions> factoryQelP2VMigrateOptions;
extern QelDerivedParserFactoryT<QelCalculateHWNodeNotes, QelCalculateHWNodeNotes> factoryQelCalculateHWNodeNotes;
extern QelDerivedParserFactoryT<QelV2PMigrateOptions, QelV2PMigrateOptions> factoryQelV2PMigrateOptions;
extern QelDerivedParserFactoryT<QelV2VMigrateOptions, QelV2VMigrateOptions> factoryQelV2VMigrateOptions;
extern QelDerivedParserFactoryT<QelMigratorCloneOptions, QelMigratorCloneOptions> factoryQelMigratorCloneOptions;

} // namespace Qel
