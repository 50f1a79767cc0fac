#include "CacheWorker.h"

#include <istream>
#include <ostream>
#include <vector>

#include "support/ChildProcess.h"

namespace Qel::TestSupport {

namespace {

const std::string ok = "ok";

int apply(QelEnvCache& cache, StressScript::Kind kind, const StressState& state) {
    switch (kind) {
    case StressScript::Kind::insert:
        return cache.insert(stressEnv(state));
    case StressScript::Kind::update:
        return cache.update(stressEnv(state));
    case StressScript::Kind::remove:
        break;
    }
    return cache.remove(stressEID(state.number));
}

} // namespace

void CacheWorker::run(std::istream& commands, std::ostream& answers) {
    std::string line;
    while (std::getline(commands, line)) {
        std::istringstream command(line);
        answers << perform(command) << std::endl;
        unsigned seed;
        if (std::istringstream again(line); again >> line && line == "churn" && again >> seed)
            churn(seed);
    }
}

std::string CacheWorker::perform(std::istringstream& command) {
    std::string verb;
    command >> verb;
    if (verb == "bits")
        return std::to_string(8 * sizeof(void*));
    if (!envCache())
        return "no cache";
    if (verb == "look")
        return look();
    if (verb == "hold" || verb == "see" || verb == "again" || verb == "drop") {
        std::string id;
        command >> id;
        if (verb == "hold")
            return hold(id);
        const auto held = m_held.find(id);
        if (held == m_held.end())
            return "none";
        if (verb == "see") {
            const auto states = statesOf(*held->second.list);
            return states ? textOf(*states) : "torn";
        }
        if (verb == "again")
            return bytesOf(*held->second.list) == held->second.bytes ? "same" : "changed";
        m_held.erase(held);
        return ok;
    }
    unsigned first = 0;
    unsigned second = 0;
    unsigned third = 0;
    command >> first >> second >> third;
    if (verb == "insert")
        return change(StressScript::Kind::insert, {first, second, third});
    if (verb == "update")
        return change(StressScript::Kind::update, {first, second, third});
    if (verb == "remove")
        return change(StressScript::Kind::remove, {first, 0, 0});
    if (verb == "get")
        return get(first);
    if (verb == "write")
        return write(first, second);
    if (verb == "read")
        return read(first);
    if (verb == "fork")
        return forkAndWrite(first, second);
    if (verb == "fill")
        return fill(first);
    return verb == "churn" ? ok : "unknown command";
}

std::string CacheWorker::change(StressScript::Kind kind, const StressState& state) const {
    return std::to_string(apply(*envCache(), kind, state));
}

std::string CacheWorker::get(unsigned number) const {
    const boost::shared_ptr<QelEnv> env = envCache()->getEnvCopy(stressEID(number));
    if (!env)
        return "none";
    const auto state = stateOf(*env->getCoreBasic());
    return state && state->number == number ? textOf({{env->getEID(), *state}}) : "torn";
}

std::string CacheWorker::hold(const std::string& id) {
    const QelEnvCache::EnvValuesListPtr list = envCache()->getEnvList();
    if (!list)
        return "none";
    m_held[id] = {list, bytesOf(*list)};
    return ok;
}

std::string CacheWorker::write(unsigned seed, unsigned steps) const {
    const QelEnvCacheSP cache = envCache();
    StressScript script(seed);
    for (unsigned step = 0; step < steps; ++step) {
        const auto [kind, state] = script.next();
        if (const int code = apply(*cache, kind, state))
            return "step " + std::to_string(step) + " returned " + std::to_string(code);
        if (step % 50 != 0 && step + 1 != steps)
            continue;
        const auto list = cache->getEnvList();
        const auto states = list ? statesOf(*list) : std::nullopt;
        if (!states)
            return "torn list at step " + std::to_string(step);
        if (script.own(*states) != script.model())
            return "lost changes at step " + std::to_string(step);
    }
    return ok;
}

std::string CacheWorker::read(unsigned rounds) const {
    constexpr unsigned roundsHeld = 7;
    const QelEnvCacheSP cache = envCache();
    std::map<unsigned, unsigned> versions; // last seen, by number
    Held old;
    for (unsigned round = 0; round < rounds; ++round) {
        const auto list = cache->getEnvList();
        const auto states = list ? statesOf(*list) : std::nullopt;
        if (!states)
            return "torn list in round " + std::to_string(round);
        for (const auto& [eid, state] : *states) {
            unsigned& version = versions[state.number];
            if (state.version < version)
                return "an older state after a newer one in round " + std::to_string(round);
            version = state.version;
        }
        if (old.list && bytesOf(*old.list) != old.bytes)
            return "a held list changed in round " + std::to_string(round);
        if (round % roundsHeld == 0)
            old = {list, bytesOf(*list)};
    }
    return ok;
}

std::string CacheWorker::forkAndWrite(unsigned seed, unsigned steps) {
    const QelEnvCacheSP inherited = envCache();
    ChildProcess child([&] {
        if (inherited->isAccessible())
            return 1;
        for (const auto& [id, held] : m_held)
            if (held.list->isAccessible() || held.list->size() != 0 || held.list->getEnv(stressEID(0)))
                return 2;
        m_held.clear();
        const QelEnvCacheSP own = envCache();
        if (!own || own == inherited)
            return 3;
        return write(seed, steps) == ok ? 0 : 4;
    });
    const std::string result = write(seed + 1, steps);
    if (const int code = child.wait())
        return "the child returned " + std::to_string(code);
    if (envCache() != inherited)
        return "the parent lost its cache";
    for (const auto& [id, held] : m_held)
        if (bytesOf(*held.list) != held.bytes)
            return "a list of the parent changed";
    return result;
}

std::string CacheWorker::fill(unsigned count) const {
    for (unsigned i = 0; i < count; ++i)
        if (const int code = envCache()->insert(stressEnv({100000 + i, 1, 4})))
            return "environment " + std::to_string(i) + " returned " + std::to_string(code);
    return ok;
}

std::string CacheWorker::look() const {
    const auto list = envCache()->getEnvList();
    if (!list)
        return "none";
    const QelEnvCache::ValuesList& records = *list;
    for (const auto* record = records.begin(); record != records.end(); ++record)
        if (!record->data || !stateOf(*record->data))
            return "torn";
    return ok + ' ' + std::to_string(records.size());
}

void CacheWorker::churn(unsigned seed) const {
    // Created in advance, so that nearly all of the time is spent on changing the file.
    std::vector<QelEnv> environments;
    for (unsigned i = 0; i < 40; ++i) {
        QelEnv env = stressEnv({seed * 1000 + i, i, i * 50});
        env.syncBuffer(); // copies are made from the record
        environments.push_back(env);
    }
    const QelEnvCacheSP cache = envCache();
    for (unsigned round = 0;; ++round) {
        // While a list is held, changes go to a copy of the array (copy-on-write).  Exercise both ways.
        const auto list = round % 4 == 0 ? cache->getEnvList() : nullptr;
        for (const QelEnv& env : environments)
            if (cache->insert(env) != 0 && round % 3 == 0)
                static_cast<void>(cache->remove(env.getEID()));
    }
}

} // namespace Qel::TestSupport
