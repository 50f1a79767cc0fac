#include "QelFunctionalityCore/Profile/QelBrowseSettings.h"

#include "QelFunctionalityCore/Profile/QelFilteredItems.h"
#include "QelFunctionalityCore/Profile/QelTextBoolCodec.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelBrowseColumn> : WireWords<QelBrowseColumn> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(2213, required, always),
        field<&R::flag2206>(2206, optional, always),
        field<&R::value2214>(2214, optional, always),
    };
};
const QelWireLayout& QelBrowseColumn::wire = wireLayoutOf<QelBrowseColumn>;

template <> struct Wire<QelBrowseInfo> : WireWords<QelBrowseInfo> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(QelBrowseInfo::nameID, required, always),
        field<&R::value2210>(2210, required, always),
        wrapped<&R::columns2216>(2216, 2212, required, always),
        wrapped<&R::columns2215>(2215, 2212, required, always),
        wrapped<&R::columns2211>(2211, 2212, required, always),
    };
};
const QelWireLayout& QelBrowseInfo::wire = wireLayoutOf<QelBrowseInfo>;

template <> struct Wire<QelBrowseSettings> : WireWords<QelBrowseSettings> {
    static constexpr QelWireField fields[] = {list<&R::items>(QelBrowseSettings::itemID, optional)};
};
const QelWireLayout& QelBrowseSettings::wire = wireLayoutOf<QelBrowseSettings>;

QelBrowseInfo::QelBrowseInfo(const std::string& listName) : name(listName) {
    localID = noLocalID;
}

int readFiltered(const QelMessageIterator& cursor, QelBrowseSettings& settings, const QelBrowseSettings* filter,
                 QelFilterMode mode) {
    return Internal::readFilteredItems(cursor, settings, filter, mode);
}

} // namespace Qel
