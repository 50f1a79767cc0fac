#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Qel {

/// The names of one message that have no ID. A name has a negative handle as long as it is referenced; handles of
/// unreferenced names are recycled.
class QelNameTable {
public:
    /// The name's handle, with a new reference owned by the caller.
    [[nodiscard]] int acquire(std::string_view name);
    void addReference(int handle) { ++entry(handle).references; }
    void release(int handle);

    /// The name's handle, without a new reference; 0 if it is not in the table.
    [[nodiscard]] int find(std::string_view name) const;
    /// Valid while the handle has a reference.
    [[nodiscard]] std::string_view text(int handle) const { return *entry(handle).text; }

    /// A name's number within one encoding pass. Names are numbered from 0 in the order in which the pass encounters
    /// them.
    struct Number {
        std::uint32_t value;
        bool isNew; ///< this is the name's first use in the pass
    };
    void startNumbering() const noexcept;
    [[nodiscard]] Number number(int handle) const noexcept;

    /// Number of names in use.
    [[nodiscard]] std::size_t size() const noexcept { return m_handles.size(); }

private:
    struct Entry {
        const std::string* text = nullptr; // the key in m_handles
        std::uint32_t references = 0;
        // The name's number in encoding pass `pass`. Stored here so that encoding does not allocate.
        mutable std::uint32_t pass = 0;
        mutable std::uint32_t number = 0;
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const noexcept { return std::hash<std::string_view>()(name); }
    };

    static std::size_t position(int handle) noexcept { return static_cast<std::size_t>(-(handle + 1)); }
    Entry& entry(int handle) { return m_entries[position(handle)]; }
    const Entry& entry(int handle) const { return m_entries[position(handle)]; }

    std::vector<Entry> m_entries;
    std::vector<int> m_free;
    std::unordered_map<std::string, int, Hash, std::equal_to<>> m_handles;
    mutable std::uint32_t m_pass = 0;
    mutable std::uint32_t m_numbered = 0;
};

} // namespace Qel
