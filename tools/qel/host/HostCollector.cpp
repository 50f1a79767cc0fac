#include "qel/host/HostCollector.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <map>
#include <sstream>

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace Qel::Tool {

namespace {

/// The number at the start of a string, after blanks; 0 if there is none.
template <class Number> Number numberIn(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    Number number{};
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

std::string trimmed(const std::string& text, const char* blanks = " \t") {
    const auto first = text.find_first_not_of(blanks);
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Parses lines of the form KEY SEPARATOR VALUE.  The first of several values of a key wins.
std::map<std::string, std::string> valuesIn(const std::string& content, char separator) {
    std::map<std::string, std::string> values;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);)
        if (const auto end = line.find(separator); end != std::string::npos)
            values.emplace(trimmed(line.substr(0, end)), trimmed(line.substr(end + 1)));
    return values;
}

class File {
public:
    explicit File(const std::string& path) : m_descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (m_descriptor >= 0)
            close(m_descriptor);
    }

    /// Returns 0 or an errno value.  Reads until the end of the file, because files of /proc report a size of 0.  The
    /// buffer is large, because some of them are only consistent within one read().
    [[nodiscard]] int readAll(std::string& content) const {
        content.clear();
        std::string part(65536, '\0');
        ssize_t count = m_descriptor < 0 ? -1 : 0;
        while (m_descriptor >= 0 && (count = read(m_descriptor, part.data(), part.size())) > 0)
            content.append(part, 0, static_cast<std::size_t>(count));
        return count < 0 ? errno : 0;
    }

private:
    int m_descriptor;
};

QelUsageStats usage(long long total, long long free) {
    return {.total = total, .used = total - free, .free = free};
}

QelLoadAvg1 sample(double value) {
    return {.f1060 = value, .f1061 = value, .f1062 = value, .f1065 = value};
}

} // namespace

void HostCollector::addProblem(const std::string& what, int error) {
    m_problems.push_back(what + ": " + std::strerror(error));
}

bool HostCollector::readFile(const std::string& path, std::string& content) {
    const int error = File(path).readAll(content);
    if (error != 0)
        addProblem(path, error);
    return error == 0;
}

HostReport HostCollector::collect() {
    m_problems.clear();
    HostReport report;
    report.system = system();
    report.load = load();
    report.network = network();
    report.disks = disks();
    report.processes = processes();
    report.groups = groups();
    report.users = users(report.groups);
    return report;
}

// --- the system

QelSystemInfo HostCollector::system() {
    QelSystemInfo info;
    utsname name{};
    if (uname(&name) != 0)
        addProblem("uname", errno);
    info.arch = name.machine;
    info.os.osKind = std::string("linux");
    info.os.osDetail = std::string(name.release);
    readSystemRelease(info);
    readProcessors(info);
    readMemory(info);
    return info;
}

void HostCollector::readSystemRelease(QelSystemInfo& info) {
    std::string content;
    if (!readFile(under("/etc/os-release"), content))
        return;
    const auto values = valuesIn(content, '=');
    const auto assign = [&](const char* key, QelOptionalProperty<std::string>& property) {
        if (const auto found = values.find(key); found != values.end())
            property = trimmed(found->second, "\"'");
    };
    assign("NAME", info.os.osName);
    assign("VERSION_ID", info.os.osVersion);
}

void HostCollector::readProcessors(QelSystemInfo& info) {
    std::string content;
    if (!readFile(under("/proc/cpuinfo"), content))
        return;
    std::istringstream lines(content);
    for (std::string line; std::getline(lines, line);)
        info.f1049 += line.starts_with("processor") ? 1 : 0;
    auto values = valuesIn(content, ':');
    info.f1052 = static_cast<int>(numberIn<double>(values["cpu MHz"]));
    info.f1047 = numberIn<int>(values["cpu family"]);
    info.f1050 = values["vendor_id"];
    info.f1048 = numberIn<int>(values["model"]);
    info.f2122 = numberIn<int>(values["stepping"]);
    info.f2123 = numberIn<int>(values["cpu cores"]);
    info.name = values["model name"];
    info.f1051 = values["flags"];
}

void HostCollector::readMemory(QelSystemInfo& info) {
    std::string content;
    if (!readFile(under("/proc/meminfo"), content))
        return;
    auto values = valuesIn(content, ':');
    constexpr long long kibibyte = 1024;
    const auto bytes = [&](const char* key) { return numberIn<long long>(values[key]) * kibibyte; };
    // MemAvailable exists since Linux 3.14.
    info.memory = usage(bytes("MemTotal"), bytes(values.contains("MemAvailable") ? "MemAvailable" : "MemFree"));
    info.swap = usage(bytes("SwapTotal"), bytes("SwapFree"));
}

std::optional<QelLoadAvg> HostCollector::load() {
    const std::string path = under("/proc/loadavg");
    std::string content;
    if (!readFile(path, content))
        return std::nullopt;
    std::istringstream in(content);
    std::array<std::string, 3> words;
    in >> words[0] >> words[1] >> words[2];
    if (!in) {
        m_problems.push_back(path + ": no load averages found");
        return std::nullopt;
    }
    return QelLoadAvg{.f1041 = sample(numberIn<double>(words[0])),
                      .f1042 = sample(numberIn<double>(words[1])),
                      .f1043 = sample(numberIn<double>(words[2]))};
}

// --- users

std::vector<QelGroup> HostCollector::groups() {
    std::vector<QelGroup> groups;
    setgrent();
    errno = 0;
    while (const group* const entry = getgrent()) {
        QelGroup& made = groups.emplace_back();
        made.group.name = entry->gr_name;
        made.group.id = entry->gr_gid;
        for (char** member = entry->gr_mem; *member; ++member)
            made.members.insert(*member);
        errno = 0;
    }
    if (errno != 0)
        addProblem("cannot read the group database", errno);
    endgrent();
    return groups;
}

std::vector<QelUser> HostCollector::users(const std::vector<QelGroup>& groups) {
    std::map<unsigned, const QelGroup*> byNumber;
    std::multimap<std::string, const QelGroup*> byMember;
    for (const QelGroup& group : groups) {
        byNumber.emplace(group.group.id, &group);
        for (const std::string& member : group.members)
            byMember.emplace(member, &group);
    }
    std::vector<QelUser> users;
    setpwent();
    errno = 0;
    while (const passwd* const entry = getpwent()) {
        QelUser& made = users.emplace_back();
        made.name = entry->pw_name;
        made.id = entry->pw_uid;
        made.groupId.id = entry->pw_gid;
        if (const auto found = byNumber.find(entry->pw_gid); found != byNumber.end())
            made.groupId.name = found->second->group.name;
        for (auto [at, end] = byMember.equal_range(made.name); at != end; ++at)
            made.groups.push_back(at->second->group);
        made.comment = entry->pw_gecos ? entry->pw_gecos : "";
        made.shell = entry->pw_shell;
        made.home = entry->pw_dir;
        errno = 0;
    }
    if (errno != 0)
        addProblem("cannot read the user database", errno);
    endpwent();
    return users;
}

// --- processes

namespace {

/// Indexes of the reported fields of /proc/PID/stat, counted from the first field after the name.
enum StatField : std::size_t { state = 0, parent = 1, nice = 16, threads = 17, virtualSize = 20, residentPages = 21 };
constexpr std::size_t statFields = residentPages + 1;

int& counterOf(QelProcessList& list, char processState) {
    switch (processState) {
    case 'R':
        return list.running;
    case 'D':
        return list.uninterruptible;
    case 'Z':
        return list.zombie;
    case 'T':
    case 't':
        return list.stopped;
    case 'I':
        return list.idle;
    default:
        return list.sleeping;
    }
}

} // namespace

/// Reads another file of a process whose stat file could be read.
bool HostCollector::readProcessFile(const std::string& path, std::string& content) {
    const int error = File(path).readAll(content);
    if (error == ENOENT || error == ESRCH)
        m_problems.push_back(path + ": the process exited while it was being read; skipped");
    else if (error != 0)
        addProblem(path, error);
    return error == 0;
}

void HostCollector::readProcess(const std::string& pid, QelProcessList& list) {
    const std::string folder = under("/proc/" + pid);
    std::string stat;
    const int error = File(folder + "/stat").readAll(stat);
    if (error == ENOENT || error == ESRCH)
        return; // the process exited after the directory was listed
    // The name may contain any characters, including blanks and parentheses.
    const auto open = stat.find('(');
    const auto close = stat.rfind(')');
    std::vector<std::string> fields;
    if (error == 0 && open != std::string::npos && close != std::string::npos) {
        std::istringstream in(stat.substr(close + 1));
        for (std::string field; in >> field;)
            fields.push_back(field);
    }
    if (fields.size() < statFields) {
        m_problems.push_back(folder + "/stat: cannot be read");
        return;
    }
    std::string status;
    if (!readProcessFile(folder + "/status", status))
        return;
    const auto statusValues = valuesIn(status, ':');
    const auto uid = statusValues.find("Uid");
    if (uid == statusValues.end()) {
        m_problems.push_back(folder + "/status: no Uid field");
        return;
    }
    std::string arguments;
    if (m_arguments == Arguments::included && !readProcessFile(folder + "/cmdline", arguments))
        return;
    std::replace(arguments.begin(), arguments.end(), '\0', ' ');

    QelProcessInfo& row = list.rows.emplace_back();
    row.pid = numberIn<int>(pid);
    const auto resident = numberIn<long long>(fields[residentPages]) * sysconf(_SC_PAGESIZE);
    row.params = {
        {"command", stat.substr(open + 1, close - open - 1)},
        {"state", fields[state]},
        {"parent", fields[parent]},
        {"uid", std::to_string(numberIn<unsigned>(uid->second))},
        {"nice", fields[nice]},
        {"threads", fields[threads]},
        {"virtual", fields[virtualSize]},
        {"resident", std::to_string(resident)},
    };
    if (m_arguments == Arguments::included)
        row.params.emplace(HostReport::argumentsColumn, trimmed(arguments));
    ++counterOf(list, fields[state].front());
    ++list.total;
}

} // namespace Qel::Tool
