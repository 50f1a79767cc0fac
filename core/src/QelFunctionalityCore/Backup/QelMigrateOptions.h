#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelEnvConfig.h"
#include "QelFunctionalityCore/Host/QelService.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

// Options of conversions between physical and virtual servers.  Options named after their element IDs are only stored
// and passed on; the migration service defines their meaning.  Each class is the base of its own family of derived
// records.
//
// Reading always creates a configuration; it is empty if the message has none.  An option sent as an empty element is
// always specified after reading: true if the element is present, false otherwise.

namespace Qel {

/// Converts a physical server to a virtual one.  Reading always returns 0.
struct QEL_EXPORT QelP2VMigrateOptions : QelRecord<QelP2VMigrateOptions> {
    virtual ~QelP2VMigrateOptions() = default;

    boost::shared_ptr<QelEnvConfig> config; ///< of the new server; null is not sent
    std::vector<std::string> list1346;
    QelOptionalProperty<bool> option1821; ///< sent as a number
    std::vector<QelService> services;
    std::string nestedName; ///< of a partition of the server's disk

    static const QelWireLayout& wire;
};

/// Which notes about a hardware node to calculate.
struct QEL_EXPORT QelCalculateHWNodeNotes : QelRecord<QelCalculateHWNodeNotes> {
    virtual ~QelCalculateHWNodeNotes() = default;

    static const QelWireLayout& wire;
};

/// Converts a virtual server to a physical one.
struct QEL_EXPORT QelV2PMigrateOptions : QelRecord<QelV2PMigrateOptions> {
    virtual ~QelV2PMigrateOptions() = default;

    static const QelWireLayout& wire;
};

/// Migrates a virtual machine or container to another one.  Reading and writing always return 0.
struct QEL_EXPORT QelV2VMigrateOptions : QelRecord<QelV2VMigrateOptions> {
    virtual ~QelV2VMigrateOptions() = default;

    // Sent as empty elements.
    QelOptionalProperty<bool> option1152;
    QelOptionalProperty<bool> option1296;
    QelOptionalProperty<bool> option1014;

    QelOptionalProperty<std::string> text2103;
    QelOptionalProperty<int> type;
    boost::shared_ptr<QelEnvConfig> config; ///< of the new server; null is not sent

    static const QelWireLayout& wire;
};

/// Clones a virtual server.
struct QEL_EXPORT QelMigratorCloneOptions : QelRecord<QelMigratorCloneOptions> {
    virtual ~QelMigratorCloneOptions() = default;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelP2VMigrateOptions>;
extern template class QelDerivedParserFactory<QelCalculateHWNodeNotes>;
extern template class QelDerivedParserFactory<QelV2PMigrateOptions>;
extern template class QelDerivedParserFactory<QelV2VMigrateOptions>;
extern template class QelDerivedParserFactory<QelMigratorCloneOptions>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelP2VMigrateOptions, QelP2VMigrateOptions> factoryQelP2VMigrateOptions;
QEL_EXPORT extern QelDerivedParserFactoryT<QelCalculateHWNodeNotes, QelCalculateHWNodeNotes>
    factoryQelCalculateHWNodeNotes;
QEL_EXPORT extern QelDerivedParserFactoryT<QelV2PMigrateOptions, QelV2PMigrateOptions> factoryQelV2PMigrateOptions;
QEL_EXPORT extern QelDerivedParserFactoryT<QelV2VMigrateOptions, QelV2VMigrateOptions> factoryQelV2VMigrateOptions;
QEL_EXPORT extern QelDerivedParserFactoryT<QelMigratorCloneOptions, QelMigratorCloneOptions>
    factoryQelMigratorCloneOptions;

} // namespace Qel
