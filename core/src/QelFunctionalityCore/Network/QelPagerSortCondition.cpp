#include "QelFunctionalityCore/Network/QelPagerSortCondition.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int descendingElement = 1378;

// Written as a flag but read as a value: a client may send 0 to request ascending order explicitly.
int readDescending(const QelMessageIterator& cursor, QelPagerSortCondition& condition) {
    return cursor.getValue(condition.descending, descendingElement);
}
int writeDescending(QelMessageIterator& cursor, const QelPagerSortCondition& condition) {
    return condition.descending ? cursor.putChild(descendingElement) : 0;
}

} // namespace

template <> struct Wire<QelPagerSortCondition> : WireWords<QelPagerSortCondition> {
    static constexpr QelWireField fields[] = {
        field<&R::column>(1741, required, always),
        step<&readDescending, &writeDescending>("descending", descendingElement, ignored, ifSet),
    };
};
const QelWireLayout& QelPagerSortCondition::wire = wireLayoutOf<QelPagerSortCondition>;

} // namespace Qel
