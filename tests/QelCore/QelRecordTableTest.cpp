#include "QelCore/QelRecordTable.h"

#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "QelCore/QelSharedPointer.h"
#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

struct Record {
    std::uint32_t key[4];
    pointer_type<std::uint32_t> data;
};
static_assert(sizeof(Record) == QelRecordTable::recordBytes);

/// Two equal tables side by side with their targets: one is moved as a whole, the other one record by record.
class Tables {
public:
    static constexpr std::size_t records = 40;

    explicit Tables(unsigned seed) {
        for (auto* table : {m_whole, m_single})
            for (std::size_t i = 0; i < records; ++i) {
                // Words of keys that look like null, and now and then a null.
                std::mt19937 same(seed + static_cast<unsigned>(i));
                for (std::uint32_t& word : table[i].key)
                    word = below(same, 3);
                table[i].data = below(same, 4) ? &table[below(same, records)].key[0] : nullptr;
            }
    }

    void expectEqual(const char* what, std::size_t count) const {
        for (std::size_t i = 0; i < records; ++i) {
            EXPECT_EQ(std::memcmp(m_whole[i].key, m_single[i].key, sizeof(Record::key)), 0)
                << what << ' ' << count << ", record " << i;
            EXPECT_EQ(target(m_whole, i), target(m_single, i)) << what << ' ' << count << ", record " << i;
        }
    }

    Record m_whole[records];
    Record m_single[records];

private:
    static std::ptrdiff_t target(const Record* table, std::size_t i) {
        const std::uint32_t* data = table[i].data.get();
        return data ? data - &table[0].key[0] : -1;
    }
};

void assign(const Record& from, Record& to) {
    std::memcpy(to.key, from.key, sizeof to.key);
    to.data = from.data;
}

TEST(QelRecordTableTest, MovingUpwardsEqualsAssigningOneByOneFromTheLowest) {
    for (std::size_t count = 0; count <= 20; ++count)
        for (const std::size_t from : {1U, 2U, 3U, 4U, 5U, 20U}) {
            Tables tables(static_cast<unsigned>(count));
            QelRecordTable::moveUpwards(tables.m_whole + from, tables.m_whole, count);
            for (std::size_t i = 0; i < count; ++i)
                assign(tables.m_single[from + i], tables.m_single[i]);
            tables.expectEqual("upwards", count);
        }
}

TEST(QelRecordTableTest, MovingDownwardsEqualsAssigningOneByOneFromTheHighest) {
    for (std::size_t count = 0; count <= 20; ++count)
        for (const std::size_t to : {1U, 2U, 3U, 4U, 5U, 20U}) {
            Tables tables(static_cast<unsigned>(count));
            QelRecordTable::moveDownwards(tables.m_whole, tables.m_whole + to, count);
            for (std::size_t i = count; i-- > 0;)
                assign(tables.m_single[i], tables.m_single[to + i]);
            tables.expectEqual("downwards", count);
        }
}

} // namespace
} // namespace Qel
