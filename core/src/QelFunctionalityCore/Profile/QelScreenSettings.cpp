#include "QelFunctionalityCore/Profile/QelScreenSettings.h"

#include "QelFunctionalityCore/Profile/QelFilteredItems.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDashboardSection> : WireWords<QelDashboardSection> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(2217, required, always),
        field<&R::text>(2220, required, always),
        field<&R::order>(1739, required, always),
        field<&R::slot>(2212, required, always),
    };
};
const QelWireLayout& QelDashboardSection::wire = wireLayoutOf<QelDashboardSection>;

template <> struct Wire<QelScreenInfo> : WireWords<QelScreenInfo> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(QelScreenInfo::nameID, required, always),
        wrapped<&R::sections>(2218, 1207, required, always),
    };
};
const QelWireLayout& QelScreenInfo::wire = wireLayoutOf<QelScreenInfo>;

template <> struct Wire<QelScreenSettings> : WireWords<QelScreenSettings> {
    static constexpr QelWireField fields[] = {list<&R::items>(QelScreenSettings::itemID, optional)};
};
const QelWireLayout& QelScreenSettings::wire = wireLayoutOf<QelScreenSettings>;

int readFiltered(const QelMessageIterator& cursor, QelScreenSettings& settings, const QelScreenSettings* filter,
                 QelFilterMode mode) {
    return Internal::readFilteredItems(cursor, settings, filter, mode);
}

} // namespace Qel
