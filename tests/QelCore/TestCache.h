#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "QelCore/QelCacheLogic.h"
#include "QelCore/QelGUIDBase.h"
#include "QelCore/QelMappedMemoryManager.h"

namespace Qel {

/// A record with the declared size of real records, 92 bytes, followed by `extra` more.
struct TestRecord : QelCachedItem {
    static constexpr unsigned declaredSize = 92;

    [[nodiscard]] unsigned length() const { return declaredSize + extra; }

    std::uint32_t extra = 0;
    std::uint32_t version = 0;
    QelGUIDBase eid;
    std::uint8_t fixed[64] = {};
};
static_assert(sizeof(TestRecord) == TestRecord::declaredSize);

/// A value that can be stored in a cache.
class TestValue {
public:
    explicit TestValue(const QelGUIDBase& id, std::uint32_t version = 0, unsigned extra = 0)
        : m_bytes(TestRecord::declaredSize + extra) {
        TestRecord head;
        head.extra = extra;
        head.version = version;
        head.eid = id;
        std::memcpy(m_bytes.data(), static_cast<const void*>(&head), sizeof head);
        for (unsigned i = TestRecord::declaredSize; i < m_bytes.size(); ++i)
            m_bytes[i] = fill(id, version, i);
    }

    int getBuffer(const void** buffer, unsigned& length, const void*) const {
        *buffer = m_bytes.data();
        length = static_cast<unsigned>(m_bytes.size());
        return 0;
    }

    /// Whether a record in a cache or a copy equals this value, ignoring the reference count.  Null is never equal.
    [[nodiscard]] bool equals(const TestRecord* record) const {
        const auto* bytes = reinterpret_cast<const unsigned char*>(record);
        return record && record->length() == m_bytes.size() &&
               std::memcmp(bytes + 4, m_bytes.data() + 4, m_bytes.size() - 4) == 0;
    }
    [[nodiscard]] bool equals(const boost::shared_ptr<TestRecord>& record) const { return equals(record.get()); }

private:
    static unsigned char fill(const QelGUIDBase& id, std::uint32_t version, unsigned position) {
        unsigned long long first;
        unsigned long long second;
        id.getData(first, second);
        return static_cast<unsigned char>(first + second * 7 + version * 31 + position);
    }

    std::vector<unsigned char> m_bytes;
};

/// A value whose bytes are supplied by a function.
struct TestSource {
    std::function<int(const void**, unsigned&, const void*)> source;
    int getBuffer(const void** buffer, unsigned& length, const void* old) const { return source(buffer, length, old); }
};

using TestCache = QelCacheLogic<QelGUIDBase, TestRecord, QelMappedMemoryManager>;
using TestCachePtr = boost::intrusive_ptr<TestCache>;
using TestList = TestCache::ValuesList;
using TestListPtr = TestCache::ValuesListPtr;

extern template class QelCacheLogic<QelGUIDBase, TestRecord, QelMappedMemoryManager>;

} // namespace Qel
