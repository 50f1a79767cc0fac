#include "QelCore/QelFlatSortedArray.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <map>
#include <new>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "QelCore/QelGUIDBase.h"
#include "QelCore/QelSharedMemoryManager.h"

namespace Qel {
namespace {

using Traits = QelSharedMemoryManager::traits_type;
using Array = QelFlatSortedArray<QelGUIDBase, Traits::pointer<int>, std::less<QelGUIDBase>, Traits>;

QelGUIDBase key(unsigned number) {
    return QelGUIDBase(static_cast<long long>(number), 1);
}

/// Arrays and the values that they point to, in one block of memory, as in a file.
class Memory {
public:
    static constexpr unsigned slots = 600;
    static constexpr unsigned blockBytes = 8 + 20 * slots;

    Memory() : m_words(3 * blockBytes / 4 + 2 * slots) {}

    /// Constructs an array with all slots free in one of three locations.
    Array& make(unsigned place = 0) {
        auto* array = new (at(place)) Array;
        array->adjustSelf(blockBytes);
        return *array;
    }
    int* value(unsigned number) { return reinterpret_cast<int*>(m_words.data() + 3 * blockBytes / 4 + number); }
    std::uint32_t word(unsigned place, unsigned offset) { return m_words[(place * blockBytes + offset) / 4]; }

private:
    void* at(unsigned place) { return m_words.data() + place * blockBytes / 4; }

    std::vector<std::uint32_t> m_words;
};

TEST(QelFlatSortedArrayTest, NewArrayIsEmptyWithItsDeclaredSlotFree) {
    Memory memory;
    memory.make();
    auto* array = new (&memory.make()) Array;
    EXPECT_EQ(sizeof(Array), 28U);
    EXPECT_EQ(sizeof(Array::record_t), 20U);
    EXPECT_EQ(array->size(), 0U);
    EXPECT_EQ(array->getReservedItemCount(), 1U);
    EXPECT_EQ(array->getUsedMemorySize(), 8U);
    EXPECT_EQ(array->getNextMemorySize(), 28U);
    EXPECT_EQ(array->begin(), array->end());
    std::size_t index = 99;
    EXPECT_FALSE(array->findIndex(key(1), index));
    EXPECT_EQ(index, 0U);
    EXPECT_EQ(array->find(key(1)), nullptr);
    for (unsigned offset = 8; offset < 28; offset += 4)
        EXPECT_EQ(memory.word(0, offset), 0U) << "the spare slot is zero at " << offset;
}

TEST(QelFlatSortedArrayTest, RecordsAreStoredAtTheirOffsets) {
    Memory memory;
    Array& array = memory.make();
    array.insert(key(0x0102), memory.value(3));
    EXPECT_EQ(memory.word(0, 0), 1U) << "count";
    EXPECT_EQ(memory.word(0, 4), Memory::slots - 1) << "reserved";
    EXPECT_EQ(memory.word(0, 8), 0x0102U) << "key";
    const auto place = reinterpret_cast<std::uintptr_t>(&array) + 24;
    EXPECT_EQ(place + memory.word(0, 24), reinterpret_cast<std::uintptr_t>(memory.value(3))) << "data";
}

TEST(QelFlatSortedArrayTest, KeepsKeyOrderForAnyInsertionOrder) {
    Memory memory;
    Array& array = memory.make();
    for (const unsigned number : {50U, 10U, 30U, 20U, 40U}) {
        const auto* record = array.insert(key(number), memory.value(number));
        EXPECT_EQ(record->key, key(number));
        EXPECT_EQ(record->data.get(), memory.value(number));
    }
    EXPECT_EQ(array.size(), 5U);
    for (unsigned i = 0; i < 5; ++i) {
        EXPECT_EQ(array.at(i).key, key(10 * (i + 1)));
        EXPECT_EQ(array.at(i).data.get(), memory.value(10 * (i + 1)));
    }
}

TEST(QelFlatSortedArrayTest, FindIndexReturnsInsertionPositionOfMissingKey) {
    Memory memory;
    Array& array = memory.make();
    for (const unsigned number : {10U, 20U, 30U})
        array.insert(key(number), memory.value(number));
    std::size_t index;
    EXPECT_FALSE(array.findIndex(key(5), index));
    EXPECT_EQ(index, 0U);
    EXPECT_FALSE(array.findIndex(key(25), index));
    EXPECT_EQ(index, 2U);
    EXPECT_FALSE(array.findIndex(key(35), index));
    EXPECT_EQ(index, 3U);
    EXPECT_TRUE(array.findIndex(key(20), index));
    EXPECT_EQ(index, 1U);
}

/// A generator of random keys and their distribution over the key space.
struct KeyMaker {
    const char* where;
    QelGUIDBase (*make)(std::mt19937_64&);
};

QelGUIDBase keyOf(std::uint64_t first, std::uint64_t second) {
    return QelGUIDBase(static_cast<long long>(first), static_cast<long long>(second));
}

constexpr KeyMaker keyMakers[] = {
    {"Uniform", [](std::mt19937_64& random) { return keyOf(random(), random()); }},
    {"AtTheStart", [](std::mt19937_64& random) { return keyOf(random() >> 40U, random()); }},
    {"AtTheEnd", [](std::mt19937_64& random) { return keyOf(~(random() >> 40U), random()); }},
    {"AllInTheMiddle", [](std::mt19937_64& random) { return keyOf(std::uint64_t{1} << 63U, random()); }},
    {"HalfOfThemAtTheStart",
     [](std::mt19937_64& random) { return keyOf(random() % 2 ? random() : random() >> 33U, random()); }},
};

class QelFlatSortedArrayKeysTest : public testing::TestWithParam<KeyMaker> {};

TEST_P(QelFlatSortedArrayKeysTest, AreFoundForEveryDistribution) {
    std::mt19937_64 random(7);
    Memory memory;
    Array& array = memory.make();
    std::vector<QelGUIDBase> keys;
    for (unsigned count = 0; count < Memory::slots; ++count) {
        keys.push_back(GetParam().make(random));
        array.insert(keys.back(), memory.value(count));
    }
    std::sort(keys.begin(), keys.end());
    const QelGUIDBase least(0, 0);
    const QelGUIDBase greatest(-1, -1);
    for (std::size_t i = 0; i < keys.size(); ++i) {
        std::size_t index;
        ASSERT_TRUE(array.findIndex(keys[i], index));
        ASSERT_EQ(index, i);
        const QelGUIDBase absent = GetParam().make(random);
        const auto bound = std::lower_bound(keys.begin(), keys.end(), absent);
        ASSERT_EQ(array.findIndex(absent, index), bound != keys.end() && *bound == absent);
        ASSERT_EQ(index, static_cast<std::size_t>(bound - keys.begin()));
    }
    std::size_t index;
    EXPECT_FALSE(array.findIndex(least, index));
    EXPECT_EQ(index, 0U);
    EXPECT_FALSE(array.findIndex(greatest, index));
    EXPECT_EQ(index, keys.size());
}

INSTANTIATE_TEST_SUITE_P(, QelFlatSortedArrayKeysTest, testing::ValuesIn(keyMakers),
                         [](const auto& maker) { return maker.param.where; });

TEST(QelFlatSortedArrayTest, UpdateReplacesDataOnly) {
    Memory memory;
    Array& array = memory.make();
    array.insert(key(1), memory.value(1));
    array.update(0, memory.value(2));
    EXPECT_EQ(array.find(key(1)), memory.value(2));
    array.update(0, nullptr);
    EXPECT_EQ(array.find(key(1)), nullptr);
    EXPECT_EQ(array.size(), 1U);
}

TEST(QelFlatSortedArrayTest, RemovedSlotBecomesFree) {
    Memory memory;
    Array& array = memory.make();
    for (const unsigned number : {1U, 2U, 3U})
        array.insert(key(number), memory.value(number));
    const unsigned reserved = array.getReservedItemCount();
    EXPECT_EQ(array.remove(1)->key, key(3)) << "the record that took its position";
    EXPECT_EQ(array.getReservedItemCount(), reserved + 1);
    EXPECT_EQ(array.find(key(1)), memory.value(1));
    EXPECT_EQ(array.find(key(3)), memory.value(3));
    const auto* next = array.remove(1);
    EXPECT_EQ(next, array.end()) << "end after removing the last record";
    array.insert(key(7), memory.value(7));
    EXPECT_EQ(array.getReservedItemCount(), reserved + 1);
}

TEST(QelFlatSortedArrayTest, CopyPointsToTheSameValues) {
    Memory memory;
    Array& array = memory.make(1);
    for (unsigned number = 0; number < Memory::slots; ++number)
        array.insert(key(number), number % 5 ? memory.value(number) : nullptr);
    for (const unsigned place : {0U, 2U}) {
        Array& copy = memory.make(place);
        copy = array;
        EXPECT_EQ(copy.size(), Memory::slots);
        EXPECT_EQ(copy.getReservedItemCount(), 0U);
        for (unsigned number = 0; number < Memory::slots; ++number) {
            ASSERT_EQ(copy.at(number).key, key(number));
            ASSERT_EQ(copy.at(number).data.get(), number % 5 ? memory.value(number) : nullptr);
        }
    }
}

TEST(QelFlatSortedArrayTest, AssignInsertingInsertsAtIndex) {
    Memory memory;
    Array& array = memory.make(1);
    for (const unsigned number : {10U, 20U, 30U})
        array.insert(key(number), memory.value(number));
    for (const unsigned place : {0U, 2U})
        for (unsigned index = 0; index <= 3; ++index) {
            const unsigned added = 10 * index + 5;
            Array& copy = memory.make(place);
            copy.assignInserting(array, index, key(added), memory.value(added));
            EXPECT_EQ(copy.getReservedItemCount(), 0U);
            ASSERT_EQ(copy.size(), 4U);
            for (unsigned i = 0; i < 4; ++i) {
                const unsigned expected = i < index ? 10 * i + 10 : i == index ? added : 10 * i;
                EXPECT_EQ(copy.at(i).key, key(expected));
                EXPECT_EQ(copy.at(i).data.get(), memory.value(expected));
            }
        }
    EXPECT_EQ(array.size(), 3U);
}

TEST(QelFlatSortedArrayTest, AdjustSelfCountsFreeSlotsFromBlockSize) {
    Memory memory;
    Array& array = memory.make();
    array.insert(key(1), memory.value(1));
    array.adjustSelf(28);
    EXPECT_EQ(array.getReservedItemCount(), 0U);
    array.adjustSelf(48);
    EXPECT_EQ(array.getReservedItemCount(), 1U);
    array.adjustSelf(67);
    EXPECT_EQ(array.getReservedItemCount(), 1U) << "a partial slot is not counted";
}

TEST(QelFlatSortedArrayTest, KeysThatLookLikeNullPointersAreMovedUnchanged) {
    Memory memory;
    Array& array = memory.make();
    const QelGUIDBase ones(0x0000000100000001LL, 0x0000000100000001LL);
    array.insert(ones, memory.value(1));
    array.insert(key(0), memory.value(0));
    Array& copy = memory.make(2);
    copy = array;
    EXPECT_EQ(copy.find(ones), memory.value(1));
    copy.remove(0);
    EXPECT_EQ(copy.find(ones), memory.value(1));
}

TEST(QelFlatSortedArrayTest, RandomChangesAgreeWithMap) {
    std::mt19937 random(42);
    Memory memory;
    Array* array = &memory.make();
    unsigned place = 0;
    std::map<QelGUIDBase, int*> model;
    for (int step = 0; step < 20000; ++step) {
        const QelGUIDBase id(static_cast<long long>(random() % 40), static_cast<long long>(random() % 40) - 20);
        auto* value = random() % 10 ? memory.value(static_cast<unsigned>(random() % Memory::slots)) : nullptr;
        std::size_t index;
        const bool present = array->findIndex(id, index);
        ASSERT_EQ(present, model.contains(id));
        ASSERT_EQ(index, static_cast<std::size_t>(std::distance(model.begin(), model.lower_bound(id))));
        switch (random() % 4) {
        case 0:
        case 1:
            if (!present && array->getReservedItemCount() > 0) {
                array->insert(id, value);
                model[id] = value;
            } else if (present) {
                array->update(index, value);
                model[id] = value;
            }
            break;
        case 2:
            if (present) {
                array->remove(index);
                model.erase(id);
            }
            break;
        default: {
            place = (place + 1) % 3;
            Array& copy = memory.make(place);
            copy = *array;
            array = &copy;
        }
        }
        ASSERT_EQ(array->size(), model.size());
        ASSERT_EQ(array->size() + array->getReservedItemCount(), Memory::slots);
        ASSERT_TRUE(std::equal(model.begin(), model.end(), array->begin(), array->end(),
                               [](const auto& expected, const Array::record_t& record) {
                                   return expected.first == record.key && expected.second == record.data.get();
                               }))
            << "at step " << step;
    }
}

TEST(QelFlatSortedArrayDeathTest, InsertionWithoutFreeSlotIsFatal) {
    Memory memory;
    auto* array = new (&memory.make()) Array;
    array->insert(key(1), memory.value(1));
    EXPECT_EQ(array->getReservedItemCount(), 0U);
    EXPECT_DEATH(array->insert(key(2), memory.value(2)), "core/src/QelCore/QelFlatSortedArray");
}

TEST(QelFlatSortedArrayDeathTest, IndexPastTheLastRecordIsFatal) {
    Memory memory;
    Array& array = memory.make();
    array.insert(key(1), memory.value(1));
    EXPECT_DEATH(static_cast<void>(array.at(1)), "core/src/QelCore/QelFlatSortedArray");
    EXPECT_DEATH(array.update(1, nullptr), "core/src/QelCore/QelFlatSortedArray");
    EXPECT_DEATH(array.remove(1), "core/src/QelCore/QelFlatSortedArray");
    Array& copy = memory.make(1);
    EXPECT_DEATH(copy.assignInserting(array, 2, key(2), nullptr), "core/src/QelCore/QelFlatSortedArray");
}

} // namespace
} // namespace Qel
