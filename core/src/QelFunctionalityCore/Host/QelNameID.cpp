#include "QelFunctionalityCore/Host/QelNameID.h"

#include <limits>

#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

// The name must be read before: a record without name and number is rejected.  The writer encodes numbers from 2^31 on
// as negative numbers; the reader also accepts the unsigned form.
template <class NameID, int element> int readID(const QelMessageIterator& cursor, NameID& record) {
    record.id = NameID().id;
    long long number = 0;
    if (cursor.getValueLongLong(number, element) == 0 && number >= std::numeric_limits<int>::min() &&
        number <= std::numeric_limits<unsigned>::max())
        record.id = static_cast<unsigned>(number);
    return record.isEmpty() ? -1 : 0;
}

template <class NameID, int element> int writeID(QelMessageIterator& cursor, const NameID& record) {
    return record.isID() ? cursor.putValue(static_cast<int>(record.id), element) : 0;
}

} // namespace

template <> struct Wire<QelGroupNameID> : WireWords<QelGroupNameID> {
    static constexpr std::string_view typeName = "QelGroupNameID";
    static constexpr QelWireField fields[] = {
        step<&readID<QelGroupNameID, 1027>, &writeID<QelGroupNameID, 1027>, int>("id", 1027, required, ifSet),
        field<&R::name>(1026, ignored, ifSet),
    };
    static constexpr int readOrder[] = {1026, 1027};
};
template <> const QelWireLayout& QelGroupNameID::wire = wireLayoutOf<QelGroupNameID>;

template <> struct Wire<QelUserNameID> : WireWords<QelUserNameID> {
    static constexpr std::string_view typeName = "QelUserNameID";
    static constexpr QelWireField fields[] = {
        step<&readID<QelUserNameID, 1030>, &writeID<QelUserNameID, 1030>, int>("id", 1030, required, ifSet),
        field<&R::name>(1026, ignored, ifSet),
    };
    static constexpr int readOrder[] = {1026, 1030};
};
template <> const QelWireLayout& QelUserNameID::wire = wireLayoutOf<QelUserNameID>;

} // namespace Qel
