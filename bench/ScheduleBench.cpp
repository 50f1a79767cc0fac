// Measures the time and the number of allocations for computing the next run of each kind of trigger.

#include <atomic>
#include <cstdlib>
#include <new>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

#include "QelFunctionalityCore/Scheduling/QelSchedulerDailyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyDayOfWeekTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerMonthlyTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerOnceTrigger.h"
#include "QelFunctionalityCore/Scheduling/QelSchedulerWeeklyTrigger.h"

namespace {

std::atomic<unsigned long> allocations;

} // namespace

// noinline: otherwise g++ reports mismatched allocation functions.
[[gnu::noinline]] void* operator new(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    void* const memory = std::malloc(size);
    if (!memory)
        std::abort();
    return memory;
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
    std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace Qel {

namespace {

constexpr long start = 1'768'464'000; // 2026-01-15T08:00:00Z
constexpr long day = 86400;

template <class Trigger> Trigger make();

template <> QelSchedulerOnceTrigger make() {
    return {start, qelNoTime};
}

template <> QelSchedulerDailyTrigger make() {
    QelSchedulerDailyTrigger trigger(start, qelNoTime);
    trigger.weekdaysOnly = true;
    return trigger;
}

template <> QelSchedulerWeeklyTrigger make() {
    QelSchedulerWeeklyTrigger trigger(start, qelNoTime);
    trigger.weeks = 2;
    trigger.days = {1, 4};
    return trigger;
}

template <> QelSchedulerMonthlyTrigger make() {
    QelSchedulerMonthlyTrigger trigger(start, qelNoTime);
    trigger.days = {1, 15, 32};
    trigger.months = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    return trigger;
}

template <> QelSchedulerMonthlyDayOfWeekTrigger make() {
    QelSchedulerMonthlyDayOfWeekTrigger trigger(start, qelNoTime);
    trigger.weekDays = {0, 3};
    trigger.weekNumbers = {1, 6};
    trigger.months = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    return trigger;
}

/// Computes the next run of one trigger at random times within a month.
template <class Trigger> void nextRun(benchmark::State& state) {
    const auto trigger = make<Trigger>();
    std::mt19937 random(1);
    std::vector<long> times;
    for (int i = 0; i < 1024; ++i)
        times.push_back(start + std::uniform_int_distribution<long>(-day, 30 * day)(random));
    const unsigned long before = allocations;
    std::size_t asked = 0;
    for (auto _ : state) {
        long next = 0;
        benchmark::DoNotOptimize(trigger.getNextRunTime(times[asked++ % times.size()], next));
        benchmark::DoNotOptimize(next);
    }
    state.counters["allocations"] =
        benchmark::Counter(static_cast<double>(allocations - before), benchmark::Counter::kAvgIterations);
}

BENCHMARK_TEMPLATE(nextRun, QelSchedulerOnceTrigger);
BENCHMARK_TEMPLATE(nextRun, QelSchedulerDailyTrigger);
BENCHMARK_TEMPLATE(nextRun, QelSchedulerWeeklyTrigger);
BENCHMARK_TEMPLATE(nextRun, QelSchedulerMonthlyTrigger);
BENCHMARK_TEMPLATE(nextRun, QelSchedulerMonthlyDayOfWeekTrigger);

/// The work of a scheduler at each wake-up: 5,000 tasks, 1,000 of each kind.
void allTasks(benchmark::State& state) {
    QelSchedulerTriggerList triggers;
    for (int i = 0; i < 1000; ++i) {
        triggers.emplace_back(new QelSchedulerOnceTrigger(make<QelSchedulerOnceTrigger>()));
        triggers.emplace_back(new QelSchedulerDailyTrigger(make<QelSchedulerDailyTrigger>()));
        triggers.emplace_back(new QelSchedulerWeeklyTrigger(make<QelSchedulerWeeklyTrigger>()));
        triggers.emplace_back(new QelSchedulerMonthlyTrigger(make<QelSchedulerMonthlyTrigger>()));
        triggers.emplace_back(new QelSchedulerMonthlyDayOfWeekTrigger(make<QelSchedulerMonthlyDayOfWeekTrigger>()));
    }
    for (auto _ : state)
        for (const auto& trigger : triggers) {
            long next = 0;
            benchmark::DoNotOptimize(trigger->getNextRunTime(start + 10 * day, next));
            benchmark::DoNotOptimize(next);
        }
}
BENCHMARK(allTasks)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Qel

BENCHMARK_MAIN();
