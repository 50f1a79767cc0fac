#include "QelMessage/QelBinaryCodec.h"

#include <array>
#include <bit>

#include "QelMessage/QelBinaryFormat.h"

namespace Qel::QelBinaryCodec {

using namespace QelBinaryFormat;

bool looksBinary(std::string_view bytes) noexcept {
    return bytes.starts_with(magic);
}

std::uint32_t checksum(std::string_view bytes) noexcept {
    // Four independent lanes of 32-bit words, which the processor computes in parallel. Each step is a bijection in the
    // word and in the lane state, so a change confined to one word is always detected.
    constexpr std::size_t wordSize = 4;
    constexpr std::size_t lanes = 4;
    const auto mix = [](std::uint32_t state, std::uint32_t word) {
        constexpr std::uint32_t oddFactor = 0x9E3779B1; // 2^32 divided by the golden ratio
        return std::rotl((state ^ word) * oddFactor, 15);
    };
    std::array<std::uint32_t, lanes> lane{1, 2, 3, 4};
    const std::string_view body = bytes.substr(headSize);
    std::size_t offset = 0;
    for (; body.size() - offset >= lanes * wordSize; offset += lanes * wordSize)
        for (std::size_t i = 0; i < lanes; ++i)
            lane[i] = mix(lane[i], loadWord(body.data() + offset + i * wordSize));
    std::array<char, lanes * wordSize> rest{};
    body.copy(rest.data(), rest.size(), offset);
    std::uint32_t result = mix(static_cast<std::uint32_t>(body.size()), loadWord(bytes.data() + versionOffset));
    for (std::size_t i = 0; i < lanes; ++i)
        result = mix(result, mix(lane[i], loadWord(rest.data() + i * wordSize)));
    return result;
}

} // namespace Qel::QelBinaryCodec
