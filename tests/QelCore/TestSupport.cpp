#include "QelCore/TestSupport.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>
#include <sys/mman.h>

namespace Qel {

namespace {

/// Checks the bytes of a cache file; shares no code with the allocator.
class FileWalk {
public:
    explicit FileWalk(std::string bytes) : m_bytes(std::move(bytes)) {}

    std::vector<std::string> run(bool allReferenced) {
        if (m_bytes.size() < 56)
            return {"shorter than a header"};
        walkHeader();
        if (m_findings.empty())
            walkBlocks();
        if (m_findings.empty())
            walkFreeList();
        if (m_findings.empty())
            walkSnapshot(allReferenced);
        return m_findings;
    }

private:
    std::uint32_t word(std::uint32_t offset) const {
        std::uint32_t value;
        std::memcpy(&value, m_bytes.data() + offset, sizeof value);
        return value;
    }
    /// Offset of the target of the pointer at `offset`.
    std::uint32_t target(std::uint32_t offset) const { return offset + word(offset); }

    template <class... Parts> void find(const Parts&... parts) {
        std::ostringstream text;
        (text << ... << parts);
        m_findings.push_back(text.str());
    }
    void expect(const char* what, std::uint32_t offset, std::uint32_t value) {
        if (word(offset) != value)
            find(what, " is ", word(offset), ", expected ", value);
    }

    void walkHeader() {
        expect("units of the sentinel", 4, 1);
        expect("header size of the heap", 16, 56);
        expect("lock word", 24, 0);
        expect("magic", 28, 0xCACEFE03);
        expect("header size", 32, 56);
        expect("key size", 36, 16);
        expect("revision", 40, 225);
        expect("record size", 44, 92);
        expect("generation", 48, 1);
        expect("valid", 52, 1);
        if (word(12) > m_bytes.size())
            find("the heap of ", word(12), " bytes is larger than the file of ", m_bytes.size());
    }

    void walkBlocks() {
        std::uint32_t offset = 56;
        while (offset < word(12)) {
            const std::uint32_t units = word(offset + 4);
            if (units < 2 || units > (word(12) - offset) / 8)
                return find("the block at ", offset, " has ", units, " units");
            m_blocks[offset] = units * 8;
            offset += units * 8;
        }
    }

    void walkFreeList() {
        std::uint32_t freeBytes = 0;
        std::uint32_t previousEnd = 0;
        for (std::uint32_t offset = target(0); offset != 0; offset = target(offset)) {
            if (!m_blocks.contains(offset))
                return find("the free list contains ", offset, ", which is not the start of a block");
            if (offset < previousEnd)
                return find("the free list is not ascending at ", offset);
            if (offset == previousEnd)
                find("adjacent free blocks at ", offset);
            freeBytes += m_blocks[offset];
            previousEnd = offset + m_blocks[offset];
            m_free.insert(offset);
        }
        if (word(12) - freeBytes != word(8))
            find(word(8), " allocated bytes are recorded, actual: ", word(12) - freeBytes);
    }

    bool isUsed(std::uint32_t data) const { return m_blocks.contains(data - 8) && !m_free.contains(data - 8); }

    void walkSnapshot(bool allReferenced) {
        const std::uint32_t snapshot = target(20);
        if (!isUsed(snapshot))
            return find("the snapshot at ", snapshot, " is not a used block");
        const std::uint32_t count = word(snapshot + 4);
        const std::uint32_t slots = count + word(snapshot + 8);
        if (4 + 8 + 20 * slots > m_blocks[snapshot - 8] - 8)
            return find("the snapshot's ", slots, " slots exceed its block");
        if (allReferenced ? word(snapshot) != 1 : word(snapshot) < 1)
            find("the snapshot counts ", word(snapshot), " references");
        std::set<std::uint32_t> referenced{snapshot - 8};
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint32_t at = snapshot + 12 + 20 * i;
            if (i > 0 && !(QelGUIDBase(m_bytes.data() + at - 20) < QelGUIDBase(m_bytes.data() + at)))
                find("key ", i, " is not above the previous one");
            const std::uint32_t record = target(at + 16);
            if (!isUsed(record) || !referenced.insert(record - 8).second)
                return find("record ", i, " at ", record, " is not in a used block of its own");
            if (allReferenced ? word(record) != 1 : word(record) < 1)
                find("record ", i, " counts ", word(record), " references");
            if (word(record + 4) + 92 > m_blocks[record - 8] - 8)
                find("record ", i, " exceeds its block");
        }
        if (allReferenced && referenced.size() + m_free.size() != m_blocks.size())
            find(m_blocks.size() - m_free.size() - referenced.size(), " used blocks are not referenced");
    }

    std::string m_bytes;
    std::map<std::uint32_t, std::uint32_t> m_blocks;
    std::set<std::uint32_t> m_free;
    std::vector<std::string> m_findings;
};

} // namespace

std::vector<std::string> findingsIn(const TempFile& file, bool allReferenced) {
    return FileWalk(file.read()).run(allReferenced);
}

long pagesInMemory(const QelMemoryMappedFile& file, unsigned from, unsigned to) {
    const unsigned page = QelMemoryMappedFile::getMemoryPageSize();
    std::vector<unsigned char> flags((to - from) / page);
    if (mincore(static_cast<char*>(file.getMemory()) + from, to - from, flags.data()))
        throw std::runtime_error("mincore failed");
    return std::count_if(flags.begin(), flags.end(), [](unsigned char inMemory) { return (inMemory & 1U) != 0; });
}

TestCachePtr makeCache(const TempFile& file, unsigned maxStorage, unsigned maxItem) {
    return new TestCache(file.path(), maxItem, testMaxLists, maxStorage);
}

TestCachePtr attach(const TempFile& file, unsigned maxStorage, unsigned maxItem) {
    TestCachePtr cache = makeCache(file, maxStorage, maxItem);
    if (const int code = cache->initialize(true, false)) {
        ADD_FAILURE() << "cannot attach: " << code;
        std::abort();
    }
    return cache;
}

} // namespace Qel
