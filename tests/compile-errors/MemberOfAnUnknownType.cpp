// error: no QelWireValue<> for this member type
#include "QelMessage/QelRecord.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

struct Colour {};

struct Paint : QelRecord<Paint> {
    Colour colour;

    static const QelWireLayout& wire;
};

template <> struct Wire<Paint> : WireWords<Paint> {
    static constexpr QelWireField fields[] = {field<&R::colour>(1010, required, always)};
};
const QelWireLayout& Paint::wire = wireLayoutOf<Paint>;

} // namespace Qel
