#include "QelCore/QelRecordTable.h"

#include <cstdint>
#include <cstring>

#include "QelCore/QelSharedPointer.h"

namespace Qel::QelRecordTable {

namespace {

// Four records are 20 words, or five vectors of four words.  Of these the first holds keys only, and each of the others
// one pointer, in a lane of its own.
constexpr std::size_t wordsInVector = 4;
constexpr std::size_t recordsInGroup = 4;
constexpr std::size_t vectorsInGroup = 5;
constexpr std::size_t groupBytes = recordsInGroup * recordBytes;

using Vector = std::uint32_t __attribute__((vector_size(wordsInVector * sizeof(std::uint32_t))));
static_assert(sizeof(Vector) * vectorsInGroup == groupBytes);

constexpr std::uint32_t null = pointer_type<int>::nullDistance;

/// Bytes that each pointer changes by.
std::uint32_t shiftBetween(const char* source, const char* target) noexcept {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(source) -
                                      reinterpret_cast<std::uintptr_t>(target));
}

void moveOne(const char* source, char* target, std::uint32_t shift) noexcept {
    std::uint32_t words[recordBytes / sizeof(std::uint32_t)];
    std::memcpy(words, source, recordBytes);
    std::uint32_t& pointer = words[keyBytes / sizeof(std::uint32_t)];
    pointer = pointer == null ? null : pointer + shift;
    std::memcpy(target, words, recordBytes);
}

/// What the pointers of a group change by: one lane of each vector but the first.
struct GroupShift {
    explicit GroupShift(std::uint32_t shift) noexcept
        : second{shift, 0, 0, 0}, third{0, shift, 0, 0}, fourth{0, 0, shift, 0}, fifth{0, 0, 0, shift} {}

    Vector second;
    Vector third;
    Vector fourth;
    Vector fifth;
};

/// Adds in the lanes that aren't null.  Words of keys are shifted by nothing, whatever they look like.
void add(Vector& words, const Vector& shift) noexcept {
    words += reinterpret_cast<Vector>(words != null) & shift;
}

/// Reads the whole group before it writes, so the two may overlap.  The vectors have names, and no array, so that the
/// compiler keeps them in registers.
void moveGroup(const char* source, char* target, const GroupShift& shift) noexcept {
    Vector first;
    Vector second;
    Vector third;
    Vector fourth;
    Vector fifth;
    std::memcpy(&first, source, sizeof(Vector));
    std::memcpy(&second, source + sizeof(Vector), sizeof(Vector));
    std::memcpy(&third, source + 2 * sizeof(Vector), sizeof(Vector));
    std::memcpy(&fourth, source + 3 * sizeof(Vector), sizeof(Vector));
    std::memcpy(&fifth, source + 4 * sizeof(Vector), sizeof(Vector));
    add(second, shift.second);
    add(third, shift.third);
    add(fourth, shift.fourth);
    add(fifth, shift.fifth);
    std::memcpy(target, &first, sizeof(Vector));
    std::memcpy(target + sizeof(Vector), &second, sizeof(Vector));
    std::memcpy(target + 2 * sizeof(Vector), &third, sizeof(Vector));
    std::memcpy(target + 3 * sizeof(Vector), &fourth, sizeof(Vector));
    std::memcpy(target + 4 * sizeof(Vector), &fifth, sizeof(Vector));
}

} // namespace

void moveUpwards(const void* source, void* target, std::size_t count) noexcept {
    const auto* from = static_cast<const char*>(source);
    auto* to = static_cast<char*>(target);
    const std::uint32_t shift = shiftBetween(from, to);
    const GroupShift groupShift(shift);
    for (; count >= recordsInGroup; count -= recordsInGroup, from += groupBytes, to += groupBytes)
        moveGroup(from, to, groupShift);
    for (; count > 0; --count, from += recordBytes, to += recordBytes)
        moveOne(from, to, shift);
}

void moveDownwards(const void* source, void* target, std::size_t count) noexcept {
    const char* from = static_cast<const char*>(source) + count * recordBytes;
    char* to = static_cast<char*>(target) + count * recordBytes;
    const std::uint32_t shift = shiftBetween(from, to);
    const GroupShift groupShift(shift);
    for (; count >= recordsInGroup; count -= recordsInGroup) {
        from -= groupBytes;
        to -= groupBytes;
        moveGroup(from, to, groupShift);
    }
    for (; count > 0; --count) {
        from -= recordBytes;
        to -= recordBytes;
        moveOne(from, to, shift);
    }
}

} // namespace Qel::QelRecordTable
