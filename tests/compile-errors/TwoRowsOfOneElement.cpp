// error: two fields of this record share one element ID
#include "QelMessage/QelRecord.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

struct Pair : QelRecord<Pair> {
    int first = 0;
    int second = 0;

    static const QelWireLayout& wire;
};

template <> struct Wire<Pair> : WireWords<Pair> {
    static constexpr QelWireField fields[] = {
        field<&R::first>(1010, required, always),
        field<&R::second>(1010, required, always),
    };
};
const QelWireLayout& Pair::wire = wireLayoutOf<Pair>;

} // namespace Qel
