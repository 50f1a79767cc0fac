// Two reader and two writer processes use one cache concurrently.
//
//     concurrent-use CACHE
//
// Each reader acquires one snapshot and repeatedly reads all its environments, without a lock, until both writers have
// finished.  Each writer makes 1,000 changes to its own environment under the file lock.  The program prints the work
// of each process and how often the process blocked (voluntary context switches).  The exit code is 4 if a held
// snapshot changed or a change was lost.

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <vector>

#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QelFunctionalityCore/QelFunctionalityCore.h>

namespace {

constexpr int readers = 2;
constexpr int writers = 2;
constexpr int changesOfWriter = 1000;

struct Figures {
    long rounds = 0; ///< of a reader: number of complete passes over its snapshot
    long waits = 0;  ///< voluntary context switches during that time
};

/// Memory shared by all processes.
struct Shared {
    std::atomic<bool> writersFinished{false};
    Figures reader[readers];
    Figures writer[writers];
};

long waitsOfProcess() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_nvcsw;
}

Qel::QelEID idOf(int writer) {
    return {0x3f6c1a2e0b574c1d, writer};
}

int numberOf(const Qel::QelEnv& env) {
    return env.getStatus().state;
}

/// Reads all environments of a snapshot and returns a checksum of them.
long long read(const Qel::QelEnvCache::EnvValuesList& snapshot) {
    long long sum = 0;
    for (auto at = snapshot.begin(); !(at == snapshot.end()); ++at)
        sum = sum * 31 + numberOf(*at.operator->()) + static_cast<long long>(at->getTitle().size());
    return sum;
}

int runReader(Figures& figures, const std::atomic<bool>& finished, int ready) {
    const Qel::QelEnvCacheSP cache = Qel::envCache();
    const auto snapshot = cache ? cache->getEnvList() : nullptr;
    if (!snapshot)
        return 4;
    const long long before = read(*snapshot);
    if (write(ready, "r", 1) != 1)
        return 4;
    const long waits = waitsOfProcess();
    do {
        if (read(*snapshot) != before)
            return 4;
        ++figures.rounds;
    } while (!finished);
    figures.waits = waitsOfProcess() - waits;
    return 0;
}

Qel::QelEnv environment(int writer, int number) {
    Qel::QelEnv env;
    env.getCoreBasic()->eid = idOf(writer);
    env.setStatus({number, 0});
    return env;
}

int runWriter(Figures& figures, int writer) {
    const Qel::QelEnvCacheSP cache = Qel::envCache();
    if (!cache)
        return 4;
    const long waits = waitsOfProcess();
    for (int number = 1; number <= changesOfWriter; ++number)
        if (cache->update(environment(writer, number)) != 0)
            return 4;
    figures.waits = waitsOfProcess() - waits;
    return 0;
}

pid_t start(const std::function<int()>& run) {
    const pid_t child = fork();
    if (child < 0) {
        std::perror("concurrent-use: fork");
        std::_Exit(4);
    }
    if (child == 0)
        std::_Exit(run());
    return child;
}

/// Waits for all children.  Returns true if all of them succeeded.
bool succeeded(const std::vector<pid_t>& children) {
    bool all = true;
    for (const pid_t child : children) {
        int status = 0;
        all = waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0 && all;
    }
    return all;
}

/// Inserts the environments that the writers will change.
bool insertEnvironments() {
    const Qel::QelEnvCacheSP cache = Qel::envCache();
    if (!cache)
        return false;
    for (int writer = 0; writer < writers; ++writer)
        if (cache->insert(environment(writer, 0)) != 0 && cache->update(environment(writer, 0)) != 0)
            return false;
    return true;
}

/// True if the cache contains the last change of each writer.
bool hasLastChanges() {
    const Qel::QelEnvCacheSP cache = Qel::envCache();
    const auto snapshot = cache ? cache->getEnvList() : nullptr;
    for (int writer = 0; snapshot && writer < writers; ++writer) {
        const Qel::QelEnvCSP env = snapshot->getEnv(idOf(writer));
        if (!env || numberOf(*env) != changesOfWriter)
            return false;
    }
    return snapshot != nullptr;
}

int fail(const char* reason) {
    std::fprintf(stderr, "concurrent-use: %s\n", reason);
    return 4;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: concurrent-use CACHE\n");
        return 2;
    }
    Qel::initEnvCache(argv[1], false);
    void* const memory = mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    int ready[2];
    if (memory == MAP_FAILED || pipe(ready) != 0)
        return fail("cannot create shared memory or a pipe");
    auto& shared = *new (memory) Shared;
    if (!insertEnvironments())
        return fail("cannot write to the cache");

    std::vector<pid_t> readerProcesses;
    for (Figures& figures : shared.reader)
        readerProcesses.push_back(start([&] { return runReader(figures, shared.writersFinished, ready[1]); }));
    close(ready[1]);
    char each = 0;
    for (int count = 0; count < readers; ++count)
        if (::read(ready[0], &each, 1) != 1)
            return fail("a reader cannot acquire a snapshot");
    std::vector<pid_t> writerProcesses;
    for (int writer = 0; writer < writers; ++writer)
        writerProcesses.push_back(start([&, writer] { return runWriter(shared.writer[writer], writer); }));
    const bool isWritten = succeeded(writerProcesses);
    shared.writersFinished = true;
    const bool isRead = succeeded(readerProcesses);

    for (const Figures& figures : shared.reader)
        std::printf("reader: its snapshot, read %ld times, never changed; it waited %ld times\n", figures.rounds,
                    figures.waits);
    for (const Figures& figures : shared.writer)
        std::printf("writer: %d changes; it waited %ld times\n", changesOfWriter, figures.waits);
    if (!isWritten)
        return fail("a writer failed");
    if (!isRead)
        return fail("a snapshot changed while it was held");
    return hasLastChanges() ? 0 : fail("a change was lost");
}
