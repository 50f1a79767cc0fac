#include "QelMessage/QelBase64.h"

#include <boost/beast/core/detail/base64.hpp>

namespace Qel::QelBase64 {

namespace base64 = boost::beast::detail::base64;

std::string encode(std::string_view bytes) {
    std::string text(base64::encoded_size(bytes.size()), '\0');
    text.resize(base64::encode(text.data(), bytes.data(), bytes.size()));
    return text;
}

bool decode(std::string_view text, std::string& bytes) {
    constexpr std::size_t quantum = 4;
    if (text.size() % quantum != 0)
        return false;
    std::string decoded(base64::decoded_size(text.size()), '\0');
    const auto [written, read] = base64::decode(decoded.data(), text.data(), text.size());
    decoded.resize(written);
    // The decoder stops at the first character that is not in the alphabet. Re-encoding the last bytes checks that only
    // the correct padding follows and that the unused bits of the last quantum are zero.
    const std::size_t whole = read / quantum * quantum;
    const std::string_view lastBytes = std::string_view(decoded).substr(whole / quantum * 3);
    if (text.substr(whole) != encode(lastBytes))
        return false;
    bytes = std::move(decoded);
    return true;
}

} // namespace Qel::QelBase64
