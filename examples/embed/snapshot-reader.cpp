// Demonstrates snapshots: a reader continues to see the state of its snapshot while other processes change the cache.
//
//     snapshot-reader CACHE EID
//
// acquires one snapshot of the cache and holds it.  For each line on standard input it prints the environment as seen
// in the held snapshot and in a new one.

#include <cstdio>
#include <iostream>
#include <string>

#include <QelFunctionalityCore/QelFunctionalityCore.h>

namespace {

using Qel::QelEID;
using Qel::QelEnvCache;

std::string describe(const QelEnvCache::EnvValuesList& list, const QelEID& eid) {
    const Qel::QelEnvCSP env = list.getEnv(eid);
    if (!env)
        return "not found";
    Qel::QelOptionalProperty<Qel::QelQoS> memory;
    memory.get().id = "memory_bytes";
    static_cast<void>(env->getVirtualConfig()->getQoS(memory));
    return env->getTitle() + ", memory " + (memory.isSpecified() ? memory->toString() : "unlimited") +
           ", alert level " + std::to_string(static_cast<int>(env->getMaxAlertType()));
}

} // namespace

int main(int argc, char** argv) {
    QelEID eid;
    if (argc != 3 || eid.fromString(argv[2]) != 0) {
        std::fprintf(stderr, "usage: snapshot-reader CACHE EID\n");
        return 2;
    }
    Qel::initEnvCache(argv[1], false);
    const Qel::QelEnvCacheSP cache = Qel::envCache();
    const QelEnvCache::EnvValuesListPtr held = cache ? cache->getEnvList() : nullptr;
    if (!held) {
        std::fprintf(stderr, "snapshot-reader: cannot read the cache %s\n", argv[1]);
        return 4;
    }
    for (std::string line; std::getline(std::cin, line);) {
        const QelEnvCache::EnvValuesListPtr fresh = cache->getEnvList();
        std::cout << "held: " << describe(*held, eid) << '\n'
                  << "fresh: " << (fresh ? describe(*fresh, eid) : "no snapshot available") << std::endl;
    }
    return 0;
}
