#pragma once

#include <memory>

#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Profile/QelBrowseSettings.h"
#include "QelFunctionalityCore/Profile/QelDesktopSettings.h"
#include "QelFunctionalityCore/Profile/QelInterfaceSettings.h"
#include "QelFunctionalityCore/Profile/QelPersonalSettings.h"
#include "QelFunctionalityCore/Profile/QelProfileFilter.h"
#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelFunctionalityCore/Profile/QelScreenSettings.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// What the management interface remembers about a user or a group.  Each section may be unspecified, so a profile may
/// be a part of one, or a filter that tells which sections of another are meant.
struct QelProfile : QelProfileRecord {
    QelOptionalProperty<QelSID> sid;           ///< whose profile it is
    QelOptionalProperty<QelAuthName> authName; ///< the same told by name; not written beside `sid`, nor read
    QelOptionalProperty<QelPersonalSettings> personal;
    QelOptionalProperty<QelInterfaceSettings> interface;
    QelOptionalProperty<QelBrowseSettings> browse;
    QelOptionalProperty<QelDesktopSettings> desktop;
    QelOptionalProperty<QelScreenSettings> screen;

    /// Nobody's: a filter, or one to read into.
    QelProfile();
    explicit QelProfile(const QelAuthName& owner);
    explicit QelProfile(const QelSID& owner);

    /// The profile of one who has set nothing yet.
    [[nodiscard]] static std::unique_ptr<QelProfile> getDefaultProfile(const QelAuthName& owner);
    [[nodiscard]] static std::unique_ptr<QelProfile> getDefaultProfile(const QelSID& owner);

    /// Whether any section is specified.
    [[nodiscard]] bool hasSettings() const;

    /// Lays another profile over this one.  Its sections replace those here; of browse lists and screens only those of
    /// the same name, each as a whole.  An identity is taken where this profile has none of that kind.  Always 0.
    int merge(const QelProfile& other);

    /// A section that is missing stays as it was; one that is malformed gives -1.
    using Reader = QelRecordReader<QelProfile>;
    using Writer = QelRecordWriter<QelProfile>;
    struct filterReader;
    struct filterWriter;
    using differenceReader = QelFilteredReader<QelProfile, QelFilterMode::difference>;
    using intersectionReader = QelFilteredReader<QelProfile, QelFilterMode::intersection>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Reads a filter as it travels: the identity, and which sections there are.  Each that is there becomes an empty one,
/// whatever it holds, so the names of browse lists that a writer of filters sent along are not seen.
///
/// -1 for an unreadable identity, and where there are browse lists or screens, for an item of them without a name that
/// stands directly in the profile's element; the names of such items are not kept.
struct QelProfile::filterReader {
    int operator()(const QelMessageIterator& cursor, QelProfile& filter) const;
};

/// Writes a filter: the identity, an empty element for each section, and the names of the browse lists.
///
/// A filter with browse lists leaves the cursor one level deeper, in their element, and there stand the elements of the
/// desktop and the screens as well: that is the format of filters.
struct QelProfile::filterWriter : QelWriterBaseT<filterWriter> {
    int operator()(QelMessageIterator& cursor, const QelProfile& filter) const;
};

/// Reads the sections in the current element that the filter has, or hasn't; with no filter, or one without sections,
/// the whole profile.  Identities are read in the latter case only.
///
/// Of the browse lists an intersection takes those that the filter names, if it names any.  The cursor is then left in
/// their element, and desktop and screens, which are looked for there, aren't found.
///
/// -1 for a malformed section; those before it stay.
[[nodiscard]] int readFiltered(const QelMessageIterator& cursor, QelProfile& profile, const QelProfile* filter,
                               QelFilterMode mode);

} // namespace Qel
