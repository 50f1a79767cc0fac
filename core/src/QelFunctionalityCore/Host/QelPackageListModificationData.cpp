#include "QelFunctionalityCore/Host/QelPackageListModificationData.h"

#include "QelFunctionalityCore/Values/QelListLastWriter.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template class QelDerivedParserFactory<QelPackageListModificationData>;

QelDerivedParserFactoryT<QelPackageListModificationData, QelPackageListModificationData>
    factoryQelPackageListModificationData(true);

namespace {

bool isOperation(int operation) {
    constexpr int last = 2;
    return operation >= 0 && operation <= last;
}

} // namespace

template <> struct Wire<QelPackageListModificationData> : WireWords<QelPackageListModificationData> {
    static constexpr QelWireField fields[] = {
        validated<&R::operation, isOperation>(1007, required, always),
        field<&R::eid>(1866, required, always),
        wrappedDerivedList<&R::packages, true>(1915, 1295, required, always).nonEmpty(),
    };
};
const QelWireLayout& QelPackageListModificationData::wire = wireLayoutOf<QelPackageListModificationData>;

int QelPackageListModificationData::Writer::operator()(QelMessageIterator& cursor,
                                                       const QelPackageListModificationData& data) const {
    if (data.packages.empty())
        return 0;
    return writeWithListLast(QelPackageListModificationData::wire, &data, cursor);
}

} // namespace Qel
