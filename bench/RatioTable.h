// Shared by the benchmarks that compare our code with a peer: keeps the best time of each benchmark and prints a table
// of pairs with their ratio and whether it meets the requirement.

#pragma once

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace Qel::Bench {

/// Keeps the best time of several runs of each benchmark, which is least affected by other load on the machine.
class BestTimes : public benchmark::BenchmarkReporter {
public:
    enum class Clock { real, processor };

    /// `perSecond`: number of time units per second.
    BestTimes(Clock clock, double perSecond) : m_clock(clock), m_perSecond(perSecond) {}

    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                keep(run);
    }
    void Finalize() override { std::fprintf(stderr, "\r%60s\r", ""); }

    /// The best time of a benchmark; 0 if it did not run.
    [[nodiscard]] double of(const std::string& name) const {
        const auto found = m_times.find(name);
        return found == m_times.end() ? 0 : found->second;
    }

private:
    void keep(const Run& run) {
        const double total = m_clock == Clock::real ? run.real_accumulated_time : run.cpu_accumulated_time;
        const double time = total / static_cast<double>(run.iterations) * m_perSecond;
        const std::string& name = run.run_name.function_name;
        const auto [known, isNew] = m_times.emplace(name, time);
        if (!isNew)
            known->second = std::min(known->second, time);
        std::fprintf(stderr, "\r%-60s", name.c_str());
    }

    Clock m_clock;
    double m_perSecond;
    std::map<std::string, double> m_times;
};

/// Runs the benchmarks registered by `registerAll` and selected by the arguments.  Returns false if an argument is
/// unknown.  Repetitions are interleaved in random order, so that a temporary slowdown affects all benchmarks alike.
inline bool runBenchmarks(int argc, char** argv, void (*registerAll)(), BestTimes& times) {
    std::vector<char*> arguments(argv, argv + argc);
    std::string interleaving = "--benchmark_enable_random_interleaving=true";
    arguments.insert(arguments.begin() + 1, interleaving.data());
    arguments.push_back(nullptr);
    argc = static_cast<int>(arguments.size() - 1);
    argv = arguments.data();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return false;
    registerAll();
    benchmark::RunSpecifiedBenchmarks(&times);
    benchmark::Shutdown();
    return true;
}

enum class Measure {
    timesFaster, ///< the peer's value divided by ours; the requirement is a minimum
    timesAsLong, ///< our value divided by the peer's; the requirement is a maximum
};

/// Prints a table to standard output.
class RatioTable {
public:
    /// Prints the header: the titles of the two label columns and the unit of the values.
    RatioTable(const char* what, const char* which, const std::string& unit, int decimals) : m_decimals(decimals) {
        std::printf("%-38s %-11s %14s %14s %8s %10s\n", what, which, ("ours " + unit).c_str(), ("peer " + unit).c_str(),
                    "ratio", "required");
    }

    /// Prints a line and returns true if the ratio meets the requirement; `required` = 0: none.
    bool printLine(const char* what, const std::string& which, double ours, double peer, Measure measure,
                   double required) const {
        const bool isFaster = measure == Measure::timesFaster;
        const double ratio = isFaster ? peer / ours : ours / peer;
        std::printf("%-38s %-11s %14.*f %14.*f %8.2f", what, which.c_str(), m_decimals, ours, m_decimals, peer, ratio);
        if (required == 0) {
            std::printf("\n");
            return true;
        }
        const bool isReached = isFaster ? ratio >= required : ratio <= required;
        std::printf(" %s %7.2f  %s\n", isFaster ? ">=" : "<=", required, isReached ? "reached" : "MISSED");
        return isReached;
    }

private:
    int m_decimals;
};

} // namespace Qel::Bench
