#include <cstdlib>

#include <gmock/gmock.h>

#include "qel/schedule/ScheduleCalendar.h"
#include "tools/TerminalRun.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

std::string example(const std::string& name) {
    return QEL_EXAMPLES "/schedules/" + name + ".xml";
}

/// Sets the time zone to Berlin.
class ScheduleCommandsTest : public ToolTest {
protected:
    ScheduleCommandsTest() {
        setenv("TZ", "Europe/Berlin", 1);
        tzset();
    }
    ~ScheduleCommandsTest() override {
        unsetenv("TZ");
        tzset();
    }

    static std::string next(const std::string& name, std::vector<std::string> options) {
        options.insert(options.begin(), {"schedule", "next", example(name)});
        const ToolRun run = runTool(options);
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        return run.out;
    }

    void expectUsage(const std::vector<std::string>& arguments, const std::string& text) {
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.code, ExitCode::usage);
        EXPECT_EQ(run.err, "qel: " + text + "\n");
    }
};

constexpr const char* now = "--now=2026-11-20T09:30:00Z";

TEST_F(ScheduleCommandsTest, NextPrintsRunInLocalTime) {
    EXPECT_EQ(next("daily", {now}), "trigger  result    next run  local time\n"
                                    "      0       0  1795401000  Mon 2026-11-23 03:30:00 +0100\n");
}

TEST_F(ScheduleCommandsTest, NextReportsNoMoreRuns) {
    EXPECT_EQ(next("once", {"--now=2026-12-24T18:00:00Z"}), "trigger  result  next run  local time\n"
                                                            "      0       0        -1  no more runs\n");
}

TEST_F(ScheduleCommandsTest, NextPrintsEachTrigger) {
    EXPECT_EQ(next("several", {now, "--json"}),
              "{\"trigger\":0,\"now\":1795167000,\"result\":0,\"next\":1795222800}\n"
              "{\"trigger\":1,\"now\":1795167000,\"result\":0,\"next\":1795921200}\n"
              "{\"trigger\":2,\"now\":1795167000,\"result\":0,\"next\":1798135200}\n");
}

TEST_F(ScheduleCommandsTest, CountPrintsConsecutiveRuns) {
    EXPECT_EQ(next("weekly", {"--now", "1795167000", "--count", "3", "--json"}),
              "{\"trigger\":0,\"now\":1795167000,\"result\":0,\"next\":1796076000}\n"
              "{\"trigger\":0,\"now\":1796076000,\"result\":0,\"next\":1796335200}\n"
              "{\"trigger\":0,\"now\":1796335200,\"result\":0,\"next\":1797285600}\n");
}

TEST_F(ScheduleCommandsTest, CountStopsAfterLastRun) {
    EXPECT_EQ(next("once", {now, "--count=9", "--json"}),
              "{\"trigger\":0,\"now\":1795167000,\"result\":0,\"next\":1798135200}\n"
              "{\"trigger\":0,\"now\":1798135200,\"result\":0,\"next\":-1}\n");
}

// Some months after its start, this trigger returns a time in the past.
constexpr const char* pastResultTask = R"(<message xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
    xmlns:scheduler="urn:qel:scheduler"><data><triggers>
  <trigger xmlns="urn:qel:scheduler" xsi:type="scheduler:monthly_trigger"><start_time>2026-01-01T11:00:00Z</start_time>
    <month_day>5</month_day><month>1</month><month>2</month></trigger></triggers></data></message>)";

TEST_F(ScheduleCommandsTest, CountStopsAtResultInThePast) {
    const std::string file = write("past", std::string(pastResultTask));
    const ToolRun run = runTool({"schedule", "next", file, "--now=2026-06-01T00:00:00Z", "--count=9"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "trigger  result    next run  local time\n"
                       "      0       0  1770375600  Fri 2026-02-06 12:00:00 +0100\n");
}

TEST_F(ScheduleCommandsTest, NextReportsFailedTrigger) {
    EXPECT_EQ(next("daily", {"--now=-5"}), "trigger  result  next run  local time\n"
                                           "      0      -1        -1  unknown\n");
    EXPECT_EQ(next("daily", {"--now=-5", "--json", "--count=3"}),
              "{\"trigger\":0,\"now\":-5,\"result\":-1,\"next\":-1}\n");
}

TEST_F(ScheduleCommandsTest, NowIsTheDefault) {
    const std::string out = next("daily", {"--json"});
    EXPECT_THAT(out, StartsWith("{\"trigger\":0,\"now\":"));
    EXPECT_THAT(out, Not(HasSubstr("\"next\":-1")));
}

TEST_F(ScheduleCommandsTest, EveryExampleHasARun) {
    for (const char* const name : {"once", "daily", "weekly", "monthly", "monthly-day-of-week", "several"})
        EXPECT_THAT(next(name, {now}), HasSubstr(" 2026-1")) << name;
}

TEST_F(ScheduleCommandsTest, InvalidTimesAndNumbersAreUsageErrors) {
    const std::string file = example("once");
    expectUsage({"schedule", "next", file, "--now", "soon"},
                "invalid time 'soon' for --now: expected seconds or a time such as 2026-11-20T09:30:00Z");
    expectUsage({"schedule", "next", file, "--count", "0"}, "--count must be between 1 and 1000000");
    expectUsage({"schedule", "calendar", file, "--from=-1"},
                "invalid time '-1' for --from: expected seconds or a time such as 2026-11-20T09:30:00Z");
    expectUsage({"schedule", "calendar", file, "--months", "1201"}, "--months must be between 1 and 1200");
}

TEST_F(ScheduleCommandsTest, MessageWithoutTaskIsBadInput) {
    for (const char* const command : {"next", "calendar"}) {
        const std::string empty = write("empty", std::string("<message/>"));
        const ToolRun run = runTool({"schedule", command, empty});
        EXPECT_EQ(run.code, ExitCode::badInput);
        EXPECT_EQ(run.err, "qel: " + empty + ": empty message\n");

        const std::string other = write("other", std::string("<message><data><name>x</name></data></message>"));
        const ToolRun run2 = runTool({"schedule", command, other});
        EXPECT_EQ(run2.code, ExitCode::badInput);
        EXPECT_EQ(run2.err,
                  "qel: " + other + ": /data: can't read QelScheduleTask: element triggers (triggers) is missing\n");
        EXPECT_EQ(runTool({"schedule", command, path("none")}).code, ExitCode::badInput);
    }
}

TEST_F(ScheduleCommandsTest, CalendarMarksRunDays) {
    const ToolRun run =
        runTool({"schedule", "calendar", example("several"), "--from=2026-11-20T09:30:00Z", "--months=2"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, "       November 2026\n"
                       " Mo  Tu  We  Th  Fr  Sa  Su\n"
                       "                        [ 1]\n"
                       "  2   3   4   5   6   7   8\n"
                       "  9  10 [11] 12  13  14  15\n"
                       " 16  17  18  19  20 [21] 22\n"
                       " 23  24  25  26  27  28 [29]\n"
                       " 30\n"
                       "\n"
                       "       December 2026\n"
                       " Mo  Tu  We  Th  Fr  Sa  Su\n"
                       "    [ 1]  2   3   4   5   6\n"
                       "  7   8   9  10 [11] 12  13\n"
                       " 14  15  16  17  18  19  20\n"
                       "[21] 22  23 [24] 25  26 [27]\n"
                       " 28  29  30 [31]\n");
}

TEST_F(ScheduleCommandsTest, CalendarUsesLocalDate) {
    const ToolRun run =
        runTool({"schedule", "calendar", example("weekly"), "--from=2026-07-01T00:00:00Z", "--months=1"});
    // Monday and Thursday 22:00 UTC are Tuesday and Friday 00:00 in Berlin (CEST).
    EXPECT_EQ(run.out, "         July 2026\n"
                       " Mo  Tu  We  Th  Fr  Sa  Su\n"
                       "          1   2 [ 3]  4   5\n"
                       "  6   7   8   9  10  11  12\n"
                       " 13 [14] 15  16 [17] 18  19\n"
                       " 20  21  22  23  24  25  26\n"
                       " 27 [28] 29  30 [31]\n");
}

TEST_F(ScheduleCommandsTest, CalendarContinuesAfterResultInThePast) {
    const std::string file = write("past", std::string(pastResultTask));
    const ToolRun run = runTool({"schedule", "calendar", file, "--from=2026-06-01T09:30:00Z", "--months=9"});
    EXPECT_EQ(run.code, ExitCode::success);
    const std::size_t marked = run.out.find('[');
    EXPECT_GT(marked, run.out.find("February 2027"));
    EXPECT_EQ(run.out.substr(marked, 8), "[ 5][ 6]")
        << "the run, then the end of that day, which the trigger returns next";
    EXPECT_EQ(run.out.rfind('['), marked + 4);
}

/// A message with a task that runs daily from `start`.
std::string dailyTask(const std::string& start) {
    return R"(<message xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance" xmlns:scheduler="urn:qel:scheduler">
  <data><triggers><trigger xmlns="urn:qel:scheduler" xsi:type="scheduler:daily_trigger"><start_time>)" +
           start + "</start_time><day_interval>1</day_interval></trigger></triggers></data></message>";
}

TEST_F(ScheduleCommandsTest, CalendarIncludesFirstSecondOfMonth) {
    const std::string file = write("midnight", dailyTask("2026-06-30T22:00:00Z")); // midnight in Berlin
    const ToolRun july = runTool({"schedule", "calendar", file, "--from=2026-07-15T00:00:00Z", "--months=1"});
    EXPECT_THAT(july.out, HasSubstr("\n        [ 1][ 2]"));
    const ToolRun june = runTool({"schedule", "calendar", file, "--from=2026-06-15T00:00:00Z", "--months=1"});
    EXPECT_THAT(june.out, Not(HasSubstr("[")));
}

TEST_F(ScheduleCommandsTest, CalendarIncludesFirstDayOf1970) {
    for (const char* const start : {"1970-01-01T00:00:00Z", "1970-01-01T09:30:00Z"}) {
        const std::string file = write("epoch", dailyTask(start));
        const ToolRun run = runTool({"schedule", "calendar", file, "--from=0", "--months=1"});
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        EXPECT_THAT(run.out, StartsWith("        January 1970\n Mo  Tu  We  Th  Fr  Sa  Su\n            [ 1][ 2]"))
            << start;
    }
}

TEST_F(ScheduleCommandsTest, CalendarOfEpochWestOfGreenwichIs1969) {
    setenv("TZ", "America/New_York", 1);
    const std::string file = write("epoch", dailyTask("1970-01-01T00:00:00Z"));
    const ToolRun run = runTool({"schedule", "calendar", file, "--from=0", "--months=2"});
    EXPECT_THAT(run.out, StartsWith("       December 1969\n"));
    EXPECT_THAT(run.out, HasSubstr(" 29  30 [31]\n")) << "19:00 local time";
    EXPECT_THAT(run.out, HasSubstr("[ 1][ 2]"));
    const ToolRun january = runTool({"schedule", "calendar", file, "--from=86400", "--months=1"});
    EXPECT_THAT(january.out, StartsWith("        January 1970\n Mo  Tu  We  Th  Fr  Sa  Su\n            [ 1][ 2]"));
}

TEST_F(ScheduleCommandsTest, ColoursRunDaysOnRequest) {
    std::ostringstream out;
    const std::set days{std::chrono::sys_days(std::chrono::year(2026) / 11 / 2)};
    Qel::Tool::printCalendar(out, std::chrono::year(2026) / 11, 1, days, true);
    EXPECT_THAT(out.str(), HasSubstr("\n\x1B[1;32m[ 2]\x1B[0m  3 "));
}

/// Runs `schedule calendar` on a pseudo-terminal.
auto calendarOnTerminal(const std::string& environment) {
    return Qel::Tool::runOnTerminal("env -u TERM -u NO_COLOR TZ=UTC " + environment +
                                    " '" QEL_PROGRAM "' schedule calendar '" + example("weekly") +
                                    "' --from 1795167000 --months 1");
}

TEST_F(ScheduleCommandsTest, UsesColoursOnColourTerminal) {
    for (const char* const environment : {"TERM=xterm", "TERM=xterm NO_COLOR="}) {
        const auto run = calendarOnTerminal(environment);
        if (!run)
            GTEST_SKIP() << "pseudo-terminals are not available";
        EXPECT_EQ(run->status, 0);
        EXPECT_THAT(run->out, HasSubstr("\x1B[1;32m[")) << environment << ": an empty NO_COLOR has no effect";
    }
}

TEST_F(ScheduleCommandsTest, UsesNoColoursOnOtherTerminals) {
    for (const char* const environment : {"TERM=dumb", "NO_COLOR=", "NO_COLOR=1 TERM=xterm"}) {
        const auto run = calendarOnTerminal(environment);
        if (!run)
            GTEST_SKIP() << "pseudo-terminals are not available";
        EXPECT_EQ(run->status, 0);
        EXPECT_THAT(run->out, HasSubstr("November 2026")) << environment;
        EXPECT_THAT(run->out, Not(HasSubstr("\x1B["))) << environment;
    }
}

} // namespace
