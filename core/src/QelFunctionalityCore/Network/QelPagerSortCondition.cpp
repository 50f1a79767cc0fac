#include "QelFunctionalityCore/Network/QelPagerSortCondition.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int descendingElement = 1378;

// Written as a flag, yet read as a value: a client may also send 0 to ask for the ascending order by name.
int readDescending(const QelMessageIterator& cursor, QelPagerSortCondition& condition) {
    return cursor.getValue(condition.descending, descendingElement);
}
int writeDescending(QelMessageIterator& cursor, const QelPagerSortCondition& condition) {
    return condition.descending ? cursor.putChild(descendingElement) : 0;
}

} // namespace

template <> struct Wire<QelPagerSortCondition> : WireWords<QelPagerSortCondition> {
    static constexpr QelWireField fields[] = {
        field<&QelPagerSortCondition::column>(1741, required, always),
        step<&readDescending, &writeDescending>("descending", descendingElement, ignored, ifSet),
    };
};
template <> const QelWireLayout& qelWireLayout<QelPagerSortCondition>() {
    return wireLayoutOf<QelPagerSortCondition>;
}

} // namespace Qel
