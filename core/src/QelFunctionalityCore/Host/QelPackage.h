#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Environment/QelOS.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A software package.
struct QelPackage {
    virtual ~QelPackage() = default;

    std::string name;
    std::string version;
    std::string release;
    std::string description;
    QelOS os; ///< written only if its detail or name is specified
    std::string arch;

    using Reader = QelRecordReader<QelPackage>;
    using Writer = QelRecordWriter<QelPackage>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A package of a Linux distribution.
struct QelPackageLinux : QelPackage {
    std::string filePath; ///< path of the package file, in the form accepted by QelFilePathReader

    using Reader = QelRecordReader<QelPackageLinux>;
    using Writer = QelRecordWriter<QelPackageLinux>;
    using reader_type = Reader;
    using writer_type = Writer;
};

struct QelPackageRpm : QelPackageLinux {
    using Reader = QelReaderAs<QelPackageLinux>;
    using Writer = QelWriterAs<QelPackageLinux, 302, 230>;
    using reader_type = Reader;
    using writer_type = Writer;
};

struct QelPackageDeb : QelPackageLinux {
    using Reader = QelReaderAs<QelPackageLinux>;
    using Writer = QelWriterAs<QelPackageLinux, 302, 273>;
    using reader_type = Reader;
    using writer_type = Writer;
};

using QelPackageList = std::vector<boost::shared_ptr<QelPackage>>;

/// A package to install, or the path of one.  If a message contains both, only the package is read.
struct QelInstallationPackage {
    boost::shared_ptr<QelPackage> package;
    std::string path; ///< in the form accepted by QelFilePathReader

    /// 0 if a package was read.  Otherwise reads the path and returns the result of that.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelInstallationPackage& record) const;
    };
    using Writer = QelRecordWriter<QelInstallationPackage>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelPackage>;

extern QelDerivedParserFactoryT<QelPackage, QelPackage> factoryQelPackage;
extern QelDerivedParserFactoryT<QelPackageRpm, QelPackage> factoryQelPackageRpm;
extern QelDerivedParserFactoryT<QelPackageDeb, QelPackage> factoryQelPackageDeb;

} // namespace Qel
