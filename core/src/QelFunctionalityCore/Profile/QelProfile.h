#pragma once

#include <memory>

#include "QelCommon/Export.h"
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

/// Settings that the management interface stores for a user or a group.  Any section may be unspecified, so a profile
/// can also be partial, or a filter whose specified sections select those of another profile.
struct QEL_EXPORT QelProfile : QelRecord<QelProfile, QelProfileRecord> {
    QelOptionalProperty<QelSID> sid;           ///< the owner
    QelOptionalProperty<QelAuthName> authName; ///< the owner's name; neither written nor read if there is a SID
    QelOptionalProperty<QelPersonalSettings> personal;
    QelOptionalProperty<QelInterfaceSettings> interface;
    QelOptionalProperty<QelBrowseSettings> browse;
    QelOptionalProperty<QelDesktopSettings> desktop;
    QelOptionalProperty<QelScreenSettings> screen;

    /// A profile without an owner: a filter, or one to read into.
    QelProfile();
    explicit QelProfile(const QelAuthName& owner);
    explicit QelProfile(const QelSID& owner);

    /// Returns a profile without any sections.
    [[nodiscard]] static std::unique_ptr<QelProfile> getDefaultProfile(const QelAuthName& owner);
    [[nodiscard]] static std::unique_ptr<QelProfile> getDefaultProfile(const QelSID& owner);

    /// Returns whether any section is specified.
    [[nodiscard]] bool hasSettings() const;

    /// Overlays another profile.  Its sections replace those of this one; browse lists and screens are replaced
    /// individually, by name, each as a whole.  SID and name are copied only if unspecified here.  Always returns 0.
    int merge(const QelProfile& other);

    struct filterReader;
    struct filterWriter;
    using differenceReader = QelFilteredReader<QelProfile, QelFilterMode::difference>;
    using intersectionReader = QelFilteredReader<QelProfile, QelFilterMode::intersection>;

    /// Reader: a missing section is left unchanged; returns -1 for a malformed one.
    static const QelWireLayout& wire;
};

/// Reads a filter: the owner, and which sections are present.  Each section present becomes an empty one; its content
/// is ignored, including the names of browse lists that filterWriter writes.
///
/// Returns -1 if the owner is malformed.  If browse lists or screens are present, also returns -1 for one of their
/// items without a name directly in the profile's element; the names of such items are discarded.
struct QEL_EXPORT QelProfile::filterReader {
    int operator()(const QelMessageIterator& cursor, QelProfile& filter) const;
};

/// Writes a filter: the owner, an empty element for each section, and the names of the browse lists.
///
/// With browse lists, the cursor is left one level deeper, in their element, and the elements of desktop and screens
/// are nested there.  That is the wire format of filters.
struct QEL_EXPORT QelProfile::filterWriter : QelWriterBaseT<filterWriter> {
    int operator()(QelMessageIterator& cursor, const QelProfile& filter) const;
};

/// Reads those sections in the current element that the filter has (intersection) or lacks (difference).  If the filter
/// is null or has no sections, reads the whole profile; only then is the owner read.
///
/// Of the browse lists, an intersection reads those named in the filter, if it names any.  The cursor is then left in
/// their element, so desktop and screens, which are looked up from there, are not found.
///
/// Returns -1 for a malformed section; sections read before remain.
QEL_EXPORT [[nodiscard]] int readFiltered(const QelMessageIterator& cursor, QelProfile& profile,
                                          const QelProfile* filter, QelFilterMode mode);

} // namespace Qel
