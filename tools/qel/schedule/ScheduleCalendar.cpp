#include "qel/schedule/ScheduleCalendar.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <ostream>
#include <string>
#include <string_view>

#include "QelFunctionalityCore/Scheduling/QelLocalTime.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"

namespace Qel::Tool {

namespace {

namespace chrono = std::chrono;

constexpr std::string_view highlight = "\x1B[1;32m"; // ECMA-48 SGR: bold, green
constexpr std::string_view plain = "\x1B[0m";
constexpr std::size_t cellWidth = 4;
constexpr unsigned daysPerWeek = 7;
constexpr std::size_t lineWidth = cellWidth * daysPerWeek;
constexpr std::string_view weekDays = " Mo  Tu  We  Th  Fr  Sa  Su";
constexpr std::array<std::string_view, 12> monthNames{"January",   "February", "March",    "April",
                                                      "May",       "June",     "July",     "August",
                                                      "September", "October",  "November", "December"};
constexpr int detectSummerTime = -1; // value of tm_isdst

chrono::sys_days firstDayOf(chrono::year_month month) {
    return chrono::sys_days{month / 1};
}

/// Local midnight at the start of the month.
int startOf(chrono::year_month month, std::int64_t& time) {
    constexpr int firstYear = 1900;
    const int number = static_cast<int>(unsigned{month.month()});
    return makeLocalMidnight(int{month.year()} - firstYear, number - 1, 1, detectSummerTime, time);
}

int localDateOf(long time, chrono::sys_days& date) {
    std::tm local{};
    if (localTimeCopy(time, local) != 0)
        return -1;
    date = chrono::floor<chrono::days>(chrono::sys_seconds{chrono::seconds{time + local.tm_gmtoff}});
    return 0;
}

/// True if the trigger runs at the epoch.  getNextRunTime() cannot answer this: it returns runs after a given time, and
/// most triggers reject times before the epoch.  Only triggers whose first run is their start can run at the epoch.
bool runsAtEpoch(const QelSchedulerTrigger& trigger) {
    return trigger.start == 0 && (dynamic_cast<const QelSchedulerOnceTrigger*>(&trigger) ||
                                  dynamic_cast<const QelSchedulerDailyTrigger*>(&trigger));
}

void addRunDays(const QelSchedulerTrigger& trigger, long from, long until, std::set<chrono::sys_days>& runDays) {
    const auto add = [&](long run) {
        chrono::sys_days date;
        if (from <= run && run < until && localDateOf(run, date) == 0)
            runDays.insert(date);
    };
    if (runsAtEpoch(trigger))
        add(0);
    long now = from - 1;
    while (now < until) {
        long next = qelNoTime;
        if (trigger.getNextRunTime(now, next) != 0 || next <= now) {
            const long nextDay = now + static_cast<long>(secondsPerDay);
            now = now < 0 ? std::min(nextDay, 0L) : nextDay;
            continue;
        }
        add(next);
        now = next;
    }
}

std::string cellOf(unsigned day, bool isMarked, bool inColour) {
    std::string number = (day < 10 ? " " : "") + std::to_string(day);
    if (!isMarked)
        return ' ' + number + ' ';
    number = '[' + number + ']';
    return inColour ? std::string(highlight) + number + std::string(plain) : number;
}

void printMonth(std::ostream& out, chrono::year_month month, const std::set<chrono::sys_days>& runDays, bool inColour) {
    const std::string title =
        std::string(monthNames[unsigned{month.month()} - 1]) + ' ' + std::to_string(int{month.year()});
    out << std::string((lineWidth - title.size()) / 2, ' ') << title << '\n' << weekDays << '\n';
    const chrono::sys_days first = firstDayOf(month);
    const chrono::sys_days end = firstDayOf(month + chrono::months(1));
    std::string line((chrono::weekday(first).iso_encoding() - 1) * cellWidth, ' ');
    for (chrono::sys_days date = first; date < end; date += chrono::days(1)) {
        line += cellOf(unsigned{chrono::year_month_day(date).day()}, runDays.contains(date), inColour);
        if (chrono::weekday(date) == chrono::Sunday || date + chrono::days(1) == end) {
            line.erase(line.find_last_not_of(' ') + 1);
            out << line << '\n';
            line.clear();
        }
    }
}

} // namespace

std::set<chrono::sys_days> findRunDays(const QelScheduleTask& task, chrono::year_month first, int months) {
    std::set<chrono::sys_days> runDays;
    std::int64_t from = 0;
    std::int64_t until = 0;
    if (startOf(first, from) != 0 || startOf(first + chrono::months(months), until) != 0)
        return runDays;
    for (const auto& trigger : task.triggers)
        addRunDays(*trigger, static_cast<long>(from), static_cast<long>(until), runDays);
    return runDays;
}

void printCalendar(std::ostream& out, chrono::year_month first, int months, const std::set<chrono::sys_days>& runDays,
                   bool inColour) {
    for (int i = 0; i < months; ++i) {
        if (i != 0)
            out << '\n';
        printMonth(out, first + chrono::months(i), runDays, inColour);
    }
}

} // namespace Qel::Tool
