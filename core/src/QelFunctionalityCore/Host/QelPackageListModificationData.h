#pragma once

#include <string_view>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Host/QelPackage.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Payload of the event that reports a change of an environment's packages.
struct QEL_EXPORT QelPackageListModificationData : QelRecord<QelPackageListModificationData> {
    static constexpr std::string_view subscriptionName = "package_list_subscription";

    virtual ~QelPackageListModificationData() = default;

    int operation = -1; ///< 0, 1 or 2; the reader rejects any other number
    QelEID eid;
    QelPackageList packages;

    /// Writes nothing and returns 0 if there are no packages, since nothing has changed.  Otherwise stops at the first
    /// failure: 1 for the packages, the failure code of list writers, -1 for any other field.
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelPackageListModificationData& data) const;
    };
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelPackageListModificationData>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelPackageListModificationData, QelPackageListModificationData>
    factoryQelPackageListModificationData;

} // namespace Qel
