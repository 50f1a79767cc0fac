// error: readOrder must name each element ID of the table once, and no other
#include "QelMessage/QelRecord.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

struct Name : QelRecord<Name> {
    int id = 0;

    static const QelWireLayout& wire;
};

template <> struct Wire<Name> : WireWords<Name> {
    static constexpr QelWireField fields[] = {field<&R::id>(1010, required, always)};
    static constexpr int readOrder[] = {1026};
};
const QelWireLayout& Name::wire = wireLayoutOf<Name>;

} // namespace Qel
