// Compares the formatting of an info with two peers: replacing the placeholders one by one in a copy of the format, and
// boost::format.  The info has ten parameters, each with ten parameters.  The columns contain the peer's time divided
// by that of the info: the info is faster if the value is greater than 1.

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>

#include <benchmark/benchmark.h>
#include <boost/format.hpp>

#include "QelFunctionalityCore/Events/QelInfo.h"

namespace {

using namespace Qel;
using Clock = std::chrono::steady_clock;

constexpr int parametersOfEach = 10;
constexpr int levels = 2;

QelInfo makeInfo(int level, const std::string& name) {
    if (level == 0)
        return {"value of " + name, name, true};
    QelInfo info("", name, true);
    for (int i = 0; i < parametersOfEach; ++i) {
        const std::string inner = "parameter_" + std::to_string(i);
        info.text += "plain text before %" + inner + "%, ";
        info.addParameter(makeInfo(level - 1, inner));
    }
    return info;
}

std::string byReplacing(const QelInfo& info) {
    std::string text = info.text;
    for (const auto& [name, parameter] : info.parameters) {
        const std::string placeholder = '%' + name + '%';
        const std::string value = byReplacing(parameter);
        std::string copy = text;
        for (std::size_t at = copy.find(placeholder); at != std::string::npos;
             at = copy.find(placeholder, at + value.size()))
            copy.replace(at, placeholder.size(), value);
        text = copy;
    }
    return text;
}

std::string byFormat(const QelInfo& info) {
    boost::format text(info.text);
    for (const auto& [name, parameter] : info.parameters)
        text % byFormat(parameter);
    return text.str();
}

/// A copy of the info with the placeholders of boost::format: %1%, %2% in parameter order.
QelInfo numbered(const QelInfo& info) {
    QelInfo made(info.text, info.name, true);
    int number = 0;
    for (const auto& [name, parameter] : info.parameters) {
        const std::string placeholder = '%' + name + '%';
        made.text.replace(made.text.find(placeholder), placeholder.size(), '%' + std::to_string(++number) + '%');
        made.addParameter(numbered(parameter));
    }
    return made;
}

template <class Make> double secondsOf(const Make& make) {
    constexpr int times = 50;
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < times; ++i)
        benchmark::DoNotOptimize(make());
    return std::chrono::duration<double>(Clock::now() - start).count() / times;
}

void substitution(benchmark::State& state) {
    const QelInfo info = makeInfo(levels, "top");
    const QelInfo forFormat = numbered(info);
    if (byReplacing(info) != info.toString() || byFormat(forFormat) != info.toString()) {
        state.SkipWithError("the results differ");
        return;
    }
    double own = 0;
    double replacing = 0;
    double formatting = 0;
    for (auto _ : state) {
        const double seconds = secondsOf([&] { return info.toString(); });
        own += seconds;
        replacing += secondsOf([&] { return byReplacing(info); });
        formatting += secondsOf([&] { return byFormat(forFormat); });
        state.SetIterationTime(seconds);
    }
    state.counters["by replacing"] = replacing / own;
    state.counters["by boost::format"] = formatting / own;
    state.counters["characters"] = static_cast<double>(info.toString().size());
}
// A fixed number of iterations, because the manual time is only a small part of each iteration.
BENCHMARK(substitution)->UseManualTime()->Iterations(100)->Unit(benchmark::kMicrosecond);

void lookupByPath(benchmark::State& state) {
    const QelInfo info = makeInfo(levels, "top");
    for (auto _ : state)
        benchmark::DoNotOptimize(info.getParameterByPath("/parameter_7/parameter_3"));
}
BENCHMARK(lookupByPath);

} // namespace

BENCHMARK_MAIN();
