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
        checked<&QelPackageListModificationData::operation, isOperation>(1007, required, always),
        field<&QelPackageListModificationData::eid>(1866, required, always),
        wrappedDerivedList<&QelPackageListModificationData::packages, true>(1915, 1295, required, always).filled(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelPackageListModificationData>() {
    return wireLayoutOf<QelPackageListModificationData>;
}

int QelPackageListModificationData::Writer::operator()(QelMessageIterator& cursor,
                                                       const QelPackageListModificationData& data) const {
    if (data.packages.empty())
        return 0;
    return writeWithListLast(qelWireLayout<QelPackageListModificationData>(), &data, cursor);
}

} // namespace Qel
