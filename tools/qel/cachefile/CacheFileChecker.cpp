#include "qel/cachefile/CacheFileChecker.h"

#include <algorithm>
#include <array>
#include <uuid/uuid.h>

#include "qel/cachefile/CacheHeap.h"
#include "qel/cachefile/Hexadecimal.h"

namespace Qel::Tool {

using namespace CacheFormat;

namespace {

/// A snapshot's head, and the block that contains the snapshot.
struct SnapshotView {
    CacheBlock* block;
    std::int32_t refCount;
    std::uint32_t count;
    std::uint32_t reserved;

    [[nodiscard]] std::uint64_t entry(std::uint32_t index) const {
        return block->data() + Snapshot::entries + std::uint64_t{index} * Entry::length;
    }
    [[nodiscard]] std::uint64_t length() const {
        return Snapshot::entries + (std::uint64_t{count} + reserved) * Entry::length;
    }
};

bool fits(const CacheBlock& block, std::uint64_t length) {
    return length <= block.dataLength();
}

/// True if the allocator would return a block of this length for a request of `length` bytes.  For a damaged block only
/// an upper limit of its length is known.
bool isAllocatedFor(const CacheBlock& block, std::uint64_t length) {
    if (block.damaged)
        return fits(block, length);
    return fits(block, length) && block.dataLength() - length < Block::unit + Block::mostSpareBytes;
}

class Checker {
public:
    explicit Checker(std::span<const std::byte> bytes) : m_bytes(bytes), m_heap(m_bytes, m_report.findings) {}

    CacheFileReport run() {
        checkHeaderConstants();
        checkCurrentSnapshot();
        checkHeldSnapshots();
        checkRecordRefCounts();
        checkCounter();
        findUnreferenced();
        summarise();
        return std::move(m_report);
    }

private:
    void checkHeaderConstants();
    void checkCurrentSnapshot();
    void checkHeldSnapshots();
    void checkRecordRefCounts();
    void checkCounter();
    void findUnreferenced();
    void summarise();

    [[nodiscard]] SnapshotView view(CacheBlock& block) const;
    [[nodiscard]] CacheBlock* findCurrentSnapshot();
    [[nodiscard]] bool looksHeld(CacheBlock& block);
    [[nodiscard]] bool keysAscend(const SnapshotView& snapshot) const;
    void checkKeyOrder(const SnapshotView& snapshot);
    void checkEntries(const SnapshotView& snapshot);
    [[nodiscard]] CacheBlock* checkRecordPointer(const SnapshotView& snapshot, std::uint32_t index);
    void checkRecord(const CacheBlock& block);
    void checkRecordType(const CacheBlock& block);
    [[nodiscard]] std::string keyText(std::uint64_t offset) const;

    void report(std::uint64_t offset, FindingKind kind, const std::string& text, bool isExcess = false) {
        m_report.findings.push_back({offset, kind, text, isExcess});
    }

    CacheBytes m_bytes;
    CacheFileReport m_report;
    CacheHeap m_heap;
    bool m_currentKnown = false;    ///< the current snapshot could be read
    bool m_referencesKnown = false; ///< all references to blocks could be resolved
};

void Checker::checkHeaderConstants() {
    for (const HeaderField& field : headerFields) {
        const std::uint32_t value = m_bytes.word(field.offset);
        if (field.role == FieldRole::variable || value == field.value)
            continue;
        if (field.offset == Header::valid && value == 0)
            report(field.offset, FindingKind::headerConstant, "valid is 0: the file is marked as unusable");
        else if (field.offset == Header::magic)
            report(field.offset, FindingKind::headerConstant,
                   "magic is " + hexadecimal(value) + ", not " + hexadecimal(field.value));
        else
            report(field.offset, FindingKind::headerConstant,
                   std::string(field.name) + " is " + std::to_string(value) + ", not " + std::to_string(field.value));
    }
}

SnapshotView Checker::view(CacheBlock& block) const {
    const std::uint64_t data = block.data();
    return {&block, m_bytes.signedWord(data + Snapshot::refCount), m_bytes.word(data + Snapshot::count),
            m_bytes.word(data + Snapshot::reserved)};
}

/// The block of the current snapshot; null if it cannot be read.
CacheBlock* Checker::findCurrentSnapshot() {
    const auto target = m_bytes.target(Header::snapshot);
    if (target && m_heap.isCutOff(*target - Block::head))
        return nullptr;
    CacheBlock* block = target ? m_heap.findByData(*target) : nullptr;
    if (!target)
        report(Header::snapshot, FindingKind::snapshotPointer, "the header's snapshot is a null pointer");
    else if (!block)
        report(Header::snapshot, FindingKind::snapshotPointer,
               "the header's snapshot is at " + std::to_string(*target) + ", where no block's data start");
    else if (block->use == BlockUse::free)
        report(Header::snapshot, FindingKind::snapshotPointer,
               "the header's snapshot is in the free block at " + std::to_string(block->offset));
    else if (m_heap.isComplete(*block))
        return block;
    return nullptr;
}

void Checker::checkCurrentSnapshot() {
    CacheBlock* const block = findCurrentSnapshot();
    if (!block)
        return;
    block->use = BlockUse::snapshot;
    if (!fits(*block, Snapshot::entries)) {
        report(block->offset, FindingKind::snapshotSize, "the current snapshot's block is too small for a snapshot");
        return;
    }
    const SnapshotView snapshot = view(*block);
    if (snapshot.refCount < 1 || snapshot.refCount > greatestRefCount)
        report(block->data() + Snapshot::refCount, FindingKind::snapshotRefCount,
               "the current snapshot's reference count is " + std::to_string(snapshot.refCount));
    if (!isAllocatedFor(*block, snapshot.length())) {
        report(block->data() + Snapshot::count, FindingKind::snapshotSize,
               std::to_string(snapshot.count) + " entries and " + std::to_string(snapshot.reserved) +
                   " free slots do not match the snapshot's block of " + std::to_string(block->length) + " bytes");
        return;
    }
    m_currentKnown = m_referencesKnown = true;
    m_report.snapshotRefCount = snapshot.refCount;
    m_report.records = snapshot.count;
    checkKeyOrder(snapshot);
    checkEntries(snapshot);
    m_report.achievableSize = Header::length;
    for (const CacheBlock& each : m_heap.blocks())
        m_report.achievableSize += each.use == BlockUse::snapshot || each.use == BlockUse::record ? each.length : 0;
}

bool Checker::keysAscend(const SnapshotView& snapshot) const {
    for (std::uint32_t i = 1; i < snapshot.count; ++i) {
        if (!keyPrecedes(m_bytes, snapshot.entry(i - 1), snapshot.entry(i)))
            return false;
    }
    return true;
}

void Checker::checkKeyOrder(const SnapshotView& snapshot) {
    for (std::uint32_t i = 1; i < snapshot.count; ++i) {
        const std::uint64_t entry = snapshot.entry(i);
        if (!keyPrecedes(m_bytes, snapshot.entry(i - 1), entry))
            report(entry, FindingKind::keyOrder,
                   "key " + keyText(entry) + " is not greater than " + keyText(snapshot.entry(i - 1)));
    }
}

/// Checks the entries of a snapshot, which must fit its block, and each record that has not been checked yet.
void Checker::checkEntries(const SnapshotView& snapshot) {
    for (std::uint32_t i = 0; i < snapshot.count; ++i) {
        CacheBlock* const record = checkRecordPointer(snapshot, i);
        if (!record) {
            m_referencesKnown = false;
            continue;
        }
        const bool isNew = record->listings == 0;
        record->use = BlockUse::record;
        record->lastListing = snapshot.block->offset;
        ++record->listings;
        if (!m_heap.isComplete(*record))
            continue;
        if (isNew)
            checkRecord(*record);
        const std::uint64_t key = snapshot.entry(i);
        if (fits(*record, Record::declaredLength) &&
            !std::ranges::equal(m_bytes.at(key, keyLength), m_bytes.at(record->data() + Record::eid, keyLength)))
            report(record->data() + Record::eid, FindingKind::recordKey,
                   "the record's key is " + keyText(record->data() + Record::eid) + ", but the snapshot at " +
                       std::to_string(snapshot.block->offset) + " lists it as " + keyText(key));
    }
}

/// The block of an entry's record.  Reports a bad pointer and returns null; a pointer beyond the end of a truncated
/// file is not reported.
CacheBlock* Checker::checkRecordPointer(const SnapshotView& snapshot, std::uint32_t index) {
    const std::uint64_t field = snapshot.entry(index) + Entry::record;
    const auto fail = [&](const std::string& text) -> CacheBlock* {
        report(field, FindingKind::recordPointer, "the record of " + keyText(snapshot.entry(index)) + text);
        return nullptr;
    };
    const auto target = m_bytes.target(field);
    if (!target)
        return fail(" is a null pointer");
    if (m_heap.isCutOff(*target - Block::head))
        return nullptr;
    CacheBlock* const block = m_heap.findByData(*target);
    if (!block)
        return fail(" is at " + std::to_string(*target) + ", where no block's data start");
    const std::string place = "the block at " + std::to_string(block->offset);
    if (block->use == BlockUse::free)
        return fail(" is in " + place + ", which is free");
    if (block->use == BlockUse::snapshot)
        return fail(" is in " + place + ", which holds a snapshot");
    if (block->listings != 0 && block->lastListing == snapshot.block->offset)
        return fail(" is in " + place + ", which another entry uses");
    return block;
}

void Checker::checkRecord(const CacheBlock& block) {
    if (!fits(block, Record::declaredLength)) {
        report(block.offset, FindingKind::recordLength,
               "block of " + std::to_string(block.length) + " bytes is too small for a record");
        return;
    }
    const std::uint32_t configSize = m_bytes.word(block.data() + Record::configSize);
    const std::uint32_t vconfigSize = m_bytes.word(block.data() + Record::vconfigSize);
    if (!isAllocatedFor(block, std::uint64_t{Record::declaredLength} + configSize + vconfigSize))
        report(block.data() + Record::configSize, FindingKind::recordLength,
               "configurations of " + std::to_string(configSize) + " and " + std::to_string(vconfigSize) +
                   " bytes do not match the record's block of " + std::to_string(block.length) + " bytes");
    checkRecordType(block);
}

/// The type is a string padded with zeros.  All zeros encode an unspecified type; a specified empty type has 1 in its
/// second byte.
void Checker::checkRecordType(const CacheBlock& block) {
    const std::uint64_t offset = block.data() + Record::type;
    const auto type = m_bytes.at(offset, Record::typeLength);
    auto rest = std::find(type.begin(), type.end(), std::byte{0});
    if (rest == type.end()) {
        report(offset, FindingKind::recordType, "the record's type is not null-terminated");
        return;
    }
    const bool isSpecifiedEmpty = rest == type.begin() && type[1] == std::byte{1};
    rest += isSpecifiedEmpty ? 2 : 0;
    if (std::any_of(rest, type.end(), [](std::byte byte) { return byte != std::byte{0}; }))
        report(offset, FindingKind::recordType, "the record's type is not padded with zeros");
}

/// True if a used block is a valid snapshot with readers.  A record is not mistaken for one: the bytes of its parent's
/// key, read as the counts of a snapshot, would have to match the block's length.
bool Checker::looksHeld(CacheBlock& block) {
    if (block.use != BlockUse::unknown || block.damaged || !m_heap.isComplete(block) || !fits(block, Snapshot::entries))
        return false;
    const SnapshotView snapshot = view(block);
    if (snapshot.refCount < 1 || snapshot.refCount > greatestRefCount || !isAllocatedFor(block, snapshot.length()) ||
        !keysAscend(snapshot))
        return false;
    for (std::uint32_t i = 0; i < snapshot.count; ++i) {
        const auto target = m_bytes.target(snapshot.entry(i) + Entry::record);
        const CacheBlock* const record = target ? m_heap.findByData(*target) : nullptr;
        if (!record || record->use == BlockUse::free || record->use == BlockUse::snapshot)
            return false;
    }
    return true;
}

void Checker::checkHeldSnapshots() {
    std::vector<CacheBlock*> held;
    for (CacheBlock& block : m_heap.blocks()) {
        if (looksHeld(block))
            held.push_back(&block);
    }
    for (CacheBlock* const block : held)
        block->use = BlockUse::snapshot;
    for (CacheBlock* const block : held) {
        const SnapshotView snapshot = view(*block);
        m_report.heldSnapshots.push_back({block->offset, snapshot.refCount, snapshot.count});
        checkEntries(snapshot);
    }
}

void Checker::checkRecordRefCounts() {
    if (!m_currentKnown)
        return;
    for (const CacheBlock& block : m_heap.blocks()) {
        if (block.use != BlockUse::record || !m_heap.isComplete(block) || !fits(block, Record::declaredLength))
            continue;
        const std::int32_t refCount = m_bytes.signedWord(block.data() + Record::refCount);
        // With damaged blocks, held snapshots may be missed, so only a count that is too low is certainly wrong.
        if (m_heap.isCertain() ? refCount != std::int64_t{block.listings} : refCount < std::int64_t{block.listings})
            report(block.data() + Record::refCount, FindingKind::recordRefCount,
                   "the record's reference count is " + std::to_string(refCount) +
                       ", but the number of snapshots that list it is " + std::to_string(block.listings),
                   refCount > std::int64_t{block.listings} && refCount <= greatestRefCount);
    }
}

void Checker::checkCounter() {
    if (!m_heap.isCertain())
        return;
    std::uint64_t used = Header::length;
    for (const CacheBlock& block : m_heap.blocks())
        used += block.use == BlockUse::free ? 0 : block.length;
    const std::uint32_t counted = m_bytes.word(Header::ttlAllocated);
    if (counted == 0)
        report(Header::ttlAllocated, FindingKind::unformatted,
               "ttlAllocated is 0: the next process to attach would format the file again");
    else if (counted != used)
        report(Header::ttlAllocated, FindingKind::counter,
               "ttlAllocated is " + std::to_string(counted) + ", but " + std::to_string(used) + " bytes are in use",
               counted > used);
}

void Checker::findUnreferenced() {
    if (!m_heap.isCertain() || !m_referencesKnown)
        return;
    for (const CacheBlock& block : m_heap.blocks()) {
        if (block.use == BlockUse::unknown)
            report(block.offset, FindingKind::unreferenced,
                   "unreferenced block at " + std::to_string(block.offset) + ", " + std::to_string(block.length) +
                       " bytes");
    }
}

void Checker::summarise() {
    m_report.blocks = static_cast<std::uint32_t>(m_heap.blocks().size());
    for (const CacheBlock& block : m_heap.blocks()) {
        if (block.use == BlockUse::free) {
            ++m_report.freeBlocks;
            m_report.freeBytes += block.length;
            m_report.largestFreeBlock = std::max<std::uint64_t>(m_report.largestFreeBlock, block.length);
        }
    }
    std::stable_sort(m_report.findings.begin(), m_report.findings.end(),
                     [](const Finding& a, const Finding& b) { return a.offset < b.offset; });
}

std::string Checker::keyText(std::uint64_t offset) const {
    std::array<unsigned char, keyLength> bytes{};
    std::memcpy(bytes.data(), m_bytes.at(offset, keyLength).data(), bytes.size());
    constexpr std::size_t textLength = 36;
    std::array<char, textLength + 1> text{};
    uuid_unparse_lower(bytes.data(), text.data());
    return text.data();
}

} // namespace

CacheFileKind identifyCacheFile(std::span<const std::byte> bytes) {
    const CacheBytes file(bytes);
    const auto header = bytes.first(std::min<std::size_t>(bytes.size(), Header::length));
    if (std::all_of(header.begin(), header.end(), [](std::byte byte) { return byte == std::byte{0}; }))
        return CacheFileKind::unformatted;
    if (bytes.size() < Header::length)
        return CacheFileKind::foreign;
    int right = 0;
    int wrong = 0;
    for (const HeaderField& field : headerFields) {
        if (field.role == FieldRole::signature)
            ++(file.word(field.offset) == field.value ? right : wrong);
    }
    return right >= wrong ? CacheFileKind::cache : CacheFileKind::foreign;
}

CacheFileReport checkCacheFile(std::span<const std::byte> bytes) {
    if (bytes.size() < Header::length) {
        CacheFileReport report;
        report.findings.push_back({0, FindingKind::fileLength, "the file is shorter than a header"});
        return report;
    }
    return Checker(bytes).run();
}

} // namespace Qel::Tool
