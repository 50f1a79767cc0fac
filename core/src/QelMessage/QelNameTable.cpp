#include "QelMessage/QelNameTable.h"

namespace Qel {

int QelNameTable::acquire(std::string_view name) {
    if (const int known = find(name)) {
        addReference(known);
        return known;
    }
    if (m_free.empty()) {
        m_entries.emplace_back();
        // Capacity for every handle, so that release() does not allocate.
        m_free.reserve(m_entries.capacity());
        m_free.push_back(-static_cast<int>(m_entries.size()));
    }
    const int handle = m_free.back();
    const auto inserted = m_handles.emplace(name, handle).first;
    m_free.pop_back();
    entry(handle) = Entry{&inserted->first, 1, 0, 0};
    return handle;
}

void QelNameTable::release(int handle) {
    Entry& released = entry(handle);
    if (--released.references != 0)
        return;
    m_handles.erase(m_handles.find(std::string_view(*released.text)));
    released.text = nullptr;
    m_free.push_back(handle);
}

int QelNameTable::find(std::string_view name) const {
    const auto found = m_handles.find(name);
    return found == m_handles.end() ? 0 : found->second;
}

void QelNameTable::startNumbering() const noexcept {
    m_numbered = 0;
    if (++m_pass != 0)
        return;
    // The counter has wrapped around: reset all entries so that none seems to belong to this pass.
    for (const Entry& each : m_entries)
        each.pass = 0;
    m_pass = 1;
}

QelNameTable::Number QelNameTable::number(int handle) const noexcept {
    const Entry& named = entry(handle);
    const bool isNew = named.pass != m_pass;
    if (isNew) {
        named.pass = m_pass;
        named.number = m_numbered++;
    }
    return {named.number, isNew};
}

} // namespace Qel
