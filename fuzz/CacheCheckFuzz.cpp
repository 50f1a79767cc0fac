// Checks arbitrary bytes as a cache file.  The checker must terminate and must not access anything outside the bytes.
//
// If the first byte is even, the rest is the file.  If it is odd, the rest is a sequence of changes to a valid file,
// six bytes each: an offset and the word to store there.  Changes reach deep into the checker from the first run on.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

#include "qel/cachefile/CacheFileChecker.h"
#include "tools/cachefile/CacheFileBuilder.h"

namespace {

void check(std::span<const std::byte> bytes) {
    (void)Qel::Tool::identifyCacheFile(bytes);
    for (const Qel::Tool::Finding& finding : Qel::Tool::checkCacheFile(bytes).findings) {
        // The offset of a finding must be in the header or in the file.
        constexpr std::size_t headerLength = 56;
        if (finding.offset >= bytes.size() && finding.offset >= headerLength)
            __builtin_trap();
    }
}

void checkChangedSample(std::span<const std::byte> changes) {
    SampleCacheFile file;
    for (; changes.size() >= 6; changes = changes.subspan(6)) {
        std::uint16_t place = 0;
        std::uint32_t word = 0;
        std::memcpy(&place, changes.data(), sizeof place);
        std::memcpy(&word, changes.data() + sizeof place, sizeof word);
        file.set(place % (file.size() / 4) * 4, word);
    }
    check(file.bytes());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = std::as_bytes(std::span(data, size));
    if (size == 0 || data[0] % 2 == 0)
        check(bytes.subspan(size == 0 ? 0 : 1));
    else
        checkChangedSample(bytes.subspan(1));
    return 0;
}
