#pragma once

#include <string_view>

#include "QelFunctionalityCore/Host/QelPackage.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

/// What the event of a change of an environment's packages tells.
struct QelPackageListModificationData {
    static constexpr std::string_view subscriptionName = "package_list_subscription";

    virtual ~QelPackageListModificationData() = default;

    int operation = -1; ///< 0, 1 or 2; any other is refused by the reader
    QelEID eid;
    QelPackageList packages;

    using Reader = QelRecordReader<QelPackageListModificationData>;
    /// Without packages nothing has changed: nothing is written, and that is no failure.  Otherwise the first step that
    /// fails gives the result: -1, and of the packages what a list gives, 1.
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelPackageListModificationData& data) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelPackageListModificationData>;

extern QelDerivedParserFactoryT<QelPackageListModificationData, QelPackageListModificationData>
    factoryQelPackageListModificationData;

} // namespace Qel
