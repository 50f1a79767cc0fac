// error: flag<> is for bool members: the presence of the element is the value
#include "QelMessage/QelRecord.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

struct Lamp : QelRecord<Lamp> {
    int isOn = 0;

    static const QelWireLayout& wire;
};

template <> struct Wire<Lamp> : WireWords<Lamp> { static constexpr QelWireField fields[] = {flag<&R::isOn>(1705)}; };
const QelWireLayout& Lamp::wire = wireLayoutOf<Lamp>;

} // namespace Qel
