#include "QelCore/QelFlatRecords.h"

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
static_assert(sizeof(Record) == QelFlatRecords::recordBytes);

/// Two equal arrays with their targets: one is moved as a whole, the other record by record.
class Arrays {
public:
    static constexpr std::size_t records = 140;

    explicit Arrays(unsigned seed) {
        for (auto* array : {m_whole, m_single})
            for (std::size_t i = 0; i < records; ++i) {
                // Key words that look like null, and occasional null pointers.
                std::minstd_rand random(seed + static_cast<unsigned>(i) + 1); // cheap to construct
                for (std::uint32_t& word : array[i].key)
                    word = static_cast<std::uint32_t>(random() % 3);
                array[i].data = random() % 4 ? &array[random() % records].key[0] : nullptr;
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
    static std::ptrdiff_t target(const Record* array, std::size_t i) {
        const std::uint32_t* data = array[i].data.get();
        return data ? data - &array[0].key[0] : -1;
    }
};

void assign(const Record& from, Record& to) {
    std::memcpy(to.key, from.key, sizeof to.key);
    to.data = from.data;
}

/// Counts that end at every position of the widest group; overlapping distances and one that does not overlap.
constexpr std::size_t maxCount = 70;
constexpr std::size_t distances[] = {1, 2, 3, 4, 5, maxCount};

TEST(QelFlatRecordsTest, MoveForwardEqualsAssignmentFromLowestRecord) {
    for (const QelFlatRecords::Mover& mover : QelFlatRecords::movers())
        for (std::size_t count = 0; count <= maxCount; ++count)
            for (const std::size_t from : distances) {
                Arrays arrays(static_cast<unsigned>(count));
                mover.forward(arrays.m_whole + from, arrays.m_whole, count);
                for (std::size_t i = 0; i < count; ++i)
                    assign(arrays.m_single[from + i], arrays.m_single[i]);
                arrays.expectEqual(mover.instructions, count);
            }
}

TEST(QelFlatRecordsTest, MoveBackwardEqualsAssignmentFromHighestRecord) {
    for (const QelFlatRecords::Mover& mover : QelFlatRecords::movers())
        for (std::size_t count = 0; count <= maxCount; ++count)
            for (const std::size_t to : distances) {
                Arrays arrays(static_cast<unsigned>(count));
                mover.backward(arrays.m_whole, arrays.m_whole + to, count);
                for (std::size_t i = count; i-- > 0;)
                    assign(arrays.m_single[i], arrays.m_single[to + i]);
                arrays.expectEqual(mover.instructions, count);
            }
}

TEST(QelFlatRecordsTest, BaselineMoverIsAlwaysAvailable) {
    ASSERT_FALSE(QelFlatRecords::movers().empty());
    EXPECT_STREQ(QelFlatRecords::movers().back().instructions, "baseline");
}

} // namespace
} // namespace Qel
