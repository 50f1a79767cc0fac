#include "qel/env/EnvWatcher.h"

#include <string_view>

namespace Qel::Tool {

namespace {

/// A record without the reference count at its start, which has no meaning outside the file.
std::string_view contentOf(const QelEnvCoreBasic& record) {
    return std::string_view(reinterpret_cast<const char*>(&record), record.length()).substr(sizeof(QelCachedItem));
}

/// Part of a record's content.  `offset` is relative to the record.
std::string_view partOf(std::string_view content, std::size_t offset, std::size_t length) {
    return content.substr(offset - sizeof(QelCachedItem), length);
}

std::uint32_t numberAt(std::string_view content, std::size_t offset) {
    std::uint32_t number = 0;
    partOf(content, offset, sizeof number).copy(reinterpret_cast<char*>(&number), sizeof number);
    return number;
}

/// A list of the parts in which two records of one environment differ.
std::string differencesOf(std::string_view before, std::string_view after) {
    struct Part {
        const char* name;
        std::size_t offset;
        std::size_t length;
    };
    static constexpr Part parts[] = {{"parent", 4, 16}, {"status", 36, 8}, {"type", 44, 16}, {"alerts", 60, 20}};
    constexpr std::size_t configSize = 80;
    constexpr std::size_t vconfigSize = 84;
    constexpr std::size_t config = 88;

    std::string names;
    const auto add = [&](const char* name) { names += (names.empty() ? "" : ", ") + std::string(name); };
    for (const Part& part : parts) {
        if (partOf(before, part.offset, part.length) != partOf(after, part.offset, part.length))
            add(part.name);
    }
    const auto configOf = [&](std::string_view content) {
        return partOf(content, config, numberAt(content, configSize));
    };
    const auto vconfigOf = [&](std::string_view content) {
        return partOf(content, config + numberAt(content, configSize), numberAt(content, vconfigSize));
    };
    if (configOf(before) != configOf(after))
        add("configuration");
    if (vconfigOf(before) != vconfigOf(after))
        add("virtual configuration");
    return names;
}

} // namespace

std::vector<EnvChange> EnvWatcher::poll(const QelEnvCache::EnvValuesList& list) {
    std::vector<EnvChange> changes;
    auto known = m_known.begin();
    const auto forget = [&] {
        changes.push_back({EnvChange::Kind::removed, known->first, known->second.title, ""});
        known = m_known.erase(known);
    };
    // Both sequences are sorted by EID, so a single merge pass finds all differences.
    const QelEnvCache::ValuesList& records = list;
    for (const auto& [eid, record] : records) {
        while (known != m_known.end() && known->first < eid)
            forget();
        const std::string_view content = contentOf(*record);
        const bool isKnown = known != m_known.end() && known->first == eid;
        if (isKnown && known->second.record == content) {
            ++known;
            continue;
        }
        const std::string title = list.getEnv(eid)->getTitle();
        if (isKnown) {
            changes.push_back({EnvChange::Kind::changed, eid, title, differencesOf(known->second.record, content)});
            known->second = {std::string(content), title};
            ++known;
        } else {
            changes.push_back({EnvChange::Kind::added, eid, title, ""});
            m_known.emplace_hint(known, eid, Known{std::string(content), title});
        }
    }
    while (known != m_known.end())
        forget();
    return changes;
}

} // namespace Qel::Tool
