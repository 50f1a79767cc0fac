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
#include "TriggerAnswer.h"

// Each trigger against a model that says in the plainest way what a user would expect of it, and finds it by walking
// the days one by one.  Where a trigger is odd on purpose the case is counted under the oddity's name instead; each of
// the oddities must make a difference somewhere, or it wouldn't be one.

namespace Qel {

namespace {

constexpr int comparedCases = 10'000; // of each trigger in each zone

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

/// A month of a year, both as people count them.
struct YearMonth {
    int year;
    int month;
    friend bool operator==(const YearMonth&, const YearMonth&) = default;
};

YearMonth monthOf(const std::tm& parts) {
    return {parts.tm_year + 1900, parts.tm_mon + 1};
}

/// The first month behind `from` that is in the set, which has at least one.
YearMonth monthBehind(YearMonth from, const std::set<int>& months) {
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

    /// Times that let a walk of four years end before 2038.
    long someStart() { return between(utc(1999, 1, 1), utc(2030, 1, 1)); }
    /// Mostly in the weeks around the start.
    long someNow(long start) {
        if (chance(5))
            return start;
        return chance(80) ? start + between(-20 * testDay, 60 * testDay)
                          : start + between(-1000 * testDay, 1000 * testDay);
    }
    long someEnd(long start) { return chance(70) ? qelNoTime : start + between(-testDay, 200 * testDay); }

    /// Compares until enough cases were no oddities.
    template <class MakeCase> void compare(const std::set<std::string_view>& oddities, const MakeCase& makeCase) {
        std::map<std::string_view, int> differences;
        for (int compared = 0; compared < comparedCases;) {
            const auto [trigger, now, expected, oddity] = makeCase();
            const TriggerAnswer answer = ask(trigger, now);
            if (oddity) {
                ASSERT_TRUE(oddities.contains(oddity)) << oddity;
                differences[oddity] += !(answer == expected);
                continue;
            }
            ++compared;
            ASSERT_EQ(answer, expected) << "start " << trigger.start << ", end " << trigger.end << ", now " << now
                                        << ", " << GetParam().name;
        }
        for (const std::string_view oddity : oddities)
            EXPECT_GT(differences[oddity], 0) << "makes no difference: " << oddity;
    }

    template <class Trigger> struct Case {
        Trigger trigger;
        long now;
        TriggerAnswer expected;
        const char* oddity;
    };

    [[nodiscard]] bool isPastLateHour(long start) const {
        return GetParam().hasSummerTime && timeOfDay(start) >= 23 * 3600;
    }
    /// The first run after `now`, on the clocks of standard time.
    [[nodiscard]] std::optional<long> walk(long now, long start,
                                           const std::function<bool(const SlowDate&)>& isRunDay) const {
        return walkToRun(now, timeOfDay(start), GetParam().standardOffset, isRunDay);
    }

private:
    std::mt19937 m_random{20260101};
};

INSTANTIATE_TEST_SUITE_P(Zones, SchedulerModelTest, testing::ValuesIn(testZones), zoneTestName);

TEST_P(SchedulerModelTest, Once) {
    compare({}, [this] {
        const QelSchedulerOnceTrigger trigger(someStart(), someEnd(1'000'000'000));
        const long now = someNow(trigger.start);
        return Case<QelSchedulerOnceTrigger>{trigger, now, now < trigger.start ? runAt(trigger.start) : noMoreRuns,
                                             none};
    });
}

// --- Daily

constexpr const char* startComesFirst = "a start in the future is the first run, whatever its day and the end";
constexpr const char* clocksChange = "days are 86400 seconds, whatever the clocks do meanwhile";

TEST_P(SchedulerModelTest, Daily) {
    std::set<std::string_view> oddities{startComesFirst};
    if (GetParam().hasSummerTime)
        oddities.insert(clocksChange);
    compare(oddities, [this] {
        QelSchedulerDailyTrigger trigger(someStart(), qelNoTime);
        trigger.end = someEnd(trigger.start);
        if (chance(30))
            trigger.interval = static_cast<int>(between(0, 20));
        trigger.weekdaysOnly = chance(50);
        trigger.weekendsOnly = chance(50);
        // Sundays of 23 and 25 hours are few: most of the starts in summer time zones are around midnight.
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
        const char* const oddity = now < trigger.start && candidate == trigger.start ? startComesFirst
                                   : interval == 0 && localParts(candidate).tm_gmtoff != localParts(run).tm_gmtoff
                                       ? clocksChange
                                       : none;
        return Case<QelSchedulerDailyTrigger>{trigger, now, isOver ? noMoreRuns : runAt(run), oddity};
    });
}

// --- Weekly

TEST_P(SchedulerModelTest, Weekly) {
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
        // UTC throughout, and a run at the start is one.
        const long run = orNoTime(walkToRun(std::max(now, trigger.start - 1), (trigger.start) % testDay, 0, isRunDay));
        const bool isOver = trigger.end != qelNoTime && (trigger.end < now || trigger.end < run);
        return Case<QelSchedulerWeeklyTrigger>{trigger, now, isOver ? noMoreRuns : runAt(run), none};
    });
}

// --- Monthly

constexpr const char* lateHour =
    "midnights are those of standard time, so that in summer a run in the last hour of a day is one of the next";
constexpr const char* noDay = "a month without any of the days has no answer";
constexpr const char* twiceLast = "the number of the last day and 32 together are a run in the next month too";
constexpr const char* wholeMonth = "the month of the start counts from its first day";
constexpr const char* noEnd = "the end doesn't count in the month of the start";
constexpr const char* yearsLater = "in a later year the start's month is looked for in the start's own year";
constexpr const char* otherMonth = "only the month of the start and the next one of the set behind it are looked at";

/// The oddity that may apply, given what is expected without any.
const char* monthlyOddity(const QelSchedulerMonthlyTrigger& trigger, long now, std::optional<long> run,
                          const TestZone& zone, const IsDay& isDay) {
    if (trigger.end != qelNoTime && trigger.end < now)
        return none;
    if (zone.hasSummerTime && timeOfDay(trigger.start) >= 23 * 3600)
        return lateHour;
    YearMonth first = monthOf(localParts(trigger.start));
    const bool isLaterYear = first.year < monthOf(localParts(now)).year;
    first.year = std::max(first.year, monthOf(localParts(now)).year);
    const YearMonth second = monthBehind(first, trigger.months);
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

TEST_P(SchedulerModelTest, Monthly) {
    std::set<std::string_view> oddities{noDay, twiceLast, wholeMonth, noEnd, yearsLater, otherMonth};
    if (GetParam().hasSummerTime)
        oddities.insert(lateHour);
    compare(oddities, [this] {
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
                                                monthlyOddity(trigger, now, run, GetParam(), isDay)};
    });
}

// --- Monthly, day of week

constexpr const char* givenUp = "a run that isn't after the start gives up the rest of its month";
constexpr const char* endPassed = "the end counts only once it has passed";

/// Whether one of the two months that are looked at has none of the days.
bool looksAtMonthWithout(const IsDay& isDay, long from, const std::set<int>& months) {
    const YearMonth first = monthOf(localParts(from));
    return (months.contains(first.month) && !hasDay(first, isDay)) || !hasDay(monthBehind(first, months), isDay);
}

TEST_P(SchedulerModelTest, MonthlyDayOfWeek) {
    std::set<std::string_view> oddities{noDay, givenUp, endPassed};
    if (GetParam().hasSummerTime)
        oddities.insert(lateHour);
    compare(oddities, [this] {
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
        const char* oddity = none;
        if (!isOver) {
            if (isPastLateHour(trigger.start))
                oddity = lateHour;
            else if (looksAtMonthWithout(isDay, std::max(trigger.start, now), trigger.months))
                oddity = noDay;
            else if (fromNow && *fromNow <= trigger.start)
                oddity = givenUp;
            else if (trigger.end != qelNoTime && run && trigger.end < *run)
                oddity = endPassed;
        }
        const bool isBehind = isOver || (trigger.end != qelNoTime && run && trigger.end < *run);
        return Case<QelSchedulerMonthlyDayOfWeekTrigger>{trigger, now, isBehind ? noMoreRuns : runAt(orNoTime(run)),
                                                         oddity};
    });
}

} // namespace

} // namespace Qel
