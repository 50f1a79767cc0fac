#pragma once

#include <optional>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Host/QelDisk.h"
#include "QelFunctionalityCore/Host/QelNetwork.h"
#include "QelFunctionalityCore/Host/QelProcessList.h"
#include "QelFunctionalityCore/Host/QelStatistics.h"
#include "QelFunctionalityCore/Host/QelSystemInfo.h"
#include "QelFunctionalityCore/Host/QelUser.h"

namespace Qel::Tool {

/// What is told of a machine.  Each part stands in an element of its own below the root of a message: `system_info`,
/// `load_averages`, `network`, `disks`, `processes`, and a `user` and a `group` for each user and group.
struct HostReport {
    std::optional<QelSystemInfo> system;
    std::optional<QelLoadAvg> load;
    std::optional<QelNetwork> network;
    std::optional<QelDisk> disks;
    std::optional<QelProcessList> processes;
    std::vector<QelUser> users;
    std::vector<QelGroup> groups;

    /// The column of the processes with their arguments, if they are included.
    static constexpr const char* argumentsColumn = "arguments";

    [[nodiscard]] bool isEmpty() const;
};

/// What went wrong with single parts, a line each.
using Problems = std::vector<std::string>;

/// Writes the parts that there are below the element under the cursor.
void writeReport(QelMessageIterator& cursor, const HostReport& report, Problems& problems);

/// Reads the parts that are there.  One that can't be read is a problem, and the others are read all the same.
[[nodiscard]] HostReport readReport(const QelMessageIterator& cursor, Problems& problems);

} // namespace Qel::Tool
