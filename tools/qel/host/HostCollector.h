#pragma once

#include <cstdint>
#include <string>

#include "qel/host/HostReport.h"

namespace Qel::Tool {

/// Collects information about the local machine.  A failed read is recorded as a problem, "PATH: reason"; the affected
/// part of the report is then missing or incomplete.  A process that exits while its files are being read is also
/// recorded as a problem and skipped.
///
/// The numbered fields are filled as follows:
///
///     QelSystemInfo      f1049 processors, f1052 MHz, f1047 family, f1050 vendor, f1048 model, f2122 stepping,
///                        f2123 cores per package, f1051 feature flags; all from /proc/cpuinfo
///     QelLoadAvg         f1041, f1042, f1043: averages over 1, 5 and 15 minutes; all values of each are equal, since
///                        there is a single sample
///     QelNetwork         f1282: first search domain
///     QelNetInterface    f1072: hardware addresses
///     QelDiskPartition   name: device, f1297: mount point, f1298: file system type, f1299: statvfs() flags,
///                        f1804: mount options
class HostCollector {
public:
    /// Whether to collect the arguments of processes, which may contain passwords.
    enum class Arguments : std::uint8_t { omitted, included };

    /// `root` is prepended to all paths.
    explicit HostCollector(Arguments arguments, std::string root = {})
        : m_arguments(arguments), m_root(std::move(root)) {}

    [[nodiscard]] HostReport collect();
    /// The problems of the last collect().
    [[nodiscard]] const Problems& problems() const { return m_problems; }

private:
    [[nodiscard]] std::string under(const std::string& path) const { return m_root + path; }
    bool readFile(const std::string& path, std::string& content);
    void addProblem(const std::string& what, int error);

    [[nodiscard]] QelSystemInfo system();
    void readSystemRelease(QelSystemInfo& info);
    void readProcessors(QelSystemInfo& info);
    void readMemory(QelSystemInfo& info);
    [[nodiscard]] std::optional<QelLoadAvg> load();
    [[nodiscard]] QelNetwork network();
    void readResolver(QelNetwork& network);
    void readInterfaces(QelNetwork& network);
    [[nodiscard]] std::optional<QelDisk> disks();
    [[nodiscard]] std::optional<QelProcessList> processes();
    void readProcess(const std::string& pid, QelProcessList& list);
    [[nodiscard]] bool readProcessFile(const std::string& path, std::string& content);
    [[nodiscard]] std::vector<QelGroup> groups();
    [[nodiscard]] std::vector<QelUser> users(const std::vector<QelGroup>& groups);

    Arguments m_arguments;
    std::string m_root;
    Problems m_problems;
};

} // namespace Qel::Tool
