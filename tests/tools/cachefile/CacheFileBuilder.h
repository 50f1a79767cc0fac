#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

/// Builds a cache file byte by byte, so that the checker is tested against the format instead of the library.
class CacheFileBuilder {
public:
    /// The two halves of a key, in comparison order.
    struct Key {
        std::uint64_t first = 0;
        std::uint64_t second = 0;
    };

    struct Entry {
        Key key;
        std::uint32_t record; ///< offset of its data
    };

    CacheFileBuilder() : m_bytes(56) {}

    /// Adds a free block of `length` bytes, head included.
    std::uint32_t addFree(std::uint32_t length) {
        const std::uint32_t offset = addBlock(length);
        m_free.push_back(offset);
        return offset;
    }

    /// Adds a used block for `dataLength` bytes and returns the offset of its data.
    std::uint32_t addUsed(std::uint32_t dataLength) { return addBlock((dataLength + 7) / 8 * 8 + 8) + 8; }

    /// Adds a record and returns the offset of its data.
    std::uint32_t addRecord(Key key, std::int32_t refCount, std::uint32_t configSize = 0,
                            std::uint32_t vconfigSize = 0) {
        const std::uint32_t data = addUsed(92 + configSize + vconfigSize);
        set(data, refCount);
        putKey(data + 20, key);
        putText(data + 44, "generic");
        set(data + 80, configSize);
        set(data + 84, vconfigSize);
        return data;
    }

    /// Adds a snapshot and returns the offset of its data.
    std::uint32_t addSnapshot(std::int32_t refCount, const std::vector<Entry>& entries, std::uint32_t reserved = 0) {
        const auto count = static_cast<std::uint32_t>(entries.size());
        const std::uint32_t data = addUsed(12 + 20 * (count + reserved));
        set(data, refCount);
        set(data + 4, count);
        set(data + 8, reserved);
        std::uint32_t place = data + 12;
        for (const Entry& entry : entries) {
            putKey(place, entry.key);
            point(place + 16, entry.record);
            place += 20;
        }
        return data;
    }

    /// Adds a free block up to `fileLength`, links the free list and fills in the header.
    void finish(std::uint32_t currentSnapshot, std::uint32_t fileLength = 4096) {
        if (size() < fileLength)
            addFree(fileLength - size());
        std::uint32_t previous = 0;
        std::uint32_t free = 0;
        for (const std::uint32_t offset : m_free) {
            point(previous, offset);
            previous = offset;
            free += word(offset + 4) * 8;
        }
        point(previous, 0);
        set(4, 1);
        set(8, fileLength - free);
        set(12, fileLength);
        set(16, 56);
        point(20, currentSnapshot);
        const std::array<std::uint32_t, 7> constants{0xCACEFE03, 56, 16, 225, 92, 1, 1};
        for (std::uint32_t i = 0; i < constants.size(); ++i)
            set(28 + 4 * i, constants[i]);
    }

    void set(std::uint32_t offset, std::int32_t number) { set(offset, static_cast<std::uint32_t>(number)); }
    void set(std::uint32_t offset, std::uint32_t number) {
        std::memcpy(m_bytes.data() + offset, &number, sizeof number);
    }

    /// Sets the pointer at `field` to `target`.
    void point(std::uint32_t field, std::uint32_t target) { set(field, target - field); }

    void putKey(std::uint32_t offset, Key key) { std::memcpy(m_bytes.data() + offset, &key, sizeof key); }

    void putText(std::uint32_t offset, const std::string& text) {
        std::memcpy(m_bytes.data() + offset, text.data(), text.size());
    }

    void fill(std::uint32_t offset, std::uint32_t length, int byte) {
        std::memset(m_bytes.data() + offset, byte, length);
    }

    [[nodiscard]] std::uint32_t word(std::uint32_t offset) const {
        std::uint32_t number = 0;
        std::memcpy(&number, m_bytes.data() + offset, sizeof number);
        return number;
    }

    void resize(std::uint32_t length) { m_bytes.resize(length); }
    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(m_bytes.size()); }
    [[nodiscard]] std::span<const std::byte> bytes() const { return m_bytes; }

private:
    std::uint32_t addBlock(std::uint32_t length) {
        const std::uint32_t offset = size();
        m_bytes.resize(offset + length);
        set(offset + 4, length / 8);
        return offset;
    }

    std::vector<std::byte> m_bytes;
    std::vector<std::uint32_t> m_free;
};

/// A valid file of 4096 bytes that covers all features: two records, one of them updated while a reader held the
/// previous snapshot, and a free block between used ones.
struct SampleCacheFile : CacheFileBuilder {
    /// The greater key has the smaller first byte, because keys are compared as little-endian integers.
    static constexpr Key firstKey{0x00FF, 7};
    static constexpr Key secondKey{0x0100, 7};

    SampleCacheFile() {
        firstRecord = addRecord(firstKey, 1, 100, 30);
        gap = addFree(64);
        secondRecord = addRecord(secondKey, 2, 40);
        oldRecord = addRecord(firstKey, 1);
        heldSnapshot = addSnapshot(3, {{firstKey, oldRecord}, {secondKey, secondRecord}});
        currentSnapshot = addSnapshot(1, {{firstKey, firstRecord}, {secondKey, secondRecord}}, 1);
        tail = size();
        finish(currentSnapshot);
    }

    /// The offset of an entry of the current snapshot.
    [[nodiscard]] std::uint32_t entry(std::uint32_t index) const { return currentSnapshot + 12 + 20 * index; }

    // Offsets of the data of records and snapshots, and of the heads of free blocks.
    std::uint32_t firstRecord, gap, secondRecord, oldRecord, heldSnapshot, currentSnapshot, tail;
};
