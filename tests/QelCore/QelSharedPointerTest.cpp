#include "QelCore/QelSharedPointer.h"

#include <array>
#include <cstring>

#include <gtest/gtest.h>

namespace Qel {
namespace {

struct Room {
    pointer_type<int> first;
    pointer_type<int> second;
    int below = 7;
    int above = 8;
};

std::int32_t bytesOf(const pointer_type<int>& pointer) {
    std::int32_t distance;
    std::memcpy(&distance, static_cast<const void*>(&pointer), sizeof distance);
    return distance;
}

TEST(QelSharedPointerTest, ZeroBytesPointToThemselves) {
    Room room;
    EXPECT_EQ(bytesOf(room.first), 0);
    EXPECT_EQ(static_cast<void*>(room.first.get()), static_cast<void*>(&room.first));
    EXPECT_TRUE(room.first);
}

TEST(QelSharedPointerTest, NullIsDistanceOne) {
    const pointer_type<int> pointer(nullptr);
    EXPECT_EQ(bytesOf(pointer), 1);
    EXPECT_EQ(pointer.get(), nullptr);
    EXPECT_FALSE(pointer);
}

TEST(QelSharedPointerTest, StoresDistanceFromItself) {
    Room room;
    room.first = &room.above;
    EXPECT_EQ(bytesOf(room.first), 12);
    EXPECT_EQ(*room.first, 8);
}

TEST(QelSharedPointerTest, StoresNegativeDistance) {
    std::array<Room, 2> rooms;
    rooms[1].first = &rooms[0].below;
    EXPECT_EQ(bytesOf(rooms[1].first), -8);
    EXPECT_EQ(rooms[1].first.get(), &rooms[0].below);
}

TEST(QelSharedPointerTest, AssignmentRecomputesDistance) {
    Room room;
    room.first = &room.below;
    room.second = room.first;
    EXPECT_EQ(room.second.get(), &room.below);
    EXPECT_EQ(bytesOf(room.second), bytesOf(room.first) - 4);
    room.first = nullptr;
    room.second = room.first;
    EXPECT_EQ(room.second.get(), nullptr);
}

#if UINTPTR_MAX > UINT32_MAX
TEST(QelSharedPointerDeathTest, RejectsTargetOutOfRange) {
    Room room;
    auto* far = reinterpret_cast<int*>(reinterpret_cast<std::uintptr_t>(&room) + (std::uintptr_t{1} << 33));
    EXPECT_DEATH(room.first = far, "QelSharedMemoryManager");
}
#endif

} // namespace
} // namespace Qel
