#include <gmock/gmock.h>
#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include "qel/host/HostCollector.h"
#include "qel/host/HostTables.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using Qel::Tool::HostCollector;
using Qel::Tool::HostReport;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class HostCommandsTest : public ToolTest {};

TEST_F(HostCommandsTest, ShowPrintsReport) {
    const ToolRun report = runTool({"host", "report"});
    EXPECT_EQ(report.code, ExitCode::success);
    for (const char* const part :
         {"<system_info>", "<load_averages", "<network", "<disks", "<processes", "<user>", "<group>"})
        EXPECT_THAT(report.out, HasSubstr(part));
    const ToolRun show = runTool({"host", "show", "-"}, report.out);
    EXPECT_EQ(show.code, ExitCode::success);
    EXPECT_THAT(show.err, IsEmpty());
    for (const char* const heading :
         {"System\n", "\nLoad averages\n", "\nNetwork\n", "\nDisks\n", "\nProcesses\n", "\nUsers\n", "\nGroups\n"})
        EXPECT_THAT(show.out, HasSubstr(heading));
    // The report includes this process.
    EXPECT_THAT(show.out, testing::ContainsRegex("\n *" + std::to_string(getpid()) + "  "));
}

TEST_F(HostCommandsTest, ShowAcceptsBinaryForm) {
    const ToolRun report = runTool({"host", "report", "--binary"});
    EXPECT_EQ(report.code, ExitCode::success);
    EXPECT_THAT(report.out, Not(StartsWith("<?xml")));
    const ToolRun show = runTool({"host", "show", write("report", report.out)});
    EXPECT_EQ(show.code, ExitCode::success);
    EXPECT_THAT(show.out, StartsWith("System\n"));
}

TEST_F(HostCommandsTest, ReportsProcessArgumentsOnRequestOnly) {
    for (const auto& [options, isIncluded] :
         {std::pair(std::vector<std::string>{"host", "report"}, false),
          std::pair(std::vector<std::string>{"host", "report", "--arguments"}, true)}) {
        const ToolRun report = runTool(options);
        EXPECT_EQ(report.code, ExitCode::success);
        EXPECT_EQ(report.out.find(">arguments<") != std::string::npos, isIncluded);
    }
    EXPECT_THAT(runTool({"host", "report", "--help"}).out, HasSubstr("may contain passwords"));
}

TEST_F(HostCommandsTest, ShowReportsUnreadablePartAndPrintsTheOthers) {
    const ToolRun run = runTool({"host", "show", "-"}, "<message><load_averages/><user><uid>5</uid></user><user/>"
                                                       "<group><gid>7</gid><user><name>me</name></user></group>"
                                                       "</message>");
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_THAT(run.out, testing::ContainsRegex("Users\nuser +uid .*\n +5\n"));
    EXPECT_THAT(run.out, testing::ContainsRegex("Groups\ngroup +gid +members\n +7  me\n"));
    EXPECT_THAT(run.out, Not(HasSubstr("Load")));
    EXPECT_THAT(run.err, HasSubstr("qel: standard input: /load_averages: cannot read QelLoadAvg: "));
    EXPECT_THAT(run.err, HasSubstr("qel: standard input: /user: cannot read QelUserNameID: "));
}

TEST_F(HostCommandsTest, MessageWithoutReportIsBadInput) {
    const ToolRun run = runTool({"host", "show", "-"}, "<message><data/></message>");
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, "qel: standard input: contains no host report\n");
}

/// Runs a collector on a temporary directory as the root.
class HostCollectorTest : public ToolTest {
protected:
    HostCollectorTest() {
        put("etc/os-release", "NAME=\"Some Linux\"\nVERSION_ID='12'\nID=some\n");
        put("etc/resolv.conf", "# by hand\nnameserver 10.0.0.1\nsearch example.org example.com\nnameserver 10.0.0.2\n");
        put("proc/loadavg", "0.25 1.50 3.00 1/234 5678\n");
        put("proc/cpuinfo",
            "processor\t: 0\nvendor_id\t: Some\ncpu family\t: 6\nmodel\t\t: 143\nmodel name\t: Some CPU\n"
            "stepping\t: 8\ncpu MHz\t\t: 2000.500\ncpu cores\t: 2\nflags\t\t: fpu vme\n\n"
            "processor\t: 1\nmodel\t\t: 144\n");
        put("proc/meminfo", "MemTotal:       1000 kB\nMemFree:         100 kB\nMemAvailable:    300 kB\n"
                            "SwapTotal:       50 kB\nSwapFree:        20 kB\n");
        put("proc/mounts", "/dev/sda1 / ext4 rw,relatime 0 0\nproc /gone proc rw 0 0\n");
        putProcess("1", "1 (init) S 0 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 -5 3 0 7 4096 2 0", "init\0--now\0");
        putProcess("22", "22 (odd ) (name) Z 1 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 7 0 0 0", "");
        put("proc/self/stat", "not a number");
    }

    void put(const std::string& name, const std::string& content) const {
        const std::filesystem::path file = path(name);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << content;
    }
    template <std::size_t size>
    void putProcess(const std::string& pid, const std::string& stat, const char (&arguments)[size]) const {
        put("proc/" + pid + "/stat", stat + '\n');
        put("proc/" + pid + "/cmdline", std::string(arguments, size - 1));
        put("proc/" + pid + "/status", "Name:\tx\nUid:\t33\t34\t35\t36\n");
    }

    HostReport collect() { return collector.collect(); }

    HostCollector collector{HostCollector::Arguments::included, path("")};
};

TEST_F(HostCollectorTest, ReadsOperatingSystemAndHardware) {
    const auto system = collect().system;
    ASSERT_TRUE(system.has_value());
    EXPECT_EQ(system->os.osKind.get(), "linux");
    EXPECT_EQ(system->os.osName.get(), "Some Linux");
    EXPECT_EQ(system->os.osVersion.get(), "12");
    EXPECT_EQ(system->f1049, 2);
    EXPECT_EQ(system->f1052, 2000);
    EXPECT_EQ(system->f1047, 6);
    EXPECT_EQ(system->f1048, 143);
    EXPECT_EQ(system->f1050, "Some");
    EXPECT_EQ(system->name, "Some CPU");
    EXPECT_EQ(system->f1051, "fpu vme");
    EXPECT_EQ(system->memory.total, 1000 * 1024);
    EXPECT_EQ(system->memory.free, 300 * 1024);
    EXPECT_EQ(system->memory.used, 700 * 1024);
    EXPECT_EQ(system->swap.used, 30 * 1024);
}

TEST_F(HostCollectorTest, ReadsOneLoadSamplePerPeriod) {
    const auto load = collect().load;
    ASSERT_TRUE(load.has_value());
    EXPECT_EQ(load->f1041.f1065, 0.25);
    EXPECT_EQ(load->f1042.f1060, 1.5);
    EXPECT_EQ(load->f1043.f1065, 3);
}

TEST_F(HostCollectorTest, ReadsResolverConfiguration) {
    const auto network = collect().network;
    ASSERT_TRUE(network.has_value());
    EXPECT_THAT(network->nameservers, ElementsAre("10.0.0.1", "10.0.0.2"));
    EXPECT_EQ(network->f1282, "example.org");
    EXPECT_THAT(network->interfaces, Contains(testing::Property(&Qel::QelNetInterface::isLoopback, true)));
}

TEST_F(HostCollectorTest, ReadsMountsAndReportsUnreachableOnes) {
    const auto disks = collect().disks;
    ASSERT_TRUE(disks.has_value());
    ASSERT_EQ(disks->partitions.size(), 1U);
    EXPECT_EQ(disks->partitions[0].name, "/dev/sda1");
    EXPECT_EQ(disks->partitions[0].f1298, "ext4");
    EXPECT_THAT(disks->partitions[0].f1804, ElementsAre("rw", "relatime"));
    EXPECT_GT(disks->partitions[0].blocks.total, 0);
    EXPECT_THAT(collector.problems(), ElementsAre("/gone: No such file or directory"));
}

TEST_F(HostCollectorTest, ReadsProcessesWithUnusualNames) {
    const auto processes = collect().processes;
    ASSERT_TRUE(processes.has_value());
    EXPECT_EQ(processes->total, 2);
    EXPECT_EQ(processes->sleeping, 1);
    EXPECT_EQ(processes->zombie, 1);
    ASSERT_EQ(processes->rows.size(), 2U);
    for (const Qel::QelProcessInfo& row : processes->rows) {
        const bool isInit = row.pid == 1;
        EXPECT_EQ(row.params.at("command"), isInit ? "init" : "odd ) (name");
        EXPECT_EQ(row.params.at("arguments"), isInit ? "init --now" : "");
        EXPECT_EQ(row.params.at("state"), isInit ? "S" : "Z");
        EXPECT_EQ(row.params.at("parent"), isInit ? "0" : "1");
        EXPECT_EQ(row.params.at("uid"), "33");
        EXPECT_EQ(row.params.at("nice"), isInit ? "-5" : "0");
        EXPECT_EQ(row.params.at("threads"), isInit ? "3" : "1");
        EXPECT_EQ(row.params.at("virtual"), isInit ? "4096" : "0");
        EXPECT_EQ(row.params.at("resident"), isInit ? std::to_string(2 * sysconf(_SC_PAGESIZE)) : "0");
    }
}

TEST_F(HostCollectorTest, OmitsArgumentsByDefault) {
    HostCollector reserved(HostCollector::Arguments::omitted, path(""));
    std::filesystem::remove(path("proc/1/cmdline"));
    const auto processes = reserved.collect().processes;
    ASSERT_TRUE(processes.has_value());
    ASSERT_EQ(processes->rows.size(), 2U);
    for (const Qel::QelProcessInfo& row : processes->rows)
        EXPECT_FALSE(row.params.contains("arguments"));
}

TEST_F(HostCollectorTest, OmitsAndReportsProcessThatEndsBetweenReads) {
    const std::string stat = " (short-lived) S 0 1 1 0 -1 0 0 0 0 0 0 0 0 0 20 0 1 0 7 0 0 0";
    putProcess("302", ("302" + stat).c_str(), "arguments\0");
    putProcess("303", ("303" + stat).c_str(), "arguments\0");
    std::filesystem::remove(path("proc/302/status"));
    std::filesystem::remove(path("proc/303/cmdline"));
    const auto processes = collect().processes;
    ASSERT_TRUE(processes.has_value());
    EXPECT_EQ(processes->total, 2);
    EXPECT_THAT(processes->rows, testing::SizeIs(2));
    const std::string ended = ": the process exited while it was being read; skipped";
    EXPECT_THAT(collector.problems(), Contains(path("") + "/proc/302/status" + ended));
    EXPECT_THAT(collector.problems(), Contains(path("") + "/proc/303/cmdline" + ended));
}

TEST_F(HostCollectorTest, OmitsAndReportsProcessWithoutUid) {
    put("proc/22/status", "Name:\tx\n");
    const auto processes = collect().processes;
    ASSERT_TRUE(processes.has_value());
    EXPECT_EQ(processes->total, 1);
    EXPECT_THAT(collector.problems(), Contains(path("") + "/proc/22/status: no Uid field"));
}

TEST_F(HostCollectorTest, ListsLastFileSystemMountedOnADirectory) {
    put("proc/mounts", "rootfs / rootfs rw 0 0\n/dev/sda1 / ext4 ro 0 0\n/dev/sda2 /etc xfs rw 0 0\n"
                       "/dev/sda3 / btrfs rw,noatime 0 0\n");
    const auto disks = collect().disks;
    ASSERT_TRUE(disks.has_value());
    ASSERT_EQ(disks->partitions.size(), 2U);
    EXPECT_EQ(disks->partitions[0].name, "/dev/sda3");
    EXPECT_EQ(disks->partitions[0].f1297, "/");
    EXPECT_EQ(disks->partitions[0].f1298, "btrfs");
    EXPECT_THAT(disks->partitions[0].f1804, ElementsAre("rw", "noatime"));
    EXPECT_EQ(disks->partitions[1].name, "/dev/sda2");
}

TEST_F(HostCollectorTest, SkipsVanishedAndReportsMalformedProcess) {
    std::filesystem::create_directories(path("proc/300"));
    put("proc/301/stat", "301 (short) S 1\n");
    const auto processes = collect().processes;
    ASSERT_TRUE(processes.has_value());
    EXPECT_EQ(processes->total, 2);
    EXPECT_THAT(collector.problems(), Contains(path("") + "/proc/301/stat: cannot be read"));
    EXPECT_THAT(collector.problems(), Not(Contains(HasSubstr("/300"))));
}

TEST_F(HostCollectorTest, ReportsUnreadableSources) {
    for (const char* const gone : {"etc/os-release", "etc/resolv.conf", "proc/cpuinfo", "proc/meminfo", "proc/mounts"})
        std::filesystem::remove(path(gone));
    put("proc/loadavg", "high\n");
    const HostReport report = collect();
    const auto missing = [&](const char* name) { return path("") + "/" + name + ": No such file or directory"; };
    EXPECT_THAT(collector.problems(),
                ElementsAre(missing("etc/os-release"), missing("proc/cpuinfo"), missing("proc/meminfo"),
                            path("") + "/proc/loadavg: no load averages found", missing("etc/resolv.conf"),
                            missing("proc/mounts")));
    EXPECT_TRUE(report.system.has_value());
    EXPECT_FALSE(report.load.has_value());
    EXPECT_TRUE(report.network.has_value());
    EXPECT_FALSE(report.disks.has_value());
    EXPECT_TRUE(report.processes.has_value());
}

TEST_F(HostCollectorTest, MissingProcYieldsNoProcesses) {
    std::filesystem::remove_all(path("proc"));
    EXPECT_FALSE(collect().processes.has_value());
    EXPECT_THAT(collector.problems(), Contains(path("") + "/proc: No such file or directory"));
}

TEST_F(HostCollectorTest, ReadsUsersWithoutPasswords) {
    const HostReport report = collect();
    const passwd* const own = getpwuid(0);
    ASSERT_NE(own, nullptr);
    const auto user =
        std::find_if(report.users.begin(), report.users.end(), [](const Qel::QelUser& each) { return each.id == 0; });
    ASSERT_NE(user, report.users.end());
    EXPECT_EQ(user->name, own->pw_name);
    EXPECT_EQ(user->home, own->pw_dir);
    EXPECT_EQ(user->groupId.id, own->pw_gid);
    EXPECT_EQ(user->password, "");
    const group* const ownGroup = getgrgid(own->pw_gid);
    ASSERT_NE(ownGroup, nullptr);
    EXPECT_EQ(user->groupId.name, ownGroup->gr_name);
    EXPECT_THAT(report.groups, testing::SizeIs(testing::Ge(1U)));
}

std::string shown(const HostReport& report) {
    std::ostringstream out;
    Qel::Tool::printReport(out, report);
    return out.str();
}

/// The "use%" column of a partition with this block usage.
std::string usageOf(const Qel::QelUsageStats& blocks) {
    HostReport report;
    Qel::QelDiskPartition& partition = report.disks.emplace().partitions.emplace_back();
    partition.name = "vda";
    partition.blocks = blocks;
    std::istringstream lines(shown(report));
    std::string line;
    while (std::getline(lines, line) && !line.starts_with("vda")) {
    }
    // The last column is the inode usage, which is unknown here.
    const std::string last = line.substr(line.rfind(' ') + 1);
    EXPECT_EQ(last, "-");
    line.erase(line.find_last_not_of(' ', line.rfind(' ')) + 1);
    return line.substr(line.rfind(' ') + 1);
}

TEST(HostTablesTest, UsageMatchesDf) {
    EXPECT_EQ(usageOf({.total = 100, .used = 50, .free = 50}), "50%");
    EXPECT_EQ(usageOf({.total = 100, .used = 50, .free = 30}), "63%") << "blocks reserved for root are excluded";
    EXPECT_EQ(usageOf({.total = 1000, .used = 1, .free = 999}), "1%") << "rounded up";
    EXPECT_EQ(usageOf({.total = 1000, .used = 991, .free = 9}), "100%");
    EXPECT_EQ(usageOf({.total = 100, .used = 0, .free = 100}), "0%");
    EXPECT_EQ(usageOf({.total = 100, .used = 100, .free = 0}), "100%");
    EXPECT_EQ(usageOf({.total = 0, .used = 0, .free = 0}), "-");
    EXPECT_EQ(usageOf({.total = 100, .used = 0, .free = 0}), "-");
    EXPECT_EQ(usageOf({.total = -1, .used = -1, .free = 5}), "-");
    constexpr long long max = std::numeric_limits<long long>::max();
    EXPECT_EQ(usageOf({.total = max, .used = max, .free = max}), "50%");
    EXPECT_EQ(usageOf({.total = max, .used = max, .free = 0}), "100%");
    EXPECT_EQ(usageOf({.total = max, .used = 1, .free = max}), "1%");
}

TEST(HostTablesTest, ArgumentsAreLastColumnWithoutPadding) {
    HostReport report;
    Qel::QelProcessList& list = report.processes.emplace();
    list.paramNames = {"arguments", "command", "uid"};
    for (const int pid : {1, 2})
        list.rows.emplace_back().pid = pid;
    list.rows[0].params = {{"arguments", std::string(200, 'x')}, {"command", "init"}, {"uid", "0"}};
    list.rows[1].params = {{"arguments", "y"}, {"command", "sh"}, {"uid", "1000"}};
    EXPECT_THAT(shown(report), testing::EndsWith("pid  command  uid   arguments\n"
                                                 "  1  init     0     " +
                                                 std::string(200, 'x') +
                                                 "\n"
                                                 "  2  sh       1000  y\n"));
}

} // namespace
