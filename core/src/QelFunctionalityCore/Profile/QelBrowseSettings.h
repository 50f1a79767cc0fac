#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Profile/QelProfileFilter.h"
#include "QelFunctionalityCore/Profile/QelProfileRecord.h"
#include "QelFunctionalityCore/Profile/QelTextBool.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A column of a browse list.
struct QEL_EXPORT QelBrowseColumn : QelRecord<QelBrowseColumn, QelProfileRecord> {
    std::string text; ///< not sent
    std::string name;
    QelTextBool flag2206;
    int value2214 = 0;

    static const QelWireLayout& wire;
};

/// The column layout of a browse list.  The console defines the numbered fields.
struct QEL_EXPORT QelBrowseInfo : QelRecord<QelBrowseInfo, QelProfileRecord> {
    /// Element ID of the name.
    static constexpr int nameID = 2209;

    std::string name;
    int value2210 = 0;
    std::vector<QelBrowseColumn> columns2216;
    std::vector<QelBrowseColumn> columns2215;
    std::vector<QelBrowseColumn> columns2211;

    QelBrowseInfo() = default;
    explicit QelBrowseInfo(const std::string& listName);

    /// Compares names only.
    friend bool operator<(const QelBrowseInfo& a, const QelBrowseInfo& b) { return a.name < b.name; }

    using filterReader = QelItemNameReader<QelBrowseInfo>;
    using filterWriter = QelItemNameWriter<QelBrowseInfo>;

    static const QelWireLayout& wire;
};

/// The browse lists, with unique names.
struct QEL_EXPORT QelBrowseSettings : QelRecord<QelBrowseSettings, QelProfileRecord> {
    using Item = QelBrowseInfo;
    /// Element ID of an item.
    static constexpr int itemID = 2200;

    std::set<QelBrowseInfo> items;

    using differenceReader = QelFilteredReader<QelBrowseSettings, QelFilterMode::difference>;
    using intersectionReader = QelFilteredReader<QelBrowseSettings, QelFilterMode::intersection>;

    static const QelWireLayout& wire;
};

/// Adds those lists in the current element whose names are in the filter (intersection) or not in it (difference).  A
/// null or empty filter adds all.  A partly malformed item is added with the fields that could be read.
///
/// Returns -1 at an item without a name; items added before remain.
///
/// If the filter is not empty, the cursor is not restored: it ends at the last item, or at the item without a name.
QEL_EXPORT [[nodiscard]] int readFiltered(const QelMessageIterator& cursor, QelBrowseSettings& settings,
                                          const QelBrowseSettings* filter, QelFilterMode mode);

} // namespace Qel
