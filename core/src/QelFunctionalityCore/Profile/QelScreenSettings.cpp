#include "QelFunctionalityCore/Profile/QelScreenSettings.h"

#include "QelFunctionalityCore/Profile/QelFilteredItems.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelDashboardSection> : WireWords<QelDashboardSection> {
    static constexpr QelWireField fields[] = {
        field<&QelDashboardSection::name>(2217, required, always),
        field<&QelDashboardSection::text>(2220, required, always),
        field<&QelDashboardSection::order>(1739, required, always),
        field<&QelDashboardSection::slot>(2212, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelDashboardSection>() {
    return wireLayoutOf<QelDashboardSection>;
}

template <> struct Wire<QelScreenInfo> : WireWords<QelScreenInfo> {
    static constexpr QelWireField fields[] = {
        field<&QelScreenInfo::name>(QelScreenInfo::nameID, required, always),
        wrapped<&QelScreenInfo::sections>(2218, 1207, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelScreenInfo>() {
    return wireLayoutOf<QelScreenInfo>;
}

template <> struct Wire<QelScreenSettings> : WireWords<QelScreenSettings> {
    static constexpr QelWireField fields[] = {list<&QelScreenSettings::items>(QelScreenSettings::itemID, optional)};
};
template <> const QelWireLayout& qelWireLayout<QelScreenSettings>() {
    return wireLayoutOf<QelScreenSettings>;
}

int readFiltered(const QelMessageIterator& cursor, QelScreenSettings& settings, const QelScreenSettings* filter,
                 QelFilterMode mode) {
    return Internal::readFilteredItems(cursor, settings, filter, mode);
}

} // namespace Qel
