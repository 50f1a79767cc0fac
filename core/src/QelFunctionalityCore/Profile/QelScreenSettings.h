#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Profile/QelProfileFilter.h"
#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A section of a dashboard screen, and where it stands.
struct QelDashboardSection : QelProfileRecord {
    std::string name;
    std::string text;
    int order = 0;
    int slot = 0;

    using Reader = QelRecordReader<QelDashboardSection>;
    using Writer = QelRecordWriter<QelDashboardSection>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The layout of a dashboard screen.
struct QelScreenInfo : QelProfileRecord {
    /// The element of the name.
    static constexpr int nameID = 2217;

    std::string name;
    std::vector<QelDashboardSection> sections;

    /// By name alone.
    friend bool operator<(const QelScreenInfo& a, const QelScreenInfo& b) { return a.name < b.name; }

    using Reader = QelRecordReader<QelScreenInfo>;
    using Writer = QelRecordWriter<QelScreenInfo>;
    using filterReader = QelItemNameReader<QelScreenInfo>;
    using filterWriter = QelItemNameWriter<QelScreenInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The dashboard screens, one of a name.
struct QelScreenSettings : QelProfileRecord {
    using Item = QelScreenInfo;
    /// The element of an item.
    static constexpr int itemID = 2219;

    std::set<QelScreenInfo> items;

    using Reader = QelRecordReader<QelScreenSettings>;
    using Writer = QelRecordWriter<QelScreenSettings>;
    using differenceReader = QelFilteredReader<QelScreenSettings, QelFilterMode::difference>;
    using intersectionReader = QelFilteredReader<QelScreenSettings, QelFilterMode::intersection>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// For screens what it is for browse lists.  A profile read through a filter takes its screens whole; this is for those
/// who read a QelScreenSettings by itself.
[[nodiscard]] int readFiltered(const QelMessageIterator& cursor, QelScreenSettings& settings,
                               const QelScreenSettings* filter, QelFilterMode mode);

} // namespace Qel
