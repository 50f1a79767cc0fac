// Compares the shared cache with LMDB: 1 KB records, random 16-byte keys, files in the same directory.  Like the cache,
// LMDB does not sync to disk (MDB_NOSYNC, MDB_WRITEMAP, MDB_NOMETASYNC).
//
// Prints a table with the time of each operation, the ratio, and whether the required ratio is reached.  The exit code
// is 1 if a ratio is missed at the size that it is required for: n = 10,000, or n = 1,000 for insertion.  Each
// insertion copies the array, so the total cost of insertion is quadratic, and its ratio at 10,000 records is only
// reported.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <lmdb.h>
#include <sys/file.h>
#include <unistd.h>

#include "QelCore/QelCacheLogic.h"
#include "QelCore/QelCacheLogicImpl.h"
#include "QelCore/QelGUIDBase.h"
#include "QelCore/QelMappedMemoryManager.h"
#include "RatioTable.h"

namespace {

using namespace Qel;
using namespace Qel::Bench;
using Clock = std::chrono::steady_clock;

constexpr unsigned recordBytes = 1024;
constexpr unsigned updatesPerSnapshot = 100;
constexpr unsigned largestFile = 0x40000000;
constexpr unsigned sizes[] = {1000, 10000};
constexpr unsigned requiredSize = 10000;
constexpr unsigned requiredSizeOfInsertion = 1000;

void require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    std::abort();
}

// ---- records and keys

struct BenchRecord : QelCachedItem {
    [[nodiscard]] unsigned length() const { return total; }
    std::uint32_t total = recordBytes;
    unsigned char fixed[84] = {};
};

struct BenchValue {
    unsigned char bytes[recordBytes] = {};

    BenchValue() {
        const BenchRecord head;
        std::memcpy(bytes, static_cast<const void*>(&head), sizeof head);
    }
    int getBuffer(const void** buffer, unsigned& length, const void*) const {
        *buffer = bytes;
        length = recordBytes;
        return 0;
    }
};

using Cache = QelCacheLogic<QelGUIDBase, BenchRecord, QelMappedMemoryManager>;
using CachePtr = boost::intrusive_ptr<Cache>;

/// n random keys in random order; reproducible.
std::vector<QelGUIDBase> makeKeys(unsigned n) {
    std::mt19937_64 random(n);
    std::vector<QelGUIDBase> keys;
    for (unsigned i = 0; i < n; ++i) {
        const auto first = static_cast<long long>(random());
        keys.emplace_back(first, static_cast<long long>(random()));
    }
    return keys;
}

/// Reads one byte from the middle of a record.
unsigned touch(const void* record) {
    return static_cast<const unsigned char*>(record)[recordBytes / 2];
}

class Directory {
public:
    Directory() : m_path((std::filesystem::temp_directory_path() / "qel-bench-XXXXXX").string()) {
        require(mkdtemp(m_path.data()) != nullptr, "mkdtemp");
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    ~Directory() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    [[nodiscard]] std::string file() const { return m_path + "/file"; }

private:
    std::string m_path;
};

// ---- the two stores

class Ours {
public:
    explicit Ours(const Directory& directory) : cache(new Cache(directory.file(), recordBytes, 16, largestFile)) {
        require(cache->initialize(true, false) == 0, "initialize");
    }

    void insert(const QelGUIDBase& id, const BenchValue& value) { require(cache->insert(id, value) == 0, "insert"); }
    void update(const QelGUIDBase& id, const BenchValue& value) { require(cache->update(id, value) == 0, "update"); }

    class Snapshot {
    public:
        explicit Snapshot(const Ours& store) : m_list(store.cache->getList()) { require(m_list != nullptr, "getList"); }
        [[nodiscard]] unsigned get(const QelGUIDBase& id) const {
            const BenchRecord* record = m_list->get(id);
            return record ? touch(record) : 0;
        }
        [[nodiscard]] unsigned walk() const {
            unsigned sum = 0;
            for (const auto& record : *m_list)
                sum += touch(&*record.data);
            return sum;
        }

    private:
        Cache::ValuesListPtr m_list;
    };

    CachePtr cache;
};

class Lmdb {
public:
    explicit Lmdb(const Directory& directory) {
        require(mdb_env_create(&m_environment) == 0, "mdb_env_create");
        require(mdb_env_set_mapsize(m_environment, largestFile) == 0, "mdb_env_set_mapsize");
        require(mdb_env_open(m_environment, directory.file().c_str(),
                             MDB_NOSUBDIR | MDB_NOSYNC | MDB_WRITEMAP | MDB_NOMETASYNC, 0600) == 0,
                "mdb_env_open");
        MDB_txn* transaction = begin(0);
        require(mdb_dbi_open(transaction, nullptr, 0, &m_database) == 0, "mdb_dbi_open");
        require(mdb_txn_commit(transaction) == 0, "mdb_txn_commit");
    }
    Lmdb(const Lmdb&) = delete;
    Lmdb& operator=(const Lmdb&) = delete;
    ~Lmdb() { mdb_env_close(m_environment); }

    void insert(const QelGUIDBase& id, const BenchValue& value) { put(id, value); }
    void update(const QelGUIDBase& id, const BenchValue& value) { put(id, value); }

    class Snapshot {
    public:
        explicit Snapshot(const Lmdb& store) : m_store(store), m_transaction(store.begin(MDB_RDONLY)) {}
        Snapshot(const Snapshot&) = delete;
        Snapshot& operator=(const Snapshot&) = delete;
        ~Snapshot() { mdb_txn_abort(m_transaction); }
        [[nodiscard]] unsigned get(const QelGUIDBase& id) const {
            MDB_val key = valueOf(&id, sizeof id);
            MDB_val data;
            require(mdb_get(m_transaction, m_store.m_database, &key, &data) == 0, "mdb_get");
            return touch(data.mv_data);
        }
        [[nodiscard]] unsigned walk() const {
            MDB_cursor* cursor = nullptr;
            require(mdb_cursor_open(m_transaction, m_store.m_database, &cursor) == 0, "mdb_cursor_open");
            MDB_val key;
            MDB_val data;
            unsigned sum = 0;
            while (mdb_cursor_get(cursor, &key, &data, MDB_NEXT) == 0)
                sum += touch(data.mv_data);
            mdb_cursor_close(cursor);
            return sum;
        }

    private:
        const Lmdb& m_store;
        MDB_txn* m_transaction;
    };

private:
    static MDB_val valueOf(const void* bytes, std::size_t size) { return {size, const_cast<void*>(bytes)}; }

    MDB_txn* begin(unsigned flags) const {
        MDB_txn* transaction = nullptr;
        require(mdb_txn_begin(m_environment, nullptr, flags, &transaction) == 0, "mdb_txn_begin");
        return transaction;
    }

    void put(const QelGUIDBase& id, const BenchValue& value) {
        MDB_txn* transaction = begin(0);
        MDB_val key = valueOf(&id, sizeof id);
        MDB_val data = valueOf(value.bytes, sizeof value.bytes);
        require(mdb_put(transaction, m_database, &key, &data, 0) == 0, "mdb_put");
        require(mdb_txn_commit(transaction) == 0, "mdb_txn_commit");
    }

    MDB_env* m_environment = nullptr;
    MDB_dbi m_database = 0;
};

template <class Store> void fill(Store& store, unsigned n) {
    const BenchValue value;
    for (const QelGUIDBase& key : makeKeys(n))
        store.insert(key, value);
}

template <class Store> struct Filled {
    explicit Filled(unsigned n) : store(directory), keys(makeKeys(n)) {
        fill(store, n);
        // Access the records in another order than that of insertion, which is their order in the file.
        std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
    }
    const QelGUIDBase& nextKey() { return keys[position++ % keys.size()]; }

    Directory directory;
    Store store;
    std::vector<QelGUIDBase> keys;
    std::size_t position = 0;
};

double seconds(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

// ---- the operations

template <class Store> void benchGet(benchmark::State& state, unsigned n) {
    Filled<Store> filled(n);
    const typename Store::Snapshot snapshot(filled.store);
    for (auto _ : state)
        benchmark::DoNotOptimize(snapshot.get(filled.nextKey()));
}

template <class Store> void benchWalk(benchmark::State& state, unsigned n) {
    Filled<Store> filled(n);
    const typename Store::Snapshot snapshot(filled.store);
    for (auto _ : state)
        benchmark::DoNotOptimize(snapshot.walk());
}

template <class Store> void benchUpdate(benchmark::State& state, unsigned n) {
    Filled<Store> filled(n);
    const BenchValue value;
    for (auto _ : state)
        filled.store.update(filled.nextKey(), value);
}

template <class Store> void benchUpdateHeld(benchmark::State& state, unsigned n) {
    Filled<Store> filled(n);
    const BenchValue value;
    for (auto _ : state) {
        const typename Store::Snapshot snapshot(filled.store);
        const auto from = Clock::now();
        for (unsigned i = 0; i < updatesPerSnapshot; ++i)
            filled.store.update(filled.nextKey(), value);
        state.SetIterationTime(seconds(from, Clock::now()) / updatesPerSnapshot);
    }
}

template <class Store> void benchInsert(benchmark::State& state, unsigned n) {
    const std::vector<QelGUIDBase> keys = makeKeys(n);
    const BenchValue value;
    for (auto _ : state) {
        const Directory directory;
        Store store(directory);
        const auto from = Clock::now();
        for (const QelGUIDBase& key : keys)
            store.insert(key, value);
        state.SetIterationTime(seconds(from, Clock::now()) / n);
    }
}

template <class Store> void benchAttach(benchmark::State& state, unsigned n) {
    const Directory directory;
    {
        Store store(directory);
        fill(store, n);
    }
    const QelGUIDBase key = makeKeys(n)[n / 2];
    for (auto _ : state) {
        const auto from = Clock::now();
        const Store store(directory);
        const typename Store::Snapshot snapshot(store);
        benchmark::DoNotOptimize(snapshot.get(key));
        state.SetIterationTime(seconds(from, Clock::now()));
    }
}

void benchList(benchmark::State& state, unsigned n) {
    const Filled<Ours> filled(n);
    for (auto _ : state)
        benchmark::DoNotOptimize(Ours::Snapshot(filled.store));
}

void benchFlock(benchmark::State& state, unsigned) {
    const Directory directory;
    const int descriptor = open(directory.file().c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    for (auto _ : state) {
        flock(descriptor, LOCK_EX);
        flock(descriptor, LOCK_UN);
    }
    close(descriptor);
}

// ---- the table

using Body = std::function<void(benchmark::State&, unsigned)>;

enum class Timing { wall, manual };

struct Row {
    const char* operation;
    Body ours;
    Body peer;
    Timing timing;
    Measure measure;
    double required;
    int iterations; ///< 0: determined by the minimum time
    unsigned requiredAt = requiredSize;

    /// The ratio required for n records; 0 if none.
    [[nodiscard]] double requiredFor(unsigned n) const {
        return requiredAt == requiredSize || n == requiredAt ? required : 0;
    }
};

const Row rows[] = {
    {"get on a held snapshot", benchGet<Ours>, benchGet<Lmdb>, Timing::wall, Measure::timesFaster, 4, 0},
    {"walk a whole snapshot", benchWalk<Ours>, benchWalk<Lmdb>, Timing::wall, Measure::timesFaster, 6, 0},
    {"update, no snapshot held", benchUpdate<Ours>, benchUpdate<Lmdb>, Timing::wall, Measure::timesFaster, 1.5, 0},
    {"update, 100 with an old snapshot held", benchUpdateHeld<Ours>, benchUpdateHeld<Lmdb>, Timing::manual,
     Measure::timesFaster, 4, 100},
    {"insert all, one by one", benchInsert<Ours>, benchInsert<Lmdb>, Timing::manual, Measure::timesFaster, 1, 3,
     requiredSizeOfInsertion},
    {"attach, up to the first get", benchAttach<Ours>, benchAttach<Lmdb>, Timing::manual, Measure::timesFaster, 5, 200},
    {"get and release list / flock pair", benchList, benchFlock, Timing::wall, Measure::timesAsLong, 2.5, 0},
};

std::string nameOf(const Row& row, const char* side, unsigned n) {
    return std::string(row.operation) + ", " + side + ", " + std::to_string(n);
}

void registerAll() {
    constexpr int repetitions = 21;
    for (const unsigned n : sizes)
        for (const Row& row : rows)
            for (const auto& [side, body] : {std::pair{"ours", &row.ours}, std::pair{"peer", &row.peer}}) {
                auto* registered = benchmark::RegisterBenchmark(
                    nameOf(row, side, n).c_str(), [body = body, n](benchmark::State& state) { (*body)(state, n); });
                registered->Repetitions(repetitions);
                if (row.timing == Timing::wall)
                    registered->UseRealTime()->MinTime(0.1);
                else
                    registered->UseManualTime()->Iterations(row.iterations);
            }
}

bool printTimes(const RatioTable& table, const BestTimes& times) {
    bool allReached = true;
    for (const unsigned n : sizes)
        for (const Row& row : rows) {
            const double ours = times.of(nameOf(row, "ours", n));
            const double peer = times.of(nameOf(row, "peer", n));
            if (ours > 0 && peer > 0 &&
                !table.printLine(row.operation, std::to_string(n), ours, peer, row.measure, row.requiredFor(n)))
                allReached = allReached && n != row.requiredAt;
        }
    return allReached;
}

/// Prints the size of the file and the total size of the records in the two time columns.
bool printSpace(const RatioTable& table) {
    bool allReached = true;
    for (const unsigned n : sizes) {
        const Filled<Ours> filled(n);
        const auto bytes = static_cast<double>(std::filesystem::file_size(filled.directory.file()));
        if (!table.printLine("bytes of the file / of its records", std::to_string(n), bytes, double{recordBytes} * n,
                             Measure::timesAsLong, 1.35))
            allReached = allReached && n != requiredSize;
    }
    return allReached;
}

} // namespace

int main(int argc, char** argv) {
    BestTimes times(BestTimes::Clock::real, 1e9);
    if (!runBenchmarks(argc, argv, registerAll, times))
        return 2;
    const RatioTable table("operation", "n", "ns", 1);
    const bool fast = printTimes(table, times);
    const bool small = printSpace(table);
    return fast && small ? 0 : 1;
}
