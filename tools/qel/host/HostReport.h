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

/// Information about a machine.  In a message, each part is a child of the root: `system_info`, `load_averages`,
/// `network`, `disks`, `processes`, and one `user` or `group` for each user and group.
struct HostReport {
    std::optional<QelSystemInfo> system;
    std::optional<QelLoadAvg> load;
    std::optional<QelNetwork> network;
    std::optional<QelDisk> disks;
    std::optional<QelProcessList> processes;
    std::vector<QelUser> users;
    std::vector<QelGroup> groups;

    /// The column of the process list that contains the arguments, if they were collected.
    static constexpr const char* argumentsColumn = "arguments";

    [[nodiscard]] bool isEmpty() const;
};

/// Error messages of parts that could not be read or written, one line each.
using Problems = std::vector<std::string>;

/// Writes the available parts as children of the element under the cursor.
void writeReport(QelMessageIterator& cursor, const HostReport& report, Problems& problems);

/// Reads the available parts.  A part that cannot be read is added to `problems`; the others are still read.
[[nodiscard]] HostReport readReport(const QelMessageIterator& cursor, Problems& problems);

} // namespace Qel::Tool
