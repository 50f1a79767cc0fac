#include "QelFunctionalityCore/Profile/QelProfile.h"

#include <type_traits>
#include <utility>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

/// Reads and specifies a property from child `id` if it exists.
template <class T, class Reader = typename T::reader_type>
int readIfPresent(const QelMessageIterator& cursor, QelOptionalProperty<T>& property, int id,
                  const Reader& reader = Reader()) {
    if (cursor.seekPresence(id) != 0)
        return 0;
    if (cursor.getObject(property.get(), reader, id) != 0)
        return -1;
    property.specify(true);
    return 0;
}

// The SID takes precedence: with one, the name is neither read nor written.
int readAuthName(const QelMessageIterator& cursor, QelProfile& profile) {
    return cursor.seekPresence("sid"_element) == 0 ? 0 : readIfPresent(cursor, profile.authName, "auth_name"_element);
}
int writeAuthName(QelMessageIterator& cursor, const QelProfile& profile) {
    if (profile.sid.isSpecified() || !profile.authName.isSpecified())
        return 0;
    return cursor.putObj(profile.authName.get(), "auth_name"_element);
}

template <class T> constexpr QelWireCodec optionalCodec() {
    QelWireCodec codec = qelWireCodec<QelOptionalProperty<T>>;
    codec.read = [](const QelMessageIterator& cursor, void* property, int id, const QelWireField&) {
        return readIfPresent(cursor, *static_cast<QelOptionalProperty<T>*>(property), id);
    };
    return codec;
}
template <class T> constexpr QelWireCodec unchangedIfAbsent = optionalCodec<T>();

struct ProfileWords : WireWords<QelProfile> {
    /// A property that is left unchanged if its element is missing.
    template <auto member> static constexpr QelWireField part(int id) {
        QelWireField row = field<member>(id, optional, ifSet);
        row.codec = &unchangedIfAbsent<std::remove_cvref_t<decltype((std::declval<QelProfile>().*member).get())>>;
        return row;
    }
};

} // namespace

template <> struct Wire<QelProfile> : ProfileWords {
    static constexpr QelWireField fields[] = {
        part<&QelProfile::sid>("sid"_element),
        step<&readAuthName, &writeAuthName>("authName", "auth_name"_element, optional, ifSet),
        part<&QelProfile::personal>("personal_settings"_element),
        part<&QelProfile::interface>("interface_settings"_element),
        part<&QelProfile::browse>("browse_settings"_element),
        part<&QelProfile::desktop>("desktop_settings"_element),
        part<&QelProfile::screen>("screen_settings"_element),
    };
};
const QelWireLayout& QelProfile::wire = wireLayoutOf<QelProfile>;

QelProfile::QelProfile() {
    localID = noLocalID;
}

QelProfile::QelProfile(const QelAuthName& owner) : QelProfile() {
    authName = owner;
}

QelProfile::QelProfile(const QelSID& owner) : QelProfile() {
    sid = owner;
}

std::unique_ptr<QelProfile> QelProfile::getDefaultProfile(const QelAuthName& owner) {
    return std::make_unique<QelProfile>(owner);
}

std::unique_ptr<QelProfile> QelProfile::getDefaultProfile(const QelSID& owner) {
    return std::make_unique<QelProfile>(owner);
}

bool QelProfile::hasSettings() const {
    return interface.isSpecified() || personal.isSpecified() || browse.isSpecified() || desktop.isSpecified() ||
           screen.isSpecified();
}

// --- Merging

namespace {

template <class T> void takeIfAbsent(QelOptionalProperty<T>& property, const QelOptionalProperty<T>& other) {
    if (!property.isSpecified() && other.isSpecified())
        property = other;
}

template <class T> void takeIfPresent(QelOptionalProperty<T>& property, const QelOptionalProperty<T>& other) {
    if (other.isSpecified())
        property = other;
}

template <class Settings>
void mergeItems(QelOptionalProperty<Settings>& section, const QelOptionalProperty<Settings>& other) {
    if (!other.isSpecified())
        return;
    auto items = other->items;
    items.merge(section->items); // moves only the names not present yet
    section->items = std::move(items);
    section.specify(true);
}

} // namespace

int QelProfile::merge(const QelProfile& other) {
    takeIfAbsent(sid, other.sid);
    takeIfAbsent(authName, other.authName);
    takeIfPresent(personal, other.personal);
    takeIfPresent(interface, other.interface);
    mergeItems(browse, other.browse);
    takeIfPresent(desktop, other.desktop);
    mergeItems(screen, other.screen);
    return 0;
}

// --- Filters

namespace {

template <class T> void specifyIfPresent(const QelMessageIterator& cursor, QelOptionalProperty<T>& section, int id) {
    if (cursor.seekPresence(id) == 0)
        section = T();
}

// The items are siblings of the section's element, not nested in it.  They are validated and discarded.
template <class Settings>
int specifyItemsIfPresent(const QelMessageIterator& cursor, QelOptionalProperty<Settings>& section, int id) {
    if (cursor.seekPresence(id) != 0)
        return 0;
    section = Settings();
    Settings checked;
    return QelReaderSet(typename Settings::Item::filterReader(), Settings::itemID, QelReaderOptional)(cursor,
                                                                                                      checked.items);
}

int writeEmpty(QelMessageIterator& cursor, bool isSpecified, int id) {
    return !isSpecified || cursor.putValue("", 0, id) == 0 ? 0 : -1;
}

} // namespace

int QelProfile::filterReader::operator()(const QelMessageIterator& cursor, QelProfile& filter) const {
    if (readIfPresent(cursor, filter.sid, "sid"_element) != 0) {
        setErrorMessage("cannot read a filter: element %s is malformed", QelNames::elementName("sid"_element).c_str());
        return -1;
    }
    if (readAuthName(cursor, filter) != 0)
        return -1;
    specifyIfPresent(cursor, filter.personal, "personal_settings"_element);
    specifyIfPresent(cursor, filter.interface, "interface_settings"_element);
    specifyIfPresent(cursor, filter.desktop, "desktop_settings"_element);
    if (specifyItemsIfPresent(cursor, filter.browse, "browse_settings"_element) != 0 ||
        specifyItemsIfPresent(cursor, filter.screen, "screen_settings"_element) != 0)
        return -1;
    return 0;
}

int QelProfile::filterWriter::operator()(QelMessageIterator& cursor, const QelProfile& filter) const {
    if (filter.sid.isSpecified() && cursor.putObj(filter.sid.get(), "sid"_element) != 0)
        return -1;
    if (writeAuthName(cursor, filter) != 0)
        return -1;
    if (writeEmpty(cursor, filter.personal.isSpecified(), "personal_settings"_element) != 0 ||
        writeEmpty(cursor, filter.interface.isSpecified(), "interface_settings"_element) != 0)
        return -1;
    if (filter.browse.isSpecified()) {
        cursor.newChild("browse_settings"_element);
        const auto names = QelWriterList(QelBrowseInfo::filterWriter(), QelBrowseSettings::itemID);
        if (names(cursor, filter.browse->items) != 0)
            return -1;
    }
    if (writeEmpty(cursor, filter.desktop.isSpecified(), "desktop_settings"_element) != 0 ||
        writeEmpty(cursor, filter.screen.isSpecified(), "screen_settings"_element) != 0)
        return -1;
    return 0;
}

int readFiltered(const QelMessageIterator& cursor, QelProfile& profile, const QelProfile* filter, QelFilterMode mode) {
    if (!filter || !filter->hasSettings())
        return QelProfile::Reader()(cursor, profile);

    const auto isWanted = [mode](const auto& section) {
        return section.isSpecified() == (mode == QelFilterMode::intersection);
    };
    if (isWanted(filter->personal) && readIfPresent(cursor, profile.personal, "personal_settings"_element) != 0)
        return -1;
    if (isWanted(filter->interface) && readIfPresent(cursor, profile.interface, "interface_settings"_element) != 0)
        return -1;
    if (isWanted(filter->browse)) {
        const auto readLists = [&](const QelMessageIterator& at, QelBrowseSettings& lists) {
            return readFiltered(at, lists, &filter->browse.get(), mode);
        };
        if (readIfPresent(cursor, profile.browse, "browse_settings"_element, readLists) != 0)
            return -1;
    }
    if (isWanted(filter->desktop) && readIfPresent(cursor, profile.desktop, "desktop_settings"_element) != 0)
        return -1;
    if (isWanted(filter->screen) && readIfPresent(cursor, profile.screen, "screen_settings"_element) != 0)
        return -1;
    return 0;
}

} // namespace Qel
