#include "QelFunctionalityCore/Events/QelEventData.h"

#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template class QelDerivedParserFactory<QelEventData>;

QelDerivedParserFactoryT<QelAnyEventData, QelEventData> factoryQelAnyEventData(true);

template <> struct Wire<QelAnyEventData> : WireWords<QelAnyEventData> {
    static constexpr int nsId = 292, typeId = 156;
    static constexpr QelWireField fields[] = {
        field<&R::any>(0, required, always),
    };
};
const QelWireLayout& QelAnyEventData::wire = wireLayoutOf<QelAnyEventData>;

void QelAnyEventData::toInfo(QelInfo&) const {}

int QelAnyEventData::addSubscriptionName(QelMessage&) {
    return 0;
}

} // namespace Qel
