#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Profile/QelProfileFilter.h"
#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelFunctionalityCore/Profile/QelTextBool.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A column of a browse list.
struct QelBrowseColumn : QelProfileRecord {
    std::string text; ///< never marshalled
    std::string name;
    QelTextBool flag2206;
    int value2214 = 0;

    using Reader = QelRecordReader<QelBrowseColumn>;
    using Writer = QelRecordWriter<QelBrowseColumn>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A browse list: which columns it shows.  The console gives the numbered fields their meaning.
struct QelBrowseInfo : QelProfileRecord {
    /// The element of the name.
    static constexpr int nameID = 2209;

    std::string name;
    int value2210 = 0;
    std::vector<QelBrowseColumn> columns2216;
    std::vector<QelBrowseColumn> columns2215;
    std::vector<QelBrowseColumn> columns2211;

    QelBrowseInfo() = default;
    explicit QelBrowseInfo(const std::string& listName);

    /// By name alone.
    friend bool operator<(const QelBrowseInfo& a, const QelBrowseInfo& b) { return a.name < b.name; }

    using Reader = QelRecordReader<QelBrowseInfo>;
    using Writer = QelRecordWriter<QelBrowseInfo>;
    using filterReader = QelItemNameReader<QelBrowseInfo>;
    using filterWriter = QelItemNameWriter<QelBrowseInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The browse lists, one of a name.
struct QelBrowseSettings : QelProfileRecord {
    using Item = QelBrowseInfo;
    /// The element of an item.
    static constexpr int itemID = 2200;

    std::set<QelBrowseInfo> items;

    using Reader = QelRecordReader<QelBrowseSettings>;
    using Writer = QelRecordWriter<QelBrowseSettings>;
    using differenceReader = QelFilteredReader<QelBrowseSettings, QelFilterMode::difference>;
    using intersectionReader = QelFilteredReader<QelBrowseSettings, QelFilterMode::intersection>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Adds the lists in the current element whose names the filter holds, or doesn't; with no filter, or one without
/// names, all.  An item of which only a part is readable goes in with that part.
///
/// 0, or -1 at an item without a name, with what was added before.
///
/// With names to look at, the cursor isn't brought back: it ends on the last item, or on the one without a name.
[[nodiscard]] int readFiltered(const QelMessageIterator& cursor, QelBrowseSettings& settings,
                               const QelBrowseSettings* filter, QelFilterMode mode);

} // namespace Qel
