#include "QelFunctionalityCore/Host/QelPackageListModificationData.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

template class QelDerivedParserFactory<QelPackageListModificationData>;

QelDerivedParserFactoryT<QelPackageListModificationData, QelPackageListModificationData>
    factoryQelPackageListModificationData(true);

namespace {

constexpr int operationElement = 1007;
constexpr int lastOperation = 2;

int readOperation(const QelMessageIterator& cursor, QelPackageListModificationData& data) {
    int operation = -1;
    if (cursor.getValue(operation, operationElement) != 0 || operation < 0 || operation > lastOperation)
        return -1;
    data.operation = operation;
    return 0;
}

int writeOperation(QelMessageIterator& cursor, const QelPackageListModificationData& data) {
    return cursor.putValue(data.operation, operationElement);
}

} // namespace

template <> struct Wire<QelPackageListModificationData> : WireWords<QelPackageListModificationData> {
    static constexpr QelWireField fields[] = {
        step<&readOperation, &writeOperation, int>("operation", operationElement, required),
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
    return writeByLayout(qelWireLayout<QelPackageListModificationData>(), &data, cursor);
}

} // namespace Qel
