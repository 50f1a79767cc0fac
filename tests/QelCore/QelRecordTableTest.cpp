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

/// Two equal arrays with their targets: one is moved as a whole, the other record by record.
class Tables {
public:
    static constexpr std::size_t records = 140;

    explicit Tables(unsigned seed) {
        for (auto* table : {m_whole, m_single})
            for (std::size_t i = 0; i < records; ++i) {
                // Key words that look like null, and occasional null pointers.
                std::minstd_rand same(seed + static_cast<unsigned>(i) + 1); // cheap to construct
                for (std::uint32_t& word : table[i].key)
                    word = static_cast<std::uint32_t>(same() % 3);
                table[i].data = same() % 4 ? &table[same() % records].key[0] : nullptr;
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

/// Counts that end at every position of the widest group; overlapping distances and one that does not overlap.
constexpr std::size_t maxCount = 70;
constexpr std::size_t distances[] = {1, 2, 3, 4, 5, maxCount};

TEST(QelRecordTableTest, MoveForwardEqualsAssignmentFromLowestRecord) {
    for (const QelRecordTable::Mover& mover : QelRecordTable::movers())
        for (std::size_t count = 0; count <= maxCount; ++count)
            for (const std::size_t from : distances) {
                Tables tables(static_cast<unsigned>(count));
                mover.forward(tables.m_whole + from, tables.m_whole, count);
                for (std::size_t i = 0; i < count; ++i)
                    assign(tables.m_single[from + i], tables.m_single[i]);
                tables.expectEqual(mover.instructions, count);
            }
}

TEST(QelRecordTableTest, MoveBackwardEqualsAssignmentFromHighestRecord) {
    for (const QelRecordTable::Mover& mover : QelRecordTable::movers())
        for (std::size_t count = 0; count <= maxCount; ++count)
            for (const std::size_t to : distances) {
                Tables tables(static_cast<unsigned>(count));
                mover.backward(tables.m_whole, tables.m_whole + to, count);
                for (std::size_t i = count; i-- > 0;)
                    assign(tables.m_single[i], tables.m_single[to + i]);
                tables.expectEqual(mover.instructions, count);
            }
}

TEST(QelRecordTableTest, BaselineMoverIsAlwaysAvailable) {
    ASSERT_FALSE(QelRecordTable::movers().empty());
    EXPECT_STREQ(QelRecordTable::movers().back().instructions, "baseline");
}

} // namespace
} // namespace Qel
