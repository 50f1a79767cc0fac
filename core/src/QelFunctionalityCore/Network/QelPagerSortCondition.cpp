#include "QelFunctionalityCore/Network/QelPagerSortCondition.h"

#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

// Written as a flag but read as a value: a client may send 0 to request ascending order explicitly.
int readDescending(const QelMessageIterator& cursor, QelPagerSortCondition& condition) {
    return cursor.getValue(condition.descending, "descending"_element);
}
int writeDescending(QelMessageIterator& cursor, const QelPagerSortCondition& condition) {
    return condition.descending ? cursor.putChild("descending"_element) : 0;
}

} // namespace

template <> struct Wire<QelPagerSortCondition> : WireWords<QelPagerSortCondition> {
    static constexpr QelWireField fields[] = {
        field<&R::column>(1741, required, always),
        step<&readDescending, &writeDescending>("descending", "descending"_element, ignored, ifSet),
    };
};
const QelWireLayout& QelPagerSortCondition::wire = wireLayoutOf<QelPagerSortCondition>;

} // namespace Qel
