#include <algorithm>
#include <array>
#include <chrono>
#include <iterator>
#include <map>
#include <memory>
#include <ostream>
#include <set>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Environment/QelEnvCacheIterators.h"
#include "QelMessage/QelBinary.h"
#include "qel/cli/Command.h"
#include "qel/cli/Output.h"
#include "qel/cli/SignalGuard.h"
#include "qel/env/CacheAccess.h"
#include "qel/env/EnvSummary.h"
#include "qel/env/EnvWatcher.h"
#include "qel/records/MessageFiles.h"

namespace Qel::Tool {

namespace {

/// ID of the element that contains an environment.
constexpr int environmentElement = 1624;

ExitCode worse(ExitCode a, ExitCode b) {
    return std::max(a, b);
}

ExitCode parseEID(const std::string& string, const Console& console, QelEID& eid) {
    if (eid.fromString(string.c_str()) == 0)
        return ExitCode::success;
    return console.fail(ExitCode::usage,
                        "'" + string + "' is not an EID of the form 00112233-4455-6677-8899-aabbccddeeff");
}

// --- qel env put

/// Inserts or updates an environment.  Another process may insert or remove it between the lookup and the change, in
/// which case the other operation is tried.
int store(QelEnvCache& cache, const QelEnv& env, const char*& done) {
    constexpr int attempts = 100;
    bool exists = cache.getEnvCopy(env.getEID()) != nullptr;
    int result = 0;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        result = exists ? cache.update(env) : cache.insert(env);
        done = exists ? "updated" : "inserted";
        if (result != (exists ? cacheKeyMissing : cacheKeyExists))
            break;
        exists = !exists;
    }
    return result;
}

ExitCode putEnv(QelEnvCache& cache, const std::string& place, const QelMessageIterator& cursor,
                const Console& console) {
    clearErrorMessage();
    boost::shared_ptr<QelEnv> env;
    if (const int result = QelEnv::EnvSPReader()(cursor, env)) {
        const std::string reason = getErrorMessage().empty() ? "" : ": " + getErrorMessage();
        return console.fail(ExitCode::badInput, place + ": reader returned " + std::to_string(result) + reason);
    }
    if (!env->getEID().isValid())
        return console.fail(ExitCode::badInput, place + ": the EID is empty");
    const char* done = "";
    int result = 0;
    {
        const SignalGuard guard;
        result = store(cache, *env, done);
    }
    if (result != 0)
        return console.fail(ExitCode::failed, place + ": " + describeCacheResult(result));
    console.out << done << ' ' << env->getEID().toString() << "  " << showControls(env->getTitle()) << '\n';
    return ExitCode::success;
}

ExitCode putFile(QelEnvCache& cache, const std::string& name, const Console& console) {
    const auto_destroy<QelMessage> message(new QelBinary);
    ExitCode worst = readMessage(name, *message, console);
    if (worst != ExitCode::success)
        return worst;
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    if (cursor->firstChild(environmentElement) != 0)
        return console.fail(ExitCode::badInput, shownName(name) + ": contains no environment");
    int number = 0;
    do {
        const std::string place = shownName(name) + ": environment " + std::to_string(++number);
        worst = worse(worst, putEnv(cache, place, *cursor, console));
    } while (cursor->nextSibling(environmentElement) == 0);
    return worst;
}

ExitCode runPut(const Invocation& invocation, const Console& console) {
    QelEnvCacheSP cache;
    ExitCode worst = openCache(invocation.arguments[0], CacheUse::mayCreate, console, cache);
    if (worst != ExitCode::success)
        return worst;
    for (auto file = invocation.arguments.begin() + 1; file != invocation.arguments.end(); ++file)
        worst = worse(worst, putFile(*cache, *file, console));
    return worst;
}

// --- qel env list

void addListOptions(Options& options) {
    options.add({.name = "parent",
                 .value = "EID",
                 .help = "list only the children of this environment; with --tree, all its descendants"});
    options.add({.name = "tree", .help = "show the hierarchy as a tree"});
    addJsonOption(options);
}

/// Copies the environments of one snapshot and releases it.  Returns false if no snapshot is available.
bool readSnapshot(QelEnvCache& cache, std::vector<EnvSummary>& all) {
    const SignalGuard guard;
    const QelEnvCache::EnvValuesListPtr list = cache.getEnvList();
    if (!list)
        return false;
    using Cache::Iterator::Flat;
    std::for_each(Flat(list->begin()), Flat(list->end()), [&](const QelEnv* env) { all.push_back(summarise(*env)); });
    return true;
}

/// The direct children of an environment.
std::vector<EnvSummary> childrenOf(const QelEID& parent, const std::vector<EnvSummary>& all) {
    std::vector<EnvSummary> children;
    std::copy_if(all.begin(), all.end(), std::back_inserter(children),
                 [&](const EnvSummary& env) { return env.parent == parent; });
    return children;
}

/// The descendants of an environment at any depth, sorted by EID.  Tolerates cycles of parents.
std::vector<EnvSummary> descendantsOf(const QelEID& ancestor, const std::vector<EnvSummary>& all) {
    std::multimap<QelEID, const EnvSummary*> byParent;
    for (const EnvSummary& env : all)
        byParent.emplace(env.parent, &env);
    std::vector<EnvSummary> found;
    std::set<QelEID> seen{ancestor};
    std::vector<QelEID> parents{ancestor};
    while (!parents.empty()) {
        const auto [first, last] = byParent.equal_range(parents.back());
        parents.pop_back();
        for (auto child = first; child != last; ++child) {
            if (!seen.insert(child->second->eid).second)
                continue;
            found.push_back(*child->second);
            parents.push_back(child->second->eid);
        }
    }
    std::sort(found.begin(), found.end(), [](const EnvSummary& a, const EnvSummary& b) { return a.eid < b.eid; });
    return found;
}

ExitCode runList(const Invocation& invocation, const Console& console) {
    QelEID parent;
    const bool hasParent = invocation.has("parent");
    const bool isTree = invocation.has("tree");
    if (hasParent) {
        if (const ExitCode code = parseEID(invocation.string("parent"), console, parent); code != ExitCode::success)
            return code;
    }
    QelEnvCacheSP cache;
    if (const ExitCode code = openCache(invocation.arguments[0], CacheUse::existing, console, cache);
        code != ExitCode::success)
        return code;
    std::vector<EnvSummary> envs;
    if (!readSnapshot(*cache, envs))
        return console.fail(ExitCode::failed, invocation.arguments[0] + ": cannot acquire a snapshot");
    if (hasParent)
        envs = isTree ? descendantsOf(parent, envs) : childrenOf(parent, envs);
    Output(invocation, console)
        .print([&] { return toJson(envs); },
               [&](std::ostream& out) { (isTree ? printAsTree : printAsTable)(out, envs); });
    return ExitCode::success;
}

// --- qel env get

void addGetOptions(Options& options) {
    options.add({.name = "binary", .help = "write the binary form"});
}

/// Writes an environment to a message from which an equal environment can be read.
int writeEnv(const QelEnv& env, QelMessage& message) {
    const std::unique_ptr<QelMessageIterator> cursor(message.rootIterator());
    if (cursor->putObject(env, QelEnv::Writer(), environmentElement) != 0 || cursor->seek(environmentElement) != 0)
        return -1;
    // The writer writes an absent configuration as an empty element, which would be read as an empty configuration.
    constexpr int configElement = 1185;
    constexpr int virtualConfigElement = 1872;
    const auto core = env.getCoreBasic();
    if (core->configSize == 0)
        (void)cursor->deleteChild(configElement);
    if (core->vconfigSize == 0)
        (void)cursor->deleteChild(virtualConfigElement);
    return 0;
}

ExitCode runGet(const Invocation& invocation, const Console& console) {
    const std::string& eidString = invocation.arguments[1];
    QelEID eid;
    if (const ExitCode code = parseEID(eidString, console, eid); code != ExitCode::success)
        return code;
    QelEnvCacheSP cache;
    if (const ExitCode code = openCache(invocation.arguments[0], CacheUse::existing, console, cache);
        code != ExitCode::success)
        return code;
    boost::shared_ptr<QelEnv> env;
    {
        const SignalGuard guard;
        env = cache->getEnvCopy(eid);
    }
    if (!env)
        return console.fail(ExitCode::negative, eidString + ": not in the cache");

    const auto_destroy<QelMessage> message(new QelBinary);
    std::string content;
    clearErrorMessage();
    if (writeEnv(*env, *message) != 0 ||
        (invocation.has("binary") ? message->toBinary(content) : toText(*message, content)) != 0)
        return console.fail(ExitCode::failed, eidString + ": cannot write the message: " + getErrorMessage());
    console.out << content;
    return ExitCode::success;
}

// --- qel env remove

ExitCode runRemove(const Invocation& invocation, const Console& console) {
    std::vector<QelEID> eids;
    for (auto argument = invocation.arguments.begin() + 1; argument != invocation.arguments.end(); ++argument) {
        if (const ExitCode code = parseEID(*argument, console, eids.emplace_back()); code != ExitCode::success)
            return code;
    }
    QelEnvCacheSP cache;
    ExitCode worst = openCache(invocation.arguments[0], CacheUse::existing, console, cache);
    if (worst != ExitCode::success)
        return worst;
    for (const QelEID& eid : eids) {
        bool existed = false;
        int result = 0;
        {
            const SignalGuard guard;
            existed = cache->getEnvCopy(eid) != nullptr;
            result = cache->remove(eid);
        }
        // A missing key means that another process removed the environment after the lookup.
        if (result != 0 && result != cacheKeyMissing)
            worst = console.fail(ExitCode::failed, eid.toString() + ": " + describeCacheResult(result));
        else
            console.out << (existed ? "removed " : "unknown ") << eid.toString() << '\n';
    }
    return worst;
}

// --- qel env watch

void addWatchOptions(Options& options) {
    options.add({.name = "interval",
                 .value = "SECONDS",
                 .kind = OptionKind::real,
                 .byDefault = "1",
                 .help = "polling interval"});
}

const char* wordFor(EnvChange::Kind kind) {
    switch (kind) {
    case EnvChange::Kind::added:
        return "added  ";
    case EnvChange::Kind::changed:
        return "changed";
    case EnvChange::Kind::removed:
        return "removed";
    }
    return "";
}

void printChanges(std::ostream& out, const std::vector<EnvChange>& changes) {
    for (const EnvChange& change : changes) {
        out << wordFor(change.kind) << ' ' << change.eid.toString() << "  " << showControls(change.title);
        if (!change.parts.empty())
            out << "  (" << change.parts << ')';
        out << '\n';
    }
    out.flush();
}

/// Polls the cache until a termination signal arrives or the output fails.
ExitCode watch(QelEnvCache& cache, std::chrono::nanoseconds interval, const Console& console) {
    const EndsWhenInterrupted ending;
    EnvWatcher watcher;
    bool isFirst = true;
    while (console.out) {
        std::vector<EnvChange> changes;
        {
            const SignalGuard guard;
            // The first poll only records the initial state.
            if (!isFirst && guard.waitFor(interval))
                return ExitCode::success;
            const QelEnvCache::EnvValuesListPtr list = cache.getEnvList();
            if (!list)
                return console.fail(ExitCode::failed, cache.getID() + ": cannot acquire a snapshot");
            changes = watcher.poll(*list);
        }
        if (!isFirst)
            printChanges(console.out, changes);
        isFirst = false;
    }
    return ExitCode::failed;
}

ExitCode runWatch(const Invocation& invocation, const Console& console) {
    const double seconds = invocation.real("interval");
    constexpr double longest = 86400;
    if (!(seconds > 0 && seconds <= longest))
        return console.fail(ExitCode::usage, "--interval must be greater than 0 and at most 86400 seconds");
    QelEnvCacheSP cache;
    if (const ExitCode code = openCache(invocation.arguments[0], CacheUse::existing, console, cache);
        code != ExitCode::success)
        return code;
    const std::chrono::duration<double> interval(seconds);
    return watch(*cache, std::chrono::duration_cast<std::chrono::nanoseconds>(interval), console);
}

} // namespace

CommandGroup envCommands() {
    static constexpr std::array commands{
        Command{"put", "CACHE FILE...", "Insert or update the environments in message files; - is standard input",
                nullptr, runPut},
        Command{"list", "CACHE", "List the environments in a cache", addListOptions, runList},
        Command{"get", "CACHE EID", "Print an environment as a message for `qel env put`", addGetOptions, runGet},
        Command{"remove", "CACHE EID...", "Remove environments; unknown ones are not an error", nullptr, runRemove},
        Command{"watch", "CACHE", "Print added, changed and removed environments until interrupted", addWatchOptions,
                runWatch},
    };
    return {"env", "Environments in a cache file", commands};
}

} // namespace Qel::Tool
