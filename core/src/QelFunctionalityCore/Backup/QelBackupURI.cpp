#include "QelFunctionalityCore/Backup/QelBackupURI.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <iterator>
#include <limits>
#include <memory>
#include <string_view>

#include <boost/algorithm/hex.hpp>

#include "QelCommon/Log.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

const std::string QelBackupURI::TYPE = "backup";

namespace {

constexpr const char* endOfStorage = "&";
constexpr const char* slash = "/";

// Logs which step failed, but not the content, which includes a password.  Returns true, the callers' result for a
// failure.
bool failure(int line, const char* function, const char* prettyFunction, const char* what) {
    Log2(QEL_MODULE, "core/src/QelFunctionalityCore/QelBackupMBase", line, function, prettyFunction)
        .put(LogLevel::error, "%s", what);
    return true;
}

// Decodes two characters at a time, by the rules of scanf's %2x: a pair may be a single digit, have a sign or a prefix,
// or follow any number of blanks.  Stops without an error at the first pair that is not a number.
std::string fromHexadecimal(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size() / 2);
    std::size_t start = 0; // kept between pairs, so that a long run of blanks is scanned only once
    for (std::size_t i = 0; i < text.size(); i += 2) {
        start = std::max(start, i);
        while (start < text.size() && std::isspace(static_cast<unsigned char>(text[start])))
            ++start;
        std::array<char, 3> pair{};
        text.substr(start).copy(pair.data(), 2);
        unsigned byte = 0;
        if (std::sscanf(pair.data(), "%2x", &byte) <= 0) // NOLINT(cert-err34-c)
            break;
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

// decode() and encode() return true on failure.  The encoded fields are children of the root of a separate message.

bool decode(const std::string& text, std::size_t length, QelDSLocation& location) {
    const char* const signature = __PRETTY_FUNCTION__;
    const auto fail = [&](int line, const char* what) { return failure(line, "decode", signature, what); };

    const std::string bytes = fromHexadecimal(std::string_view(text).substr(0, length));
    const auto_destroy<QelMessage> message(QelMessage::getFactory()->createNew());
    if (bytes.size() > std::numeric_limits<int>::max() ||
        message->fromBinary(bytes.data(), static_cast<int>(bytes.size())) != 0)
        return fail(__LINE__, "decode binary");
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    if (!cursor)
        return fail(__LINE__, "new iterator");
    if (cursor->getObj(location, getEmptyID()) != 0)
        return fail(__LINE__, "parse object");
    return false;
}

bool encode(const QelDSLocation& location, std::string& text) {
    const char* const signature = __PRETTY_FUNCTION__;
    const auto fail = [&](int line, const char* what) { return failure(line, "encode", signature, what); };

    const auto_destroy<QelMessage> message(QelMessage::getFactory()->createNew());
    if (message->create(0) != 0)
        return fail(__LINE__, "create message");
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    if (!cursor)
        return fail(__LINE__, "new iterator");
    if (cursor->putObj(location, getEmptyID()) != 0)
        return fail(__LINE__, "encode object");
    std::string bytes;
    if (message->toBinary(bytes) != 0)
        return fail(__LINE__, "encode message");
    text.reserve(text.size() + 2 * bytes.size());
    boost::algorithm::hex_lower(bytes, std::back_inserter(text));
    return false;
}

} // namespace

QelBackupURI::QelBackupURI(const std::string& uri) {
    QelURI parsed;
    parsed.setUri(uri);
    if (!parsed.isValid() || parsed.getUriType() != TYPE)
        return;
    const std::string& path = parsed.getUriPath();
    std::size_t separator = path.find_first_of("&/");
    if (separator == std::string::npos)
        return;

    std::size_t start = 0;
    if (path.compare(separator, 1, endOfStorage) == 0) {
        QelDSLocation location;
        if (decode(path, separator, location))
            return;
        start = separator + 1;
        separator = path.find(slash, start);
        if (separator == std::string::npos)
            return;
        m_storage = location;
    }

    // After the first slash, a backslash also ends the name of the backup.
    const std::size_t end = path.find_first_of("/\\", separator + 1);
    m_backup = path.substr(start, end - start);
    if (end != std::string::npos)
        m_subPath = path.substr(end + 1);
}

int QelBackupURI::uri(QelURI& out) const {
    if (!isValid())
        return 1;
    std::string path;
    if (m_storage.isSpecified()) {
        if (encode(m_storage.get(), path))
            return 1;
        path += endOfStorage;
    }
    out.setUriType(TYPE);
    out.setUriPath(path + m_backup + slash + m_subPath);
    return 0;
}

} // namespace Qel
