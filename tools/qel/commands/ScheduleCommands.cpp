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

/// The time that an option tells, or the present one; nothing if it is no time.
std::optional<long> timeOption(const Invocation& invocation, const std::string& option) {
    if (!invocation.has(option))
        return std::time(nullptr);
    long time = 0;
    if (!QelValueText::toTime(invocation.text(option), time))
        return std::nullopt;
    return time;
}

ExitCode failTime(const Invocation& invocation, const std::string& option, const Console& console) {
    return console.fail(ExitCode::usage, "--" + option + " takes seconds or a time like 2026-11-20T09:30:00Z, not '" +
                                             invocation.text(option) + "'");
}

ExitCode failNumber(const std::string& option, int most, const Console& console) {
    return console.fail(ExitCode::usage, "--" + option + " takes a number from 1 to " + std::to_string(most));
}

// --- qel schedule next

constexpr int mostRuns = 1'000'000;

void addNextOptions(Options& options) {
    options.add({.name = "now",
                 .value = "TIME",
                 .help = "the time to ask for, in seconds or as a text; the present by default"});
    options.add({.name = "count",
                 .value = "N",
                 .kind = OptionKind::integer,
                 .byDefault = "1",
                 .help = "runs in a row, each found from the one before"});
    addJsonOption(options);
}

/// One answer of a trigger.
struct Answer {
    std::size_t trigger;
    long now;
    int result;
    long next;
};

std::string localText(long time) {
    std::tm local{};
    std::array<char, 64> text{};
    if (localTimeCopy(time, local) != 0)
        return {};
    return {text.data(), std::strftime(text.data(), text.size(), "%a %F %T %z", &local)};
}

/// Takes a task's answers one by one.
class AnswerPrinter {
public:
    AnswerPrinter(std::ostream& out, bool asJson) : m_out(out), m_asJson(asJson) {
        if (!m_asJson)
            m_table.addRow({"trigger", "result", "next run", "local time"});
    }
    void add(const Answer& answer) {
        if (m_asJson)
            m_out << Json{{"trigger", answer.trigger},
                          {"now", answer.now},
                          {"result", answer.result},
                          {"next", answer.next}}
                  << '\n';
        else
            m_table.addRow({std::to_string(answer.trigger), std::to_string(answer.result), std::to_string(answer.next),
                            meaningOf(answer)});
    }
    void finish() {
        if (!m_asJson)
            m_table.print(m_out);
    }

private:
    static std::string meaningOf(const Answer& answer) {
        if (answer.result != 0)
            return "no answer";
        return answer.next == qelNoTime ? "no more runs" : localText(answer.next);
    }

    std::ostream& m_out;
    bool m_asJson;
    Table m_table{{Table::Align::right, Table::Align::right, Table::Align::right, Table::Align::left}};
};

ExitCode runNext(const Invocation& invocation, const Console& console) {
    const std::optional<long> from = timeOption(invocation, "now");
    if (!from)
        return failTime(invocation, "now", console);
    const int count = invocation.integer("count");
    if (count < 1 || count > mostRuns)
        return failNumber("count", mostRuns, console);
    QelScheduleTask task;
    if (const ExitCode code = readRecord(invocation.arguments[0], task, console); code != ExitCode::success)
        return code;

    AnswerPrinter printer(console.out, invocation.has("json"));
    std::size_t index = 0;
    for (const auto& trigger : task.triggers) {
        long now = *from;
        for (int left = count; left > 0; --left) {
            Answer answer{index, now, 0, qelNoTime};
            answer.result = trigger->getNextRunTime(now, answer.next);
            printer.add(answer);
            if (answer.result != 0 || answer.next == qelNoTime || answer.next <= now)
                break;
            now = answer.next;
        }
        ++index;
    }
    printer.finish();
    return ExitCode::success;
}

// --- qel schedule calendar

constexpr int mostMonths = 1200;

void addCalendarOptions(Options& options) {
    options.add({.name = "from",
                 .value = "TIME",
                 .help = "a time in the first month, in seconds or as a text; the present by default"});
    options.add({.name = "months",
                 .value = "N",
                 .kind = OptionKind::integer,
                 .byDefault = "3",
                 .help = "how many months to show"});
}

/// Whether the output goes to a terminal that has colours, and the user has nothing against them.
bool isColourful(const Console& console) {
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
    if (months < 1 || months > mostMonths)
        return failNumber("months", mostMonths, console);
    QelScheduleTask task;
    if (const ExitCode code = readRecord(invocation.arguments[0], task, console); code != ExitCode::success)
        return code;
    const std::chrono::year_month first{std::chrono::year(local.tm_year + 1900),
                                        std::chrono::month(static_cast<unsigned>(local.tm_mon + 1))};
    printCalendar(console.out, first, months, findRunDays(task, first, months), isColourful(console));
    return ExitCode::success;
}

} // namespace

CommandGroup scheduleCommands() {
    static constexpr std::array commands{
        Command{"next", "FILE", "Tells when the task in a message runs next, by each of its triggers.", addNextOptions,
                runNext},
        Command{"calendar", "FILE", "Shows the days on which the task in a message runs.", addCalendarOptions,
                runCalendar},
    };
    return {"schedule", "Scheduled tasks.", commands};
}

} // namespace Qel::Tool
