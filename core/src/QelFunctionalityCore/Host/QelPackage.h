#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelOS.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A software package.
struct QEL_EXPORT QelPackage : QelRecord<QelPackage> {
    virtual ~QelPackage() = default;

    std::string name;
    std::string version;
    std::string release;
    std::string description;
    QelOS os; ///< written only if its detail or name is specified
    std::string arch;

    static const QelWireLayout& wire;
};

/// A package of a Linux distribution.
struct QEL_EXPORT QelPackageLinux : QelRecord<QelPackageLinux, QelPackage> {
    std::string filePath; ///< path of the package file, in the form accepted by QelFilePathReader

    static const QelWireLayout& wire;
};

struct QelPackageRpm : QelRecordAs<QelPackageLinux, 302, 230> {};

struct QelPackageDeb : QelRecordAs<QelPackageLinux, 302, 273> {};

using QelPackageList = std::vector<boost::shared_ptr<QelPackage>>;

/// A package to install, or the path of one.  If a message contains both, only the package is read.
struct QEL_EXPORT QelInstallationPackage : QelRecord<QelInstallationPackage> {
    boost::shared_ptr<QelPackage> package;
    std::string path; ///< in the form accepted by QelFilePathReader

    /// 0 if a package was read.  Otherwise reads the path and returns the result of that.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelInstallationPackage& record) const;
    };
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelPackage>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelPackage, QelPackage> factoryQelPackage;
QEL_EXPORT extern QelDerivedParserFactoryT<QelPackageRpm, QelPackage> factoryQelPackageRpm;
QEL_EXPORT extern QelDerivedParserFactoryT<QelPackageDeb, QelPackage> factoryQelPackageDeb;

} // namespace Qel
