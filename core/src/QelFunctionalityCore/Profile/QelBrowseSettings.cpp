#include "QelFunctionalityCore/Profile/QelBrowseSettings.h"

#include "QelFunctionalityCore/Profile/QelFilteredItems.h"
#include "QelFunctionalityCore/Profile/QelTextBoolCodec.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelBrowseColumn> : WireWords<QelBrowseColumn> {
    static constexpr QelWireField fields[] = {
        field<&QelBrowseColumn::name>(2213, required, always),
        field<&QelBrowseColumn::flag2206>(2206, optional, always),
        field<&QelBrowseColumn::value2214>(2214, optional, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelBrowseColumn>() {
    return wireLayoutOf<QelBrowseColumn>;
}

template <> struct Wire<QelBrowseInfo> : WireWords<QelBrowseInfo> {
    static constexpr QelWireField fields[] = {
        field<&QelBrowseInfo::name>(QelBrowseInfo::nameID, required, always),
        field<&QelBrowseInfo::value2210>(2210, required, always),
        wrapped<&QelBrowseInfo::columns2216>(2216, 2212, required, always),
        wrapped<&QelBrowseInfo::columns2215>(2215, 2212, required, always),
        wrapped<&QelBrowseInfo::columns2211>(2211, 2212, required, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelBrowseInfo>() {
    return wireLayoutOf<QelBrowseInfo>;
}

template <> struct Wire<QelBrowseSettings> : WireWords<QelBrowseSettings> {
    static constexpr QelWireField fields[] = {list<&QelBrowseSettings::items>(QelBrowseSettings::itemID, optional)};
};
template <> const QelWireLayout& qelWireLayout<QelBrowseSettings>() {
    return wireLayoutOf<QelBrowseSettings>;
}

QelBrowseInfo::QelBrowseInfo(const std::string& listName) : QelProfileRecord{noLocalID}, name(listName) {}

int readFiltered(const QelMessageIterator& cursor, QelBrowseSettings& settings, const QelBrowseSettings* filter,
                 QelFilterMode mode) {
    return Internal::readFilteredItems(cursor, settings, filter, mode);
}

} // namespace Qel
