#include "QelCore/QelFlatRecords.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "QelCore/QelSharedPointer.h"

namespace Qel::QelFlatRecords {

namespace {

using Word = std::uint32_t;
constexpr std::size_t wordsInRecord = recordBytes / sizeof(Word);

/// A group is this many vectors: it contains as many entries as a vector has words.
constexpr std::size_t vectorsInGroup = wordsInRecord;

using Vector128 = Word __attribute__((vector_size(16)));
using Vector256 = Word __attribute__((vector_size(32)));
using Vector512 = Word __attribute__((vector_size(64)));

template <class Vector> constexpr std::size_t recordsInGroup = sizeof(Vector) / sizeof(Word);
template <class Vector> constexpr std::size_t groupBytes = sizeof(Vector) * vectorsInGroup;

constexpr Word null = pointer_type<int>::nullDistance;

/// Mask for a group: all ones for words that are pointers, zero for words of keys.
template <class Vector>
constexpr auto pointerWords = [] {
    std::array<Word, groupBytes<Vector> / sizeof(Word)> words{};
    for (std::size_t i = 0; i < words.size(); ++i)
        words[i] = i % wordsInRecord == wordsInRecord - 1 ? ~Word{0} : 0;
    return words;
}();

/// The change of each pointer in bytes.
Word shiftBetween(const char* source, const char* target) noexcept {
    return static_cast<Word>(reinterpret_cast<std::uintptr_t>(source) - reinterpret_cast<std::uintptr_t>(target));
}

void moveOne(const char* source, char* target, Word shift) noexcept {
    Word words[wordsInRecord];
    std::memcpy(words, source, recordBytes);
    Word& pointer = words[keyBytes / sizeof(Word)];
    pointer = pointer == null ? null : pointer + shift;
    std::memcpy(target, words, recordBytes);
}

/// Moves whole groups; consecutive groups are `step` bytes apart in source and target.  Each group is read completely
/// before it is written, so source and target may overlap.
///
/// Inlined into one function per instruction set.  Named vectors instead of an array, so that the compiler keeps them
/// in registers.
template <class Vector>
[[gnu::always_inline]] inline void moveGroups(const char* from, char* to, std::size_t groups, std::ptrdiff_t step,
                                              Word shift) noexcept {
    constexpr std::size_t size = sizeof(Vector);
    Vector shift0;
    Vector shift1;
    Vector shift2;
    Vector shift3;
    Vector shift4;
    std::memcpy(&shift0, &pointerWords<Vector>[0 * recordsInGroup<Vector>], size);
    std::memcpy(&shift1, &pointerWords<Vector>[1 * recordsInGroup<Vector>], size);
    std::memcpy(&shift2, &pointerWords<Vector>[2 * recordsInGroup<Vector>], size);
    std::memcpy(&shift3, &pointerWords<Vector>[3 * recordsInGroup<Vector>], size);
    std::memcpy(&shift4, &pointerWords<Vector>[4 * recordsInGroup<Vector>], size);
    shift0 &= shift;
    shift1 &= shift;
    shift2 &= shift;
    shift3 &= shift;
    shift4 &= shift;
    for (; groups > 0; --groups, from += step, to += step) {
        Vector words0;
        Vector words1;
        Vector words2;
        Vector words3;
        Vector words4;
        std::memcpy(&words0, from, size);
        std::memcpy(&words1, from + size, size);
        std::memcpy(&words2, from + 2 * size, size);
        std::memcpy(&words3, from + 3 * size, size);
        std::memcpy(&words4, from + 4 * size, size);
        words0 += reinterpret_cast<Vector>(words0 != null) & shift0;
        words1 += reinterpret_cast<Vector>(words1 != null) & shift1;
        words2 += reinterpret_cast<Vector>(words2 != null) & shift2;
        words3 += reinterpret_cast<Vector>(words3 != null) & shift3;
        words4 += reinterpret_cast<Vector>(words4 != null) & shift4;
        std::memcpy(to, &words0, size);
        std::memcpy(to + size, &words1, size);
        std::memcpy(to + 2 * size, &words2, size);
        std::memcpy(to + 3 * size, &words3, size);
        std::memcpy(to + 4 * size, &words4, size);
    }
}

/// Moves the leading whole groups of `count` entries and advances the arguments past them.
template <class Vector>
[[gnu::always_inline]] inline void moveGroupsForward(const char*& from, char*& to, std::size_t& count) noexcept {
    const std::size_t groups = count / recordsInGroup<Vector>;
    moveGroups<Vector>(from, to, groups, groupBytes<Vector>, shiftBetween(from, to));
    from += groups * groupBytes<Vector>;
    to += groups * groupBytes<Vector>;
    count %= recordsInGroup<Vector>;
}

/// Moves the trailing whole groups of `count` entries; `from` and `to` are end pointers and move back.
template <class Vector>
[[gnu::always_inline]] inline void moveGroupsBackward(const char*& from, char*& to, std::size_t& count) noexcept {
    const std::size_t groups = count / recordsInGroup<Vector>;
    constexpr auto step = static_cast<std::ptrdiff_t>(groupBytes<Vector>);
    moveGroups<Vector>(from - step, to - step, groups, -step, shiftBetween(from, to));
    from -= groups * groupBytes<Vector>;
    to -= groups * groupBytes<Vector>;
    count %= recordsInGroup<Vector>;
}

template <class Vector>
[[gnu::always_inline]] inline void moveRecordsForward(const void* source, void* target, std::size_t count) noexcept {
    const auto* from = static_cast<const char*>(source);
    auto* to = static_cast<char*>(target);
    moveGroupsForward<Vector>(from, to, count);
    moveGroupsForward<Vector128>(from, to, count);
    const Word shift = shiftBetween(from, to);
    for (; count > 0; --count, from += recordBytes, to += recordBytes)
        moveOne(from, to, shift);
}

template <class Vector>
[[gnu::always_inline]] inline void moveRecordsBackward(const void* source, void* target, std::size_t count) noexcept {
    const char* from = static_cast<const char*>(source) + count * recordBytes;
    char* to = static_cast<char*>(target) + count * recordBytes;
    moveGroupsBackward<Vector>(from, to, count);
    moveGroupsBackward<Vector128>(from, to, count);
    const Word shift = shiftBetween(from, to);
    for (; count > 0; --count) {
        from -= recordBytes;
        to -= recordBytes;
        moveOne(from, to, shift);
    }
}

void forwardBaseline(const void* source, void* target, std::size_t count) noexcept {
    moveRecordsForward<Vector128>(source, target, count);
}
void backwardBaseline(const void* source, void* target, std::size_t count) noexcept {
    moveRecordsBackward<Vector128>(source, target, count);
}

[[gnu::target("avx2")]] void forwardAvx2(const void* source, void* target, std::size_t count) noexcept {
    moveRecordsForward<Vector256>(source, target, count);
}
[[gnu::target("avx2")]] void backwardAvx2(const void* source, void* target, std::size_t count) noexcept {
    moveRecordsBackward<Vector256>(source, target, count);
}

[[gnu::target("avx512f")]] void forwardAvx512(const void* source, void* target, std::size_t count) noexcept {
    moveRecordsForward<Vector512>(source, target, count);
}
[[gnu::target("avx512f")]] void backwardAvx512(const void* source, void* target, std::size_t count) noexcept {
    moveRecordsBackward<Vector512>(source, target, count);
}

constexpr Mover allMovers[] = {{"AVX-512", forwardAvx512, backwardAvx512},
                               {"AVX2", forwardAvx2, backwardAvx2},
                               {"baseline", forwardBaseline, backwardBaseline}};

/// Number of leading elements of allMovers that this processor does not support.
std::size_t countUnusable() noexcept {
    if (__builtin_cpu_supports("avx512f"))
        return 0;
    return __builtin_cpu_supports("avx2") ? 1 : 2;
}

} // namespace

std::span<const Mover> movers() noexcept {
    static const std::span<const Mover> usable = std::span(allMovers).subspan(countUnusable());
    return usable;
}

void moveForward(const void* source, void* target, std::size_t count) noexcept {
    movers().front().forward(source, target, count);
}

void moveBackward(const void* source, void* target, std::size_t count) noexcept {
    movers().front().backward(source, target, count);
}

} // namespace Qel::QelFlatRecords
