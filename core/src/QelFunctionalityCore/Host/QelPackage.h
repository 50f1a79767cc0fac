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
    QelOS os; ///< written only if it has a detail or a name
    std::string arch;

    using Reader = QelRecordReader<QelPackage>;
    using Writer = QelRecordWriter<QelPackage>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A package of a Linux distribution.
struct QelPackageLinux : QelPackage {
    std::string filePath; ///< of the package's file, as QelFilePathReader takes it

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

/// A package to install, or the path of one.  Whoever tells both is taken by the package.
struct QelInstallationPackage {
    boost::shared_ptr<QelPackage> package;
    std::string path; ///< as QelFilePathReader takes it

    /// 0 with a package; the path is read only where none is, and then its result is the record's.
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
