// Measures the lookup of a parameter in 20 vocabularies of 500 parameters, compared with three peers: a linear search
// in pugixml's tree; a copy of the message tree searched once; a std::map of all parameters built for a single lookup.
// In each iteration both sides look up the same random parameter; "ratio" is the peer's time divided by ours.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <pugixml.hpp>

#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int vocabularies = 20;
constexpr int parameters = 500;

std::string nameOf(int vocabulary, int parameter) {
    return "counter_" + std::to_string(vocabulary) + "_of_" + std::to_string(parameter);
}

/// The message as text, so that it is parsed like a file.
std::string makeText() {
    std::string text = "<message>";
    for (int vocabulary = 0; vocabulary < vocabularies; ++vocabulary) {
        // Two digits, so that the names are in document order.
        text += "<vocabulary><name>plugin" + std::to_string(10 + vocabulary) +
                "</name><category><id>counter</id></category><parameter><id>vocversion</id><data>1</data></parameter>";
        for (int parameter = 0; parameter < parameters; ++parameter)
            text += "<parameter><id>" + nameOf(vocabulary, parameter) +
                    "</id><category>counter</category><category>shown</category><value_type>1</value_type></parameter>";
        text += "</vocabulary>";
    }
    return text + "</message>";
}

void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::abort();
}

struct Sides {
    Sides() : map(QelMessage::getFactory()->createNew()) {
        const std::string text = makeText();
        require(map.getMessage()->fromTextEx(text.c_str(), 0) == 0, "fromTextEx");
        require(document.load_string(text.c_str()), "load_string");
        iterator.reset(map.read());
        std::mt19937 random(1);
        for (int i = 0; i < 1000; ++i)
            names.push_back(nameOf(std::uniform_int_distribution<>(0, vocabularies - 1)(random),
                                   std::uniform_int_distribution<>(0, parameters - 1)(random)));
        for (const std::string& name : names)
            require(map.isFeatureEnabled(name), "isFeatureEnabled");
    }

    QelVocMap map;
    std::unique_ptr<QelVocMapIterator> iterator;
    pugi::xml_document document;
    std::vector<std::string> names;
};

Sides& sides() {
    static Sides made;
    return made;
}

// ---- ours

bool seek(const std::string& name) {
    return sides().iterator->seekParameter(name) == 0;
}

bool readOnce(const std::string& name) {
    return std::unique_ptr<QelVocIterator>(sides().map.readParameter(name)) != nullptr;
}

// ---- the peers

bool searchDocument(const std::string& name) {
    for (const pugi::xml_node vocabulary : sides().document.child("message").children("vocabulary"))
        for (const pugi::xml_node parameter : vocabulary.children("parameter"))
            if (std::strcmp(parameter.child_value("id"), name.c_str()) == 0)
                return true;
    return false;
}

bool searchCopy(const std::string& name) {
    constexpr bool withEnvelope = false;
    return QelVocMap(sides().map.getMessage()->copy(withEnvelope)).isFeatureEnabled(name);
}

bool searchIndex(const std::string& name) {
    const std::unique_ptr<QelVocMapIterator> at(sides().map.read());
    std::map<std::string, std::unique_ptr<QelMessageIterator>> index;
    std::string id;
    for (int result = at->firstParameter(); result == 0; result = at->nextParameter())
        if (at->getID(id) == 0)
            index.emplace(id, at->newIterator(false));
    return index.contains(name);
}

// ---- comparison

using Side = bool (*)(const std::string& name);

double timeOf(Side side, const std::string& name) {
    const auto from = Clock::now();
    benchmark::DoNotOptimize(side(name));
    return std::chrono::duration<double>(Clock::now() - from).count();
}

void compare(benchmark::State& state, Side ours, Side peer) {
    const std::vector<std::string>& names = sides().names;
    std::size_t asked = 0;
    double oursTotal = 0;
    double peerTotal = 0;
    for (auto _ : state) {
        const std::string& name = names[asked++ % names.size()];
        const double time = timeOf(ours, name);
        peerTotal += timeOf(peer, name);
        oursTotal += time;
        state.SetIterationTime(time);
    }
    state.counters["peer_us"] = benchmark::Counter(peerTotal * 1e6, benchmark::Counter::kAvgIterations);
    state.counters["ratio"] = peerTotal / oursTotal;
}

void seekParameterVersusDocument(benchmark::State& state) {
    compare(state, seek, searchDocument);
}
BENCHMARK(seekParameterVersusDocument)->UseManualTime()->Unit(benchmark::kMicrosecond);

void readParameterVersusCopy(benchmark::State& state) {
    compare(state, readOnce, searchCopy);
}
BENCHMARK(readParameterVersusCopy)->UseManualTime()->Unit(benchmark::kMicrosecond);

void readParameterVersusIndex(benchmark::State& state) {
    compare(state, readOnce, searchIndex);
}
BENCHMARK(readParameterVersusIndex)->UseManualTime()->Unit(benchmark::kMicrosecond);

} // namespace

} // namespace Qel

BENCHMARK_MAIN();
