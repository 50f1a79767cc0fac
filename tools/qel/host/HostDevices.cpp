// HostCollector: network, disks and the process list.

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <sstream>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <mntent.h>
#include <net/if.h>
#include <netinet/in.h>
#include <netpacket/packet.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include "qel/host/HostCollector.h"

namespace Qel::Tool {

namespace {

template <class Address> Address addressAs(const sockaddr* address) {
    Address typed{};
    std::memcpy(&typed, address, sizeof typed);
    return typed;
}

template <class Bytes> unsigned countBits(const Bytes& bytes) {
    unsigned bits = 0;
    const auto* const first = reinterpret_cast<const unsigned char*>(&bytes);
    for (std::size_t i = 0; i < sizeof bytes; ++i)
        bits += static_cast<unsigned>(__builtin_popcount(first[i]));
    return bits;
}

template <class Bytes> QelIPAddress ipAddress(int family, const Bytes& bytes, unsigned prefix) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    inet_ntop(family, &bytes, text.data(), text.size());
    return {std::string(text.data()), prefix};
}

std::string hardwareAddress(const sockaddr_ll& address) {
    std::string text;
    for (unsigned i = 0; i < address.sll_halen && i < sizeof address.sll_addr; ++i) {
        std::array<char, 4> part{};
        std::snprintf(part.data(), part.size(), "%s%02x", i == 0 ? "" : ":", address.sll_addr[i]);
        text += part.data();
    }
    return text;
}

void addAddress(QelNetInterface& interface, const ifaddrs& entry) {
    const sockaddr* const address = entry.ifa_addr;
    if (!address)
        return;
    if (address->sa_family == AF_INET) {
        const auto mask = entry.ifa_netmask ? countBits(addressAs<sockaddr_in>(entry.ifa_netmask).sin_addr) : 32;
        interface.addresses.push_back(ipAddress(AF_INET, addressAs<sockaddr_in>(address).sin_addr, mask));
    } else if (address->sa_family == AF_INET6) {
        const auto mask = entry.ifa_netmask ? countBits(addressAs<sockaddr_in6>(entry.ifa_netmask).sin6_addr) : 128;
        interface.addresses.push_back(ipAddress(AF_INET6, addressAs<sockaddr_in6>(address).sin6_addr, mask));
    } else if (address->sa_family == AF_PACKET) {
        const std::string hardware = hardwareAddress(addressAs<sockaddr_ll>(address));
        if (!hardware.empty())
            interface.f1072.push_back(hardware);
    }
}

QelUsageStats usageOf(unsigned long long total, unsigned long long free, unsigned long long available,
                      unsigned long long unit) {
    return {.total = static_cast<long long>(total * unit),
            .used = static_cast<long long>((total - free) * unit),
            .free = static_cast<long long>(available * unit)};
}

bool isNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

} // namespace

// --- network

QelNetwork HostCollector::network() {
    QelNetwork network;
    std::array<char, 256> name{};
    if (gethostname(name.data(), name.size() - 1) != 0)
        addProblem("gethostname", errno);
    network.hostname = name.data();
    readResolver(network);
    readInterfaces(network);
    return network;
}

void HostCollector::readResolver(QelNetwork& network) {
    std::string content;
    if (!readFile(under("/etc/resolv.conf"), content))
        return;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string key;
        std::string value;
        words >> key >> value;
        if (key == "nameserver" && !value.empty())
            network.nameservers.push_back(value);
        else if (key == "search" || key == "domain") // resolv.conf(5): the last instance wins
            network.f1282 = value;
    }
}

void HostCollector::readInterfaces(QelNetwork& network) {
    ifaddrs* first = nullptr;
    if (getifaddrs(&first) != 0) {
        addProblem("cannot list the network interfaces", errno);
        return;
    }
    const std::unique_ptr<ifaddrs, decltype(&freeifaddrs)> owner(first, &freeifaddrs);
    for (const ifaddrs* entry = first; entry; entry = entry->ifa_next) {
        const auto known =
            std::find_if(network.interfaces.begin(), network.interfaces.end(),
                         [&](const QelNetInterface& interface) { return interface.name == entry->ifa_name; });
        QelNetInterface& interface = known != network.interfaces.end() ? *known : network.interfaces.emplace_back();
        interface.name = entry->ifa_name;
        interface.flags = static_cast<int>(entry->ifa_flags);
        addAddress(interface, *entry);
    }
}

// --- disks

namespace {

/// An entry of /proc/mounts.
struct Mount {
    std::string device;
    std::string folder;
    std::string type;
    std::string options;
};

/// The reachable mounts.  Of several mounts on one directory, the last hides the others.
std::vector<Mount> visibleMounts(FILE* mounts) {
    std::vector<Mount> visible;
    std::map<std::string, std::size_t> places; // in `visible`
    while (const mntent* const entry = getmntent(mounts)) {
        const auto [place, isNew] = places.emplace(entry->mnt_dir, visible.size());
        Mount& mount = isNew ? visible.emplace_back() : visible[place->second];
        mount = {entry->mnt_fsname, entry->mnt_dir, entry->mnt_type, entry->mnt_opts};
    }
    return visible;
}

} // namespace

std::optional<QelDisk> HostCollector::disks() {
    const std::string path = under("/proc/mounts");
    const std::unique_ptr<FILE, int (*)(FILE*)> mounts(setmntent(path.c_str(), "re"), &endmntent);
    if (!mounts) {
        addProblem(path, errno);
        return std::nullopt;
    }
    QelDisk disk;
    for (const Mount& mount : visibleMounts(mounts.get())) {
        struct statvfs state {};
        if (statvfs(under(mount.folder).c_str(), &state) != 0) {
            addProblem(mount.folder, errno);
            continue;
        }
        if (state.f_blocks == 0) // a pseudo file system
            continue;
        QelDiskPartition& partition = disk.partitions.emplace_back();
        partition.name = mount.device;
        partition.f1297 = mount.folder;
        partition.f1298 = mount.type;
        partition.f1299 = static_cast<int>(state.f_flag);
        std::istringstream options(mount.options);
        for (std::string option; std::getline(options, option, ',');)
            partition.f1804.push_back(option);
        partition.blocks = usageOf(state.f_blocks, state.f_bfree, state.f_bavail, state.f_frsize);
        partition.inodes = usageOf(state.f_files, state.f_ffree, state.f_favail, 1);
    }
    return disk;
}

// --- processes

std::optional<QelProcessList> HostCollector::processes() {
    const std::string path = under("/proc");
    std::error_code error;
    std::filesystem::directory_iterator entry(path, error);
    if (error) {
        m_problems.push_back(path + ": " + error.message());
        return std::nullopt;
    }
    QelProcessList list;
    for (; entry != std::filesystem::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (isNumber(name))
            readProcess(name, list);
    }
    return list;
}

} // namespace Qel::Tool
