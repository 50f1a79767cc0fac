#include <algorithm>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string_view>

#include <gtest/gtest.h>

#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"
#include "SlowCalendar.h"
#include "TriggerResult.h"

// Compares each trigger with a reference model that computes the run a user would expect, searching day by day.  Cases
// in which a trigger deviates on purpose are counted by deviation instead of compared.  Every deviation must change a
// result at least once.

namespace Qel {

namespace {

constexpr int comparedCases = 10'000; // per trigger and zone

const char* const none = nullptr;

std::tm localParts(long time) {
    std::tm parts{};
    const std::time_t seconds = time;
    localtime_r(&seconds, &parts);
    return parts;
}

long timeOfDay(long time) {
    const std::tm parts = localParts(time);
    return parts.tm_hour * 3600L + parts.tm_min * 60L + parts.tm_sec;
}

/// A month from 1 and a year AD.
struct YearMonth {
    int year;
    int month;
    friend bool operator==(const YearMonth&, const YearMonth&) = default;
};

YearMonth monthOf(const std::tm& parts) {
    return {parts.tm_year + 1900, parts.tm_mon + 1};
}

/// Returns the next month after `from` in the set, which is not empty.
YearMonth monthAfter(YearMonth from, const std::set<int>& months) {
    do {
        from.month = from.month == 12 ? 1 : from.month + 1;
        from.year += from.month == 1;
    } while (!months.contains(from.month));
    return from;
}

using IsDay = std::function<bool(const SlowDate&)>;

bool hasDay(YearMonth month, const IsDay& isDay) {
    return hasDay(month.year, month.month, isDay);
}

long orNoTime(const std::optional<long>& time) {
    return time.value_or(qelNoTime);
}

class SchedulerModelTest : public ZoneTest {
protected:
    long between(long low, long high) { return std::uniform_int_distribution<long>(low, high)(m_random); }
    bool chance(int percent) { return between(1, 100) <= percent; }

    std::set<int> subset(int low, int high, int most) {
        std::set<int> numbers;
        for (long left = between(1, most); left > 0; --left)
            numbers.insert(static_cast<int>(between(low, high)));
        return numbers;
    }
    std::set<int> months() {
        std::set<int> all;
        for (int month = 1; month <= 12; ++month)
            all.insert(month);
        return chance(50) ? all : subset(1, 12, 5);
    }

    /// Start times that allow a search of four years before 2038.
    long someStart() { return between(utc(1999, 1, 1), utc(2030, 1, 1)); }
    /// Mostly within weeks of the start.
    long someNow(long start) {
        if (chance(5))
            return start;
        return chance(80) ? start + between(-20 * testDay, 60 * testDay)
                          : start + between(-1000 * testDay, 1000 * testDay);
    }
    long someEnd(long start) { return chance(70) ? qelNoTime : start + between(-testDay, 200 * testDay); }

    /// Compares until enough cases without a deviation have been checked.
    template <class MakeCase> void compare(const std::set<std::string_view>& deviations, const MakeCase& makeCase) {
        std::map<std::string_view, int> changedResults;
        for (int compared = 0; compared < comparedCases;) {
            const auto [trigger, now, expected, deviation] = makeCase();
            const TriggerResult result = nextRun(trigger, now);
            if (deviation) {
                ASSERT_TRUE(deviations.contains(deviation)) << deviation;
                changedResults[deviation] += !(result == expected);
                continue;
            }
            ++compared;
            ASSERT_EQ(result, expected) << "start " << trigger.start << ", end " << trigger.end << ", now " << now
                                        << ", " << GetParam().name;
        }
        for (const std::string_view deviation : deviations)
            EXPECT_GT(changedResults[deviation], 0) << "deviation without effect: " << deviation;
    }

    template <class Trigger> struct Case {
        Trigger trigger;
        long now;
        TriggerResult expected;
        const char* deviation;
    };

    [[nodiscard]] bool isPastLateHour(long start) const {
        return GetParam().hasSummerTime && timeOfDay(start) >= 23 * 3600;
    }
    /// Returns the first run after `now` in standard time.
    [[nodiscard]] std::optional<long> walk(long now, long start,
                                           const std::function<bool(const SlowDate&)>& isRunDay) const {
        return walkToRun(now, timeOfDay(start), GetParam().standardOffset, isRunDay);
    }

private:
    std::mt19937 m_random{20260101};
};

INSTANTIATE_TEST_SUITE_P(Zones, SchedulerModelTest, testing::ValuesIn(testZones), zoneTestName);

TEST_P(SchedulerModelTest, SingleRunMatchesTheModel) {
    compare({}, [this] {
        const QelSchedulerOnceTrigger trigger(someStart(), someEnd(1'000'000'000));
        const long now = someNow(trigger.start);
        return Case<QelSchedulerOnceTrigger>{trigger, now, now < trigger.start ? runAt(trigger.start) : noMoreRuns,
                                             none};
    });
}

// --- Daily

constexpr const char* startComesFirst = "a start in the future is the first run, regardless of week day and end";
constexpr const char* clocksChange = "days are 86400 seconds, even across a daylight saving change";

TEST_P(SchedulerModelTest, DailyRunsMatchTheModel) {
    std::set<std::string_view> deviations{startComesFirst};
    if (GetParam().hasSummerTime)
        deviations.insert(clocksChange);
    compare(deviations, [this] {
        QelSchedulerDailyTrigger trigger(someStart(), qelNoTime);
        trigger.end = someEnd(trigger.start);
        if (chance(30))
            trigger.interval = static_cast<int>(between(0, 20));
        trigger.weekdaysOnly = chance(50);
        trigger.weekendsOnly = chance(50);
        // Sundays of 23 and 25 hours are rare: place most starts in zones with daylight saving time around midnight.
        if (GetParam().hasSummerTime && chance(50))
            trigger.start += testDay - 1800 - timeOfDay(trigger.start) + (chance(50) ? 3600 : 0);
        const long now = someNow(trigger.start);

        const int interval = trigger.interval.isSpecified() ? trigger.interval.get() : 0;
        const auto isRunDay = [&](long run) {
            if (interval != 0)
                return (run - trigger.start) / testDay % interval == 0;
            const int weekDay = localParts(run).tm_wday;
            const bool isWeekend = weekDay == 0 || weekDay == 6;
            return trigger.weekdaysOnly ? !isWeekend : isWeekend;
        };
        long run = trigger.start;
        while (run <= now)
            run += testDay;
        const long candidate = run;
        while (!isRunDay(run))
            run += testDay;

        const bool isOver = trigger.end != qelNoTime && trigger.end < run;
        const char* const deviation = now < trigger.start && candidate == trigger.start ? startComesFirst
                                      : interval == 0 && localParts(candidate).tm_gmtoff != localParts(run).tm_gmtoff
                                          ? clocksChange
                                          : none;
        return Case<QelSchedulerDailyTrigger>{trigger, now, isOver ? noMoreRuns : runAt(run), deviation};
    });
}

// --- Weekly

TEST_P(SchedulerModelTest, WeeklyRunsMatchTheModel) {
    compare({}, [this] {
        QelSchedulerWeeklyTrigger trigger(someStart(), qelNoTime);
        trigger.end = someEnd(trigger.start);
        trigger.weeks = static_cast<int>(chance(70) ? between(1, 4) : between(1, 52));
        trigger.days = subset(0, 7, 4);
        const long now = someNow(trigger.start);

        const auto isRunDay = [&](const SlowDate& date) {
            const bool isInDays =
                trigger.days.contains(date.weekDay) || (date.weekDay == 0 && trigger.days.contains(7));
            return isInDays && date.weekOfYear % trigger.weeks == 0;
        };
        // UTC throughout; a run at the start counts.
        const long run = orNoTime(walkToRun(std::max(now, trigger.start - 1), (trigger.start) % testDay, 0, isRunDay));
        const bool isOver = trigger.end != qelNoTime && (trigger.end < now || trigger.end < run);
        return Case<QelSchedulerWeeklyTrigger>{trigger, now, isOver ? noMoreRuns : runAt(run), none};
    });
}

// --- Monthly

constexpr const char* lateHour =
    "midnights are in standard time, so in summer a run in the last hour of a day counts for the next day";
constexpr const char* noDay = "a month without any of the days is an error";
constexpr const char* twiceLast = "the number of the last day together with 32 adds a run in the next month";
constexpr const char* wholeMonth = "the month of the start counts from its first day";
constexpr const char* noEnd = "the end is ignored in the month of the start";
constexpr const char* yearsLater = "in a later year, the month of the start is searched for in the year of the start";
constexpr const char* otherMonth = "only the month of the start and the next one in the set are considered";

/// Returns the deviation that may apply, given the expected run without any.
const char* monthlyDeviation(const QelSchedulerMonthlyTrigger& trigger, long now, std::optional<long> run,
                             const TestZone& zone, const IsDay& isDay) {
    if (trigger.end != qelNoTime && trigger.end < now)
        return none;
    if (zone.hasSummerTime && timeOfDay(trigger.start) >= 23 * 3600)
        return lateHour;
    YearMonth first = monthOf(localParts(trigger.start));
    const bool isLaterYear = first.year < monthOf(localParts(now)).year;
    first.year = std::max(first.year, monthOf(localParts(now)).year);
    const YearMonth second = monthAfter(first, trigger.months);
    const bool usesFirst = trigger.months.contains(first.month);

    if (isLaterYear && usesFirst)
        return yearsLater;
    if ((usesFirst && !hasDay(first, isDay)) || !hasDay(second, isDay))
        return noDay;
    const auto isTwiceLast = [&](const SlowDate& date) {
        return date.isLastOfMonth() && trigger.days.contains(date.day) && trigger.days.contains(32);
    };
    if (hasDay(first, isTwiceLast) || hasDay(second, isTwiceLast))
        return twiceLast;
    const auto isInFirst = [&](const SlowDate& date) {
        return usesFirst && first == YearMonth{date.year, date.month} && isDay(date);
    };
    const auto runOfFirst = walkToRun(now, timeOfDay(trigger.start), zone.standardOffset, isInFirst);
    if (runOfFirst && *runOfFirst < trigger.start)
        return wholeMonth;
    const std::time_t standardClock = orNoTime(run) + zone.standardOffset;
    std::tm parts{};
    gmtime_r(&standardClock, &parts);
    const YearMonth month = monthOf(parts);
    if (month != second && !(usesFirst && month == first))
        return otherMonth;
    return trigger.end != qelNoTime && trigger.end < orNoTime(run) && month == first ? noEnd : none;
}

TEST_P(SchedulerModelTest, MonthlyRunsMatchTheModel) {
    std::set<std::string_view> deviations{noDay, twiceLast, wholeMonth, noEnd, yearsLater, otherMonth};
    if (GetParam().hasSummerTime)
        deviations.insert(lateHour);
    compare(deviations, [this] {
        QelSchedulerMonthlyTrigger trigger(someStart(), qelNoTime);
        trigger.end = someEnd(trigger.start);
        trigger.days = subset(1, 32, 4);
        trigger.months = months();
        const long now = someNow(trigger.start);

        const auto isDay = [&](const SlowDate& date) {
            return trigger.days.contains(date.day) || (date.isLastOfMonth() && trigger.days.contains(32));
        };
        const auto isRunDay = [&](const SlowDate& date) { return trigger.months.contains(date.month) && isDay(date); };
        const std::optional<long> run = walk(std::max(now, trigger.start - 1), trigger.start, isRunDay);
        const bool isOver = trigger.end != qelNoTime && (trigger.end < now || (run && trigger.end < *run));
        return Case<QelSchedulerMonthlyTrigger>{trigger, now, isOver ? noMoreRuns : runAt(orNoTime(run)),
                                                monthlyDeviation(trigger, now, run, GetParam(), isDay)};
    });
}

// --- Monthly, day of week

constexpr const char* restDiscarded = "a run not after the start discards the rest of its month";
constexpr const char* endPassed = "the end only counts once it has passed";

/// Returns whether one of the two considered months has none of the days.
bool considersMonthWithout(const IsDay& isDay, long from, const std::set<int>& months) {
    const YearMonth first = monthOf(localParts(from));
    return (months.contains(first.month) && !hasDay(first, isDay)) || !hasDay(monthAfter(first, months), isDay);
}

TEST_P(SchedulerModelTest, MonthlyDayOfWeekRunsMatchTheModel) {
    std::set<std::string_view> deviations{noDay, restDiscarded, endPassed};
    if (GetParam().hasSummerTime)
        deviations.insert(lateHour);
    compare(deviations, [this] {
        QelSchedulerMonthlyDayOfWeekTrigger trigger(someStart(), qelNoTime);
        trigger.end = someEnd(trigger.start);
        trigger.weekDays = subset(0, 6, 3);
        trigger.weekNumbers = subset(1, 6, 3);
        trigger.months = months();
        const long now = someNow(trigger.start);

        const auto isDay = [&](const SlowDate& date) {
            return trigger.weekDays.contains(date.weekDay) &&
                   (trigger.weekNumbers.contains((date.day - 1) / 7 + 1) ||
                    (trigger.weekNumbers.contains(6) && date.day + 7 > date.lengthOfMonth()));
        };
        const auto isRunDay = [&](const SlowDate& date) { return trigger.months.contains(date.month) && isDay(date); };
        const std::optional<long> run = walk(std::max(now, trigger.start - 1), trigger.start, isRunDay);

        const bool isOver = trigger.end != qelNoTime && trigger.end < now;
        const std::optional<long> fromNow = walk(now, trigger.start, isRunDay);
        const char* deviation = none;
        if (!isOver) {
            if (isPastLateHour(trigger.start))
                deviation = lateHour;
            else if (considersMonthWithout(isDay, std::max(trigger.start, now), trigger.months))
                deviation = noDay;
            else if (fromNow && *fromNow <= trigger.start)
                deviation = restDiscarded;
            else if (trigger.end != qelNoTime && run && trigger.end < *run)
                deviation = endPassed;
        }
        const bool isPastEnd = isOver || (trigger.end != qelNoTime && run && trigger.end < *run);
        return Case<QelSchedulerMonthlyDayOfWeekTrigger>{trigger, now, isPastEnd ? noMoreRuns : runAt(orNoTime(run)),
                                                         deviation};
    });
}

} // namespace

} // namespace Qel
