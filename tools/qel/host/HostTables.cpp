#include "qel/host/HostTables.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <ostream>

#include <net/if.h>

#include "qel/cli/Output.h"

namespace Qel::Tool {

namespace {

using Align = Table::Align;

/// "3.4 GiB".
std::string shownBytes(long long bytes) {
    static constexpr std::array units{"B", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    constexpr double step = 1024;
    auto amount = static_cast<double>(bytes);
    std::size_t unit = 0;
    for (; amount >= step && unit + 1 < units.size(); ++unit)
        amount /= step;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), unit == 0 ? "%.0f %s" : "%.1f %s", amount, units[unit]);
    return text.data();
}

/// Percentage of used space, computed like df(1): rounded up, and without the blocks reserved for root.
std::string shownShare(const QelUsageStats& usage) {
    if (usage.used < 0 || usage.free < 0 || (usage.used == 0 && usage.free == 0))
        return "-";
    constexpr unsigned long long whole = 100;
    auto used = static_cast<unsigned long long>(usage.used);
    auto available = static_cast<unsigned long long>(usage.free);
    while (used > std::numeric_limits<unsigned long long>::max() / whole) {
        used /= 2;
        available /= 2;
    }
    const unsigned long long share = used * whole;
    const unsigned long long sum = used + available;
    return std::to_string(share / sum + (share % sum != 0 ? 1 : 0)) + '%';
}

std::string shownReal(double value) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.2f", value);
    return text.data();
}

/// The values as strings, separated by blanks.
template <class Values, class Show> std::string joined(const Values& values, const Show& show) {
    std::string text;
    for (const auto& value : values)
        text += (text.empty() ? "" : " ") + show(value);
    return text;
}

std::string itself(const std::string& text) {
    return text;
}

/// The name of a user or group, or its number if it has no name.
template <class NameID> std::string shownName(const NameID& who) {
    if (who.isName())
        return who.name;
    return who.isID() ? std::to_string(who.id) : "";
}

template <class NameID> std::string shownNumber(const NameID& who) {
    return who.isID() ? std::to_string(who.id) : "";
}

void heading(std::ostream& out, const char* text) {
    out << text << '\n';
}

void printUsage(Table& table, const char* name, const QelUsageStats& usage) {
    table.addRow(
        {name, shownBytes(usage.total) + ", " + shownBytes(usage.used) + " used, " + shownBytes(usage.free) + " free"});
}

void print(std::ostream& out, const QelSystemInfo& info) {
    heading(out, "System");
    Table table;
    table.addRow({"architecture", info.arch});
    const std::string separator = info.os.osVersion.get().empty() ? "" : " ";
    table.addRow({"operating system", info.os.osName.get() + separator + info.os.osVersion.get()});
    table.addRow({"kernel", info.os.osKind.get() + ' ' + info.os.osDetail.get()});
    table.addRow({"processors", std::to_string(info.f1049) + (info.name.empty() ? "" : " x " + info.name)});
    printUsage(table, "memory", info.memory);
    printUsage(table, "swap", info.swap);
    table.print(out);
}

void print(std::ostream& out, const QelLoadAvg& load) {
    heading(out, "Load averages");
    Table table;
    table.addRow({"1 minute", shownReal(load.f1041.f1065)});
    table.addRow({"5 minutes", shownReal(load.f1042.f1065)});
    table.addRow({"15 minutes", shownReal(load.f1043.f1065)});
    table.print(out);
}

std::string shownFlags(const QelNetInterface& interface) {
    std::string text = (interface.flags & IFF_UP) != 0 ? "up" : "down";
    if (interface.isLoopback())
        text += " loopback";
    if (!interface.isArpable())
        text += " noarp";
    return text;
}

void print(std::ostream& out, const QelNetwork& network) {
    heading(out, "Network");
    Table settings;
    settings.addRow({"host name", network.hostname});
    settings.addRow({"domain", network.f1282});
    settings.addRow({"name servers", joined(network.nameservers, itself)});
    settings.print(out);
    out << '\n';
    Table interfaces;
    interfaces.addRow({"interface", "state", "hardware", "addresses"});
    for (const QelNetInterface& interface : network.interfaces)
        interfaces.addRow(
            {interface.name, shownFlags(interface), joined(interface.f1072, itself),
             joined(interface.addresses, [](const QelIPAddress& ip) { return ip.toStringWithNetwork(); })});
    interfaces.print(out);
}

void print(std::ostream& out, const QelDisk& disk) {
    heading(out, "Disks");
    Table table(
        {Align::left, Align::left, Align::left, Align::right, Align::right, Align::right, Align::right, Align::right});
    table.addRow({"device", "mounted on", "type", "size", "used", "free", "use%", "inode use%"});
    for (const QelDiskPartition& partition : disk.partitions)
        table.addRow({partition.name, partition.f1297, partition.f1298, shownBytes(partition.blocks.total),
                      shownBytes(partition.blocks.used), shownBytes(partition.blocks.free),
                      shownShare(partition.blocks), shownShare(partition.inodes)});
    table.print(out);
}

void print(std::ostream& out, const QelProcessList& list) {
    heading(out, "Processes");
    out << list.total << " total: " << list.running << " running, " << list.sleeping << " sleeping, "
        << list.uninterruptible << " uninterruptible, " << list.stopped << " stopped, " << list.zombie << " zombie, "
        << list.idle << " idle\n\n";
    Table table({Align::right});
    std::vector<std::string> names(list.paramNames.begin(), list.paramNames.end());
    // The arguments come last: all other columns are padded to their longest value.
    std::stable_partition(names.begin(), names.end(),
                          [](const std::string& name) { return name != HostReport::argumentsColumn; });
    std::vector<std::string> titles{"pid"};
    titles.insert(titles.end(), names.begin(), names.end());
    table.addRow(titles);
    for (const QelProcessInfo& row : list.rows) {
        std::vector<std::string> cells{std::to_string(row.pid)};
        for (const std::string& name : names) {
            const auto value = row.params.find(name);
            cells.push_back(value != row.params.end() ? value->second : "");
        }
        table.addRow(std::move(cells));
    }
    table.print(out);
}

void print(std::ostream& out, const std::vector<QelUser>& users) {
    heading(out, "Users");
    Table table({Align::left, Align::right});
    table.addRow({"user", "uid", "group", "other groups", "home", "shell", "comment"});
    for (const QelUser& user : users)
        table.addRow({user.name, shownNumber(user), shownName(user.groupId),
                      joined(user.groups, [](const QelGroupNameID& group) { return shownName(group); }), user.home,
                      user.shell, user.comment});
    table.print(out);
}

void print(std::ostream& out, const std::vector<QelGroup>& groups) {
    heading(out, "Groups");
    Table table({Align::left, Align::right});
    table.addRow({"group", "gid", "members"});
    for (const QelGroup& group : groups)
        table.addRow({group.group.name, shownNumber(group.group), joined(group.members, itself)});
    table.print(out);
}

} // namespace

void printReport(std::ostream& out, const HostReport& report) {
    const char* separator = "";
    const auto printPart = [&](const auto& part) {
        out << separator;
        print(out, part);
        separator = "\n";
    };
    const auto printIfPresent = [&](const auto& part) {
        if (part)
            printPart(*part);
    };
    printIfPresent(report.system);
    printIfPresent(report.load);
    printIfPresent(report.network);
    printIfPresent(report.disks);
    printIfPresent(report.processes);
    if (!report.users.empty())
        printPart(report.users);
    if (!report.groups.empty())
        printPart(report.groups);
}

} // namespace Qel::Tool
