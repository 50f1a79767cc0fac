// Compares the bytes of a cache file after each change with a model that shares no code with the library.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "QelCore/QelCacheLogic.h"
#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

constexpr unsigned pageBytes = 4096;
constexpr unsigned headerBytes = 56;

/// Model of the heap: position of each allocation and free block.
class HeapModel {
public:
    explicit HeapModel(unsigned largest) : m_largest(largest) { release(headerBytes, (pageBytes - headerBytes) / 8); }

    /// Returns the offset of the data, or 0.
    unsigned allocate(unsigned bytes) {
        unsigned data = find(bytes);
        while (data == 0 && grow(bytes))
            data = find(bytes);
        return data;
    }
    void deallocate(unsigned data) {
        const auto block = m_used.find(data - 8);
        release(block->first, block->second);
        m_used.erase(block);
    }

    [[nodiscard]] unsigned size() const { return m_size; }
    [[nodiscard]] const std::map<unsigned, unsigned>& used() const { return m_used; }
    [[nodiscard]] const std::map<unsigned, unsigned>& free() const { return m_free; }

private:
    unsigned find(unsigned bytes) {
        const unsigned need = (bytes + 7) / 8 + 1;
        auto best = m_free.end();
        for (auto block = m_free.begin(); block != m_free.end(); ++block) {
            if (block->second < need)
                continue;
            if (4 * (block->second - need) <= block->second) {
                best = block;
                break;
            }
            if (best == m_free.end() || block->second < best->second)
                best = block;
        }
        if (best == m_free.end())
            return 0;
        unsigned offset = best->first;
        unsigned units = best->second;
        if (units > need + 1) {
            best->second -= need;
            offset += 8 * best->second;
            units = need;
        } else {
            m_free.erase(best);
        }
        m_used[offset] = units;
        return offset + 8;
    }

    bool grow(unsigned bytes) {
        const unsigned wanted = m_size + std::max(m_size / 5, 5 * bytes);
        const unsigned size = (wanted + pageBytes - 1) / pageBytes * pageBytes;
        if (size > m_largest)
            return false;
        release(m_size, (size - m_size) / 8);
        m_size = size;
        return true;
    }

    void release(unsigned offset, unsigned units) {
        auto block = m_free.emplace(offset, units).first;
        const auto next = std::next(block);
        if (next != m_free.end() && offset + 8 * units == next->first) {
            block->second += next->second;
            m_free.erase(next);
        }
        if (block == m_free.begin())
            return;
        const auto previous = std::prev(block);
        if (previous->first + 8 * previous->second == offset) {
            previous->second += block->second;
            m_free.erase(block);
        }
    }

    unsigned m_largest;
    unsigned m_size = pageBytes;
    std::map<unsigned, unsigned> m_used; ///< size in units by offset
    std::map<unsigned, unsigned> m_free;
};

/// Model of a cache file that repeats the steps of each change.
class FileModel {
public:
    FileModel(unsigned largestFile, unsigned largestRecord) : m_heap(largestFile), m_largestRecord(largestRecord) {
        m_current = m_heap.allocate(32);
        m_snapshots[m_current] = {1, 1, {}};
    }

    int insert(const QelGUIDBase& id, const std::string& bytes) {
        if (current().entries.contains(id))
            return -5;
        if (!makeWritable(true))
            return -10;
        if (bytes.size() > m_largestRecord)
            return -3;
        const unsigned record = store(bytes);
        if (record == 0)
            return -10;
        current().entries[id] = record;
        --current().reserved;
        return 0;
    }

    int update(const QelGUIDBase& id, const std::string& bytes) {
        if (!current().entries.contains(id))
            return -6;
        if (!makeWritable(false))
            return -10;
        if (bytes.size() > m_largestRecord)
            return -3;
        const unsigned record = store(bytes);
        if (record == 0)
            return -10;
        release(std::exchange(current().entries[id], record));
        return 0;
    }

    int remove(const QelGUIDBase& id) {
        if (!current().entries.contains(id))
            return -6;
        if (!makeWritable(false))
            return -10;
        release(current().entries[id]);
        current().entries.erase(id);
        ++current().reserved;
        return 0;
    }

    /// Acquires the current snapshot for a new list and returns its offset.
    unsigned hold() {
        ++current().references;
        return m_current;
    }
    void drop(unsigned place) {
        Snapshot& snapshot = m_snapshots[place];
        if (--snapshot.references > 0)
            return;
        for (const auto& [id, record] : snapshot.entries)
            release(record);
        m_heap.deallocate(place);
        m_snapshots.erase(place);
    }

    /// Returns a description of the first difference to the bytes of the file, or an empty string.
    [[nodiscard]] std::string differenceTo(const char* file) const {
        Comparison compare(file);
        compareHeader(compare);
        unsigned last = 0;
        for (const auto& [offset, units] : m_heap.free()) {
            compare.word("next free block", last, offset - last);
            compare.word("units of a free block", offset + 4, units);
            last = offset;
        }
        compare.word("next free block", last, 0 - last);
        for (const auto& [offset, units] : m_heap.used())
            compare.word("units of a used block", offset + 4, units);
        for (const auto& [place, snapshot] : m_snapshots) {
            compare.word("references of a snapshot", place, snapshot.references);
            compare.word("count", place + 4, static_cast<unsigned>(snapshot.entries.size()));
            compare.word("reserved", place + 8, snapshot.reserved);
            unsigned entry = place + 12;
            for (const auto& [id, record] : snapshot.entries) {
                compare.bytes("key", entry, &id, sizeof id);
                compare.word("pointer to a record", entry + 16, record - (entry + 16));
                entry += 20;
            }
        }
        for (const auto& [place, record] : m_records) {
            compare.word("references of a record", place, record.references);
            compare.bytes("record", place + 4, record.bytes.data() + 4, record.bytes.size() - 4);
        }
        return compare.difference();
    }

private:
    struct Snapshot {
        unsigned references = 0;
        unsigned reserved = 0;
        std::map<QelGUIDBase, unsigned> entries; ///< record offsets by key
    };
    struct Record {
        unsigned references = 0;
        std::string bytes;
    };

    class Comparison {
    public:
        explicit Comparison(const char* file) : m_file(file) {}
        void bytes(const char* what, unsigned offset, const void* expected, std::size_t size) {
            if (m_difference.empty() && std::memcmp(m_file + offset, expected, size) != 0)
                m_difference = std::string(what) + " at " + std::to_string(offset);
        }
        void word(const char* what, unsigned offset, unsigned expected) {
            bytes(what, offset, &expected, sizeof expected);
        }
        [[nodiscard]] const std::string& difference() const { return m_difference; }

    private:
        const char* m_file;
        std::string m_difference;
    };

    void compareHeader(Comparison& compare) const {
        unsigned allocated = m_heap.size();
        for (const auto& [offset, units] : m_heap.free())
            allocated -= 8 * units;
        const std::pair<unsigned, unsigned> words[] = {{4, 1},
                                                       {8, allocated},
                                                       {12, m_heap.size()},
                                                       {16, headerBytes},
                                                       {20, m_current - 20},
                                                       {28, 0xCACEFE03},
                                                       {32, 56},
                                                       {36, 16},
                                                       {40, 225},
                                                       {44, 92},
                                                       {48, 1},
                                                       {52, 1}};
        for (const auto& [offset, value] : words)
            compare.word("header", offset, value);
    }

    Snapshot& current() { return m_snapshots[m_current]; }

    bool makeWritable(bool forInsertion) {
        const bool isHeld = current().references > 1;
        if (!isHeld && (!forInsertion || current().reserved > 0))
            return true;
        const auto records = static_cast<unsigned>(current().entries.size());
        const unsigned copy = m_heap.allocate(4 + 8 + 20 * (records + (forInsertion ? 1 : 0)));
        if (copy == 0)
            return false;
        m_snapshots[copy] = {1, forInsertion ? 1U : 0U, current().entries};
        const unsigned old = std::exchange(m_current, copy);
        if (isHeld) {
            for (const auto& [id, record] : current().entries)
                ++m_records[record].references;
            --m_snapshots[old].references;
        } else {
            m_heap.deallocate(old);
            m_snapshots.erase(old);
        }
        return true;
    }

    unsigned store(const std::string& bytes) {
        const unsigned record = m_heap.allocate(static_cast<unsigned>(bytes.size()));
        if (record != 0)
            m_records[record] = {1, bytes};
        return record;
    }
    void release(unsigned record) {
        if (--m_records[record].references > 0)
            return;
        m_records.erase(record);
        m_heap.deallocate(record);
    }

    HeapModel m_heap;
    unsigned m_largestRecord;
    unsigned m_current = 0;
    std::map<unsigned, Snapshot> m_snapshots; ///< by data offset
    std::map<unsigned, Record> m_records;
};

/// A read-only mapping of a file.
class FileView {
public:
    FileView(const std::string& path, std::size_t length) : m_length(length) {
        const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        m_memory = mmap(nullptr, length, PROT_READ, MAP_SHARED, descriptor, 0);
        close(descriptor);
        if (m_memory == MAP_FAILED)
            std::abort();
    }
    FileView(const FileView&) = delete;
    FileView& operator=(const FileView&) = delete;
    ~FileView() { munmap(m_memory, m_length); }

    [[nodiscard]] const char* bytes() const { return static_cast<const char*>(m_memory); }

private:
    std::size_t m_length;
    void* m_memory;
};

std::string bytesOf(const TestValue& value) {
    const void* buffer = nullptr;
    unsigned length = 0;
    static_cast<void>(value.getBuffer(&buffer, length, nullptr));
    return {static_cast<const char*>(buffer), length};
}

/// A file size limit that no test reaches.
constexpr unsigned unlimited = 16U << 20U;

/// Parameters of a random sequence of changes.
struct Mix {
    const char* name;
    unsigned keys;  ///< number of distinct keys
    unsigned extra; ///< maximum record size beyond the declared size, in bytes
    unsigned lists; ///< maximum number of live lists
    unsigned steps;
    unsigned largestFile; ///< bytes
    unsigned removals;    ///< percentage of removals
};

void PrintTo(const Mix& mix, std::ostream* out) {
    *out << mix.name;
}

class QelCacheLayoutTest : public testing::TestWithParam<Mix> {};

TEST_P(QelCacheLayoutTest, FileEqualsModelAfterEachRandomChange) {
    if (QelMemoryMappedFile::getMemoryPageSize() != pageBytes)
        GTEST_SKIP() << "page size is not 4096";
    constexpr unsigned largestRecord = 3000;
    const Mix& mix = GetParam();
    const TempFile file;
    // Two attached caches, as in two processes: each changes what the other has cached about the file.
    const TestCachePtr caches[] = {attach(file, mix.largestFile, largestRecord),
                                   attach(file, mix.largestFile, largestRecord)};
    const FileView view(file.path(), mix.largestFile);
    FileModel model(mix.largestFile, largestRecord);
    std::mt19937 random(mix.keys + mix.extra);
    std::vector<std::pair<TestListPtr, unsigned>> lists;
    std::map<int, unsigned> results;
    for (unsigned step = 0; step < mix.steps; ++step) {
        TestCache& cache = *caches[below(random, 8) == 0];
        const QelGUIDBase id(static_cast<long long>(below(random, mix.keys) * 0x0123456789ABCDEFULL), 1);
        const unsigned extra = below(random, 200) == 0 ? largestRecord : below(random, mix.extra + 1);
        const TestValue value(id, step, extra);
        const unsigned kind = below(random, 100);
        int result = 0;
        int expected = 0;
        if (kind < mix.removals) {
            result = cache.remove(id);
            expected = model.remove(id);
        } else if (kind < 80) {
            result = cache.insert(id, value);
            expected = model.insert(id, bytesOf(value));
        } else {
            result = cache.update(id, value);
            expected = model.update(id, bytesOf(value));
        }
        ASSERT_EQ(result, expected) << "step " << step;
        ++results[result];
        if (lists.size() < mix.lists && below(random, 5) == 0) {
            lists.emplace_back(cache.getList(), model.hold());
        } else if (!lists.empty() && below(random, 5) == 0) {
            const unsigned which = below(random, static_cast<unsigned>(lists.size()));
            model.drop(lists[which].second);
            lists.erase(lists.begin() + static_cast<std::ptrdiff_t>(which));
        }
        ASSERT_EQ(model.differenceTo(view.bytes()), "") << "step " << step << ", result " << result;
    }
    for (const int each : {0, -3, -5, -6})
        EXPECT_GT(results[each], 0U) << "result " << each << " did not occur";
    EXPECT_EQ(results[-10] > 0, mix.largestFile < unlimited);
}

INSTANTIATE_TEST_SUITE_P(Mixes, QelCacheLayoutTest,
                         testing::Values(Mix{"FewSmallRecords", 12, 60, 0, 3000, unlimited, 30},
                                         Mix{"FewRecordsOfAllSizes", 40, 2800, 0, 3000, 45056, 25},
                                         Mix{"ManyRecords", 1500, 300, 0, 4000, unlimited, 10},
                                         Mix{"ManyRecordsInAFullFile", 1500, 900, 0, 3000, 400 * 1024, 10},
                                         Mix{"RecordsHeldByReaders", 200, 600, 6, 3000, 128 * 1024, 20}),
                         [](const auto& mix) { return mix.param.name; });

} // namespace
} // namespace Qel
