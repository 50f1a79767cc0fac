#pragma once

#include <cstdint>
#include <string>

#include "qel/host/HostReport.h"

namespace Qel::Tool {

/// Learns of the machine that it runs on.  What can't be read is a problem, told as "PATH: reason", and the part that
/// needs it is left out or has the rest only.
///
/// The fields that bear numbers are filled so:
///
///     QelSystemInfo      f1049 processors, f1052 MHz, f1047 family, f1050 vendor, f1048 model, f2122 stepping,
///                        f2123 cores of a package, f1051 feature flags, all as of /proc/cpuinfo
///     QelLoadAvg         f1041, f1042, f1043 over 1, 5 and 15 minutes: one sample each, so that all of its values are
///     it QelNetwork         f1282 the domain to search first QelNetInterface    f1072 hardware addresses
///     QelDiskPartition   name the device, f1297 the mount point, f1298 the kind of file system, f1299 the flags that
///                        statvfs() tells, f1804 the mount options
///
/// A process that ends while its files are read is a problem, too, and is left out.
class HostCollector {
public:
    /// Whether the arguments of processes are collected.  They may hold passwords.
    enum class Arguments : std::uint8_t { leftOut, included };

    /// Files are looked for below `root`.
    explicit HostCollector(Arguments arguments, std::string root = {})
        : m_arguments(arguments), m_root(std::move(root)) {}

    [[nodiscard]] HostReport collect();
    /// What `collect` met with.
    [[nodiscard]] const Problems& problems() const { return m_problems; }

private:
    [[nodiscard]] std::string under(const std::string& path) const { return m_root + path; }
    bool readFile(const std::string& path, std::string& content);
    void tell(const std::string& what, int error);

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
    [[nodiscard]] bool readOfProcess(const std::string& path, std::string& content);
    [[nodiscard]] std::vector<QelGroup> groups();
    [[nodiscard]] std::vector<QelUser> users(const std::vector<QelGroup>& groups);

    Arguments m_arguments;
    std::string m_root;
    Problems m_problems;
};

} // namespace Qel::Tool
