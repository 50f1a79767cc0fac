#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Profile/QelProfileFilter.h"
#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A section of a dashboard screen and its position.
struct QEL_EXPORT QelDashboardSection : QelRecord<QelDashboardSection, QelProfileRecord> {
    std::string name;
    std::string text;
    int order = 0;
    int slot = 0;

    static const QelWireLayout& wire;
};

/// The layout of a dashboard screen.
struct QEL_EXPORT QelScreenInfo : QelRecord<QelScreenInfo, QelProfileRecord> {
    /// Element ID of the name.
    static constexpr int nameID = 2217;

    std::string name;
    std::vector<QelDashboardSection> sections;

    /// Compares names only.
    friend bool operator<(const QelScreenInfo& a, const QelScreenInfo& b) { return a.name < b.name; }

    using filterReader = QelItemNameReader<QelScreenInfo>;
    using filterWriter = QelItemNameWriter<QelScreenInfo>;

    static const QelWireLayout& wire;
};

/// The dashboard screens, with unique names.
struct QEL_EXPORT QelScreenSettings : QelRecord<QelScreenSettings, QelProfileRecord> {
    using Item = QelScreenInfo;
    /// Element ID of an item.
    static constexpr int itemID = 2219;

    std::set<QelScreenInfo> items;

    using differenceReader = QelFilteredReader<QelScreenSettings, QelFilterMode::difference>;
    using intersectionReader = QelFilteredReader<QelScreenSettings, QelFilterMode::intersection>;

    static const QelWireLayout& wire;
};

/// Reads dashboard screens like readFiltered() for QelBrowseSettings.  A filtered profile reads its screens without a
/// filter; this function is for a separate QelScreenSettings.
QEL_EXPORT [[nodiscard]] int readFiltered(const QelMessageIterator& cursor, QelScreenSettings& settings,
                                          const QelScreenSettings* filter, QelFilterMode mode);

} // namespace Qel
