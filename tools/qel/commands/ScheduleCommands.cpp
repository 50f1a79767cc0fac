#include <array>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <optional>

#include <unistd.h>

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"
#include "QelMessage/QelValueText.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/RecordInMessage.h"
#include "qel/schedule/ScheduleCalendar.h"

namespace Qel::Tool {

namespace {

/// Parses the time in an option; the default is the current time.  Returns std::nullopt if it is malformed.
std::optional<long> timeOption(const Invocation& invocation, const std::string& option) {
    if (!invocation.has(option))
        return std::time(nullptr);
    long time = 0;
    if (!QelValueText::toTime(invocation.string(option), time))
        return std::nullopt;
    return time;
}

ExitCode failTime(const Invocation& invocation, const std::string& option, const Console& console) {
    return console.fail(ExitCode::usage, "invalid time '" + invocation.string(option) + "' for --" + option +
                                             ": expected seconds or a time such as 2026-11-20T09:30:00Z");
}

ExitCode failNumber(const std::string& option, int maximum, const Console& console) {
    return console.fail(ExitCode::usage, "--" + option + " must be between 1 and " + std::to_string(maximum));
}

// --- qel schedule next

constexpr int maxRuns = 1'000'000;

void addNextOptions(Options& options) {
    options.add({.name = "now",
                 .value = "TIME",
                 .help = "find runs after this time, in seconds or as YYYY-MM-DDTHH:MM:SSZ; default: now"});
    options.add({.name = "count",
                 .value = "N",
                 .kind = OptionKind::integer,
                 .byDefault = "1",
                 .help = "number of consecutive runs to show"});
    addJsonOption(options);
}

/// A result of QelSchedulerTrigger::getNextRunTime().
struct Run {
    std::size_t trigger;
    long now;
    int result;
    long next;
};

std::string localTimeString(long time) {
    std::tm local{};
    std::array<char, 64> string{};
    if (localTimeCopy(time, local) != 0)
        return {};
    return {string.data(), std::strftime(string.data(), string.size(), "%a %F %T %z", &local)};
}

/// Prints runs: JSON line by line as they are found, text as one table at the end.
class RunPrinter {
public:
    explicit RunPrinter(const Output& output) : m_output(output) {
        m_table.addRow({"trigger", "result", "next run", "local time"});
    }
    void add(const Run& run) {
        m_output.printLine([&] { return asJson(run); }, [&](std::ostream&) { addRow(run); });
    }
    void finish() const {
        m_output.printTextOnly([&](std::ostream& out) { m_table.print(out); });
    }

private:
    static Json asJson(const Run& run) {
        return {{"trigger", run.trigger}, {"now", run.now}, {"result", run.result}, {"next", run.next}};
    }
    void addRow(const Run& run) {
        m_table.addRow(
            {std::to_string(run.trigger), std::to_string(run.result), std::to_string(run.next), meaningOf(run)});
    }
    static std::string meaningOf(const Run& run) {
        if (run.result != 0)
            return "unknown";
        return run.next == qelNoTime ? "no more runs" : localTimeString(run.next);
    }

    Output m_output;
    Table m_table{{Table::Align::right, Table::Align::right, Table::Align::right, Table::Align::left}};
};

ExitCode runNext(const Invocation& invocation, const Console& console) {
    const std::optional<long> from = timeOption(invocation, "now");
    if (!from)
        return failTime(invocation, "now", console);
    const int count = invocation.integer("count");
    if (count < 1 || count > maxRuns)
        return failNumber("count", maxRuns, console);
    QelScheduleTask task;
    if (const ExitCode code = readRecord(invocation.arguments[0], task, console); code != ExitCode::success)
        return code;

    RunPrinter printer(Output(invocation, console));
    std::size_t index = 0;
    for (const auto& trigger : task.triggers) {
        long now = *from;
        for (int left = count; left > 0; --left) {
            Run run{index, now, 0, qelNoTime};
            run.result = trigger->getNextRunTime(now, run.next);
            printer.add(run);
            if (run.result != 0 || run.next == qelNoTime || run.next <= now)
                break;
            now = run.next;
        }
        ++index;
    }
    printer.finish();
    return ExitCode::success;
}

// --- qel schedule calendar

constexpr int maxMonths = 1200;

void addCalendarOptions(Options& options) {
    options.add({.name = "from",
                 .value = "TIME",
                 .help = "a time in the first month, in seconds or as YYYY-MM-DDTHH:MM:SSZ; default: now"});
    options.add({.name = "months",
                 .value = "N",
                 .kind = OptionKind::integer,
                 .byDefault = "3",
                 .help = "number of months to show"});
}

/// Whether the output is a terminal with colour support and the user has not disabled colours.
bool supportsColour(const Console& console) {
    const char* const terminal = std::getenv("TERM");
    const char* const noColour = std::getenv("NO_COLOR"); // https://no-color.org
    return isTerminal(console) && terminal && std::string_view(terminal) != "dumb" && !(noColour && *noColour != '\0');
}

ExitCode runCalendar(const Invocation& invocation, const Console& console) {
    constexpr std::int64_t latest = 253'402'300'799; // the end of the year 9999
    const std::optional<long> from = timeOption(invocation, "from");
    std::tm local{};
    if (!from || *from < 0 || *from > latest || localTimeCopy(*from, local) != 0)
        return failTime(invocation, "from", console);
    const int months = invocation.integer("months");
    if (months < 1 || months > maxMonths)
        return failNumber("months", maxMonths, console);
    QelScheduleTask task;
    if (const ExitCode code = readRecord(invocation.arguments[0], task, console); code != ExitCode::success)
        return code;
    const std::chrono::year_month first{std::chrono::year(local.tm_year + 1900),
                                        std::chrono::month(static_cast<unsigned>(local.tm_mon + 1))};
    printCalendar(console.out, first, months, findRunDays(task, first, months), supportsColour(console));
    return ExitCode::success;
}

} // namespace

CommandGroup scheduleCommands() {
    static constexpr std::array commands{
        Command{"next", "FILE", "Show the next runs of the task in a message, by trigger", addNextOptions, runNext},
        Command{"calendar", "FILE", "Show a calendar of the days on which the task in a message runs",
                addCalendarOptions, runCalendar},
    };
    return {"schedule", "Scheduled tasks", commands};
}

} // namespace Qel::Tool
