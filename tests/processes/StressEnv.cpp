#include "StressEnv.h"

#include <cstring>

namespace Qel::TestSupport {

namespace {

constexpr unsigned environmentsOfScript = 40;

QelStringOptionalProperty letters(const StressState& state, unsigned start) {
    std::string text(state.size, ' ');
    for (unsigned i = 0; i < state.size; ++i)
        text[i] = static_cast<char>('a' + (start + state.number + 31 * state.version + 7 * i) % 26);
    QelStringOptionalProperty property;
    property = text;
    return property;
}

/// The bytes of a record after its reference count.
std::string bytesOf(const QelEnvCoreBasic& record) {
    constexpr unsigned count = sizeof(QelCachedItem);
    return {reinterpret_cast<const char*>(&record) + count, record.length() - count};
}

} // namespace

QelEID stressEID(unsigned number) {
    constexpr unsigned long long spread = 0x9E3779B97F4A7C15; // odd, so that distinct numbers have distinct EIDs
    return {static_cast<long long>((number + 1) * spread), static_cast<long long>(number)};
}

QelEnv stressEnv(const StressState& state) {
    QelEnv env;
    env.getCoreBasic()->eid = stressEID(state.number);
    env.getCoreBasic()->type = "stress";
    env.setParentEID(stressEID(state.number / 10));
    env.setStatus({static_cast<int>(state.version), static_cast<int>(state.size)});
    env.getConfig()->setName(letters(state, 0));
    env.getVirtualConfig()->setDescription(letters(state, 13));
    return env;
}

std::optional<StressState> stateOf(const QelEnvCoreBasic& record) {
    unsigned long long spread;
    unsigned long long number;
    record.eid.getData(spread, number);
    const StressState state{static_cast<unsigned>(number), static_cast<unsigned>(record.status.state),
                            static_cast<unsigned>(record.status.transition)};
    constexpr unsigned sizeLimit = 0x1000000; // greater than any record that the cache accepts
    if (state.size > sizeLimit)
        return std::nullopt;
    const QelEnv whole = stressEnv(state);
    const void* buffer = nullptr;
    unsigned length = 0;
    if (whole.getBuffer(&buffer, length, nullptr) != 0 || length != record.length())
        return std::nullopt;
    return bytesOf(record) == bytesOf(*whole.getCoreBasic()) ? std::optional(state) : std::nullopt;
}

std::optional<StressStates> statesOf(const QelEnvCache::EnvValuesList& list) {
    const QelEnvCache::ValuesList& records = list;
    StressStates states;
    for (const auto* record = records.begin(); record != records.end(); ++record) {
        const std::optional<StressState> state = stateOf(*record->data);
        if (!state || record->key != record->data->eid || (!states.empty() && record->key <= states.rbegin()->first))
            return std::nullopt;
        states.emplace_hint(states.end(), record->key, *state);
    }
    return states;
}

std::string bytesOf(const QelEnvCache::EnvValuesList& list) {
    const QelEnvCache::ValuesList& records = list;
    std::string bytes;
    for (const auto* record = records.begin(); record != records.end(); ++record)
        bytes += bytesOf(*record->data);
    return bytes;
}

std::string textOf(const StressStates& states) {
    std::string text;
    for (const auto& [eid, state] : states)
        text += (text.empty() ? "" : " ") + std::to_string(state.number) + ':' + std::to_string(state.version) + ':' +
                std::to_string(state.size);
    return text;
}

StressScript::Change StressScript::next() {
    const unsigned number = m_first + below(m_random, environmentsOfScript);
    const bool remove = below(m_random, 4) == 0;
    const StressState state{number, ++m_version, below(m_random, 300)};
    const auto found = m_model.find(stressEID(number));
    if (found == m_model.end()) {
        m_model.emplace(stressEID(number), state);
        return {Kind::insert, state};
    }
    if (remove) {
        m_model.erase(found);
        return {Kind::remove, state};
    }
    found->second = state;
    return {Kind::update, state};
}

void StressScript::addAfter(unsigned seed, unsigned steps, StressStates& states) {
    StressScript script(seed);
    for (unsigned step = 0; step < steps; ++step)
        script.next();
    states.insert(script.m_model.begin(), script.m_model.end());
}

StressStates StressScript::own(const StressStates& all) const {
    StressStates own;
    for (const auto& [eid, state] : all)
        if (state.number >= m_first && state.number < m_first + environmentsOfScript)
            own.emplace(eid, state);
    return own;
}

} // namespace Qel::TestSupport
