#include "QelFunctionalityCore/Security/QelSID.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Security/QelLocalSID.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

namespace {

constexpr std::size_t revisionOffset = 0;
constexpr std::size_t countOffset = 1;
constexpr std::size_t authorityOffset = 2;
constexpr std::size_t authoritySize = 6;
constexpr std::size_t headSize = authorityOffset + authoritySize;
constexpr std::size_t subAuthoritySize = 4;
constexpr unsigned currentRevision = 1;
constexpr const char* blanks = " \t\n\v\f\r"; ///< white space that strtoul() skips

std::uint32_t subAuthority(const std::vector<std::uint8_t>& binary, std::size_t index) {
    std::uint32_t value = 0;
    std::memcpy(&value, binary.data() + headSize + index * subAuthoritySize, subAuthoritySize);
    return value;
}

// Parses the numbers of a SID's string form from left to right.
class TextReader {
public:
    explicit TextReader(const std::string& text) : m_at(text.c_str()) {}

    bool skip(char expected) {
        if (*m_at != expected)
            return false;
        ++m_at;
        return true;
    }
    void skipTo(char wanted) {
        while (*m_at != '\0' && *m_at != wanted)
            ++m_at;
    }

    bool readRevision(std::uint8_t& revision) {
        char* end = nullptr;
        const long value = std::strtol(m_at, &end, 0);
        if (end == m_at || value < 1 || value > std::numeric_limits<std::uint8_t>::max())
            return false;
        m_at = end;
        revision = static_cast<std::uint8_t>(value);
        return true;
    }
    // Does not advance; the caller continues with skipTo().
    bool readAuthority(std::uint64_t& authority) const {
        long long value = 0;
        if (std::sscanf(m_at, "%lld", &value) != 1) // NOLINT(cert-err34-c)
            return false;
        authority = static_cast<std::uint64_t>(value);
        return true;
    }
    // Emulates strtoul() with base 0 and a 32-bit `unsigned long` on all platforms: a minus sign negates modulo 2^32
    // ("-7" is 4294967289), and an overflow saturates to the largest value, which is rejected.
    bool readSubAuthority(std::uint32_t& value) {
        constexpr std::uint32_t largest = std::numeric_limits<std::uint32_t>::max();
        char* end = nullptr;
        const unsigned long long parsed = std::strtoull(m_at, &end, 0);
        const bool isNegative = *(m_at + std::strspn(m_at, blanks)) == '-';
        const unsigned long long magnitude = isNegative ? 0 - parsed : parsed;
        const auto wrapped = static_cast<std::uint32_t>(parsed);
        // A 64-bit overflow, ULLONG_MAX, also truncates to `largest`.
        if (end == m_at || magnitude > largest || wrapped == largest)
            return false;
        m_at = end;
        value = wrapped;
        return true;
    }

private:
    const char* m_at;
};

void storeAuthority(std::vector<std::uint8_t>& binary, std::uint64_t authority) {
    for (std::size_t i = 0; i < authoritySize; ++i)
        binary[authorityOffset + i] = static_cast<std::uint8_t>(authority >> (8 * (authoritySize - 1 - i)));
}

// Returns a constant SID; all are parsed at the first call.
const QelSID& fixedWellKnownSID(QelSID::WellKnownSIDs which) {
    static const QelSID fixed[] = {
        QelSID(QelSID::SID_PREFIX + '1'),    QelSID(QelSID::SID_PREFIX + '2'),    QelSID("S-1-5-7"),
        QelSID(QelSID::SID_PREFIX + '0'),    QelSID(QelSID::SID_PREFIX + '4'),    QelSID("S-1-0-0"),
        QelSID(QelSID::SID_PREFIX + "1001"), QelSID(QelSID::SID_PREFIX + "1002"),
    };
    switch (which) {
    case QelSID::wellKnown0:
        return fixed[0];
    case QelSID::wellKnown1:
        return fixed[1];
    case QelSID::anonymous:
        return fixed[2];
    case QelSID::wellKnown6:
        return fixed[4];
    case QelSID::nobody:
        return fixed[5];
    case QelSID::wellKnown9:
        return fixed[6];
    case QelSID::wellKnown10:
        return fixed[7];
    default:
        return fixed[3];
    }
}

QelSID masterAgentSID() {
    QelEID master;
    static_cast<void>(QelConfiguration::getLocalConfig().getMaster(master));
    if (!master.isValid())
        return QelSID::createWellKnownSID(QelSID::localAgent);
    return QelLocalSID(0, QelLocalSID::type4, master).getSID();
}

} // namespace

const std::string QelSID::SID_PREFIX = "S-1-1000-";

QelSID::QelSID() : m_binary{currentRevision, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0} {}

QelSID::QelSID(const std::string& text) {
    if (fromString(text) != 0)
        *this = createWellKnownSID(anonymous);
}

int QelSID::fromBinary(const void* data, unsigned size) {
    if (!data) {
        m_binary.clear();
        return 0;
    }
    constexpr unsigned shortest = headSize + subAuthoritySize;
    if (size != 0 && size < shortest)
        return -1;
    const auto* const bytes = static_cast<const std::uint8_t*>(data);
    const unsigned count = bytes[countOffset];
    if (bytes[revisionOffset] != currentRevision || count < 1 || count > maxSubAuthorities)
        return -1;
    const std::size_t expected = headSize + count * subAuthoritySize;
    if (size != 0 && size != expected)
        return -1;
    m_binary.assign(bytes, bytes + expected);
    return 0;
}

std::string QelSID::toString() const {
    if (m_binary.empty())
        return {};
    std::string text = "S-" + std::to_string(m_binary[revisionOffset]) + '-';
    const std::uint8_t* const authority = m_binary.data() + authorityOffset;
    std::array<char, 2 + 2 * authoritySize + 1> number{};
    if (authority[0] != 0 || authority[1] != 0)
        std::snprintf(number.data(), number.size(), "0x%02x%02x%02x%02x%02x%02x", authority[0], authority[1],
                      authority[2], authority[3], authority[4], authority[5]);
    else
        std::snprintf(number.data(), number.size(), "%u",
                      std::uint32_t{authority[2]} << 24 | std::uint32_t{authority[3]} << 16 |
                          std::uint32_t{authority[4]} << 8 | std::uint32_t{authority[5]});
    text += number.data();
    for (std::size_t i = 0; i < m_binary[countOffset]; ++i)
        text += '-' + std::to_string(subAuthority(m_binary, i));
    return text;
}

int QelSID::fromString(const std::string& text) {
    m_binary.assign(headSize + maxSubAuthorities * subAuthoritySize, 0);
    TextReader reader(text);
    if (!reader.skip('S') || !reader.skip('-') || !reader.readRevision(m_binary[revisionOffset]) || !reader.skip('-'))
        return -1;
    std::uint64_t authority = 0;
    if (!reader.readAuthority(authority))
        return -1;
    storeAuthority(m_binary, authority);

    reader.skipTo('-');
    std::uint8_t& count = m_binary[countOffset];
    while (reader.skip('-')) {
        std::uint32_t value = 0;
        if (count == maxSubAuthorities || !reader.readSubAuthority(value))
            return -1;
        std::memcpy(m_binary.data() + headSize + count * subAuthoritySize, &value, subAuthoritySize);
        ++count;
    }
    m_binary.resize(headSize + count * subAuthoritySize);
    return 0;
}

QelSID QelSID::createWellKnownSID(WellKnownSIDs which) {
    switch (which) {
    case localAdministrators:
        return QelLocalSID(0, QelLocalSID::type2).getSID();
    case localAgent:
        return QelLocalSID(0, QelLocalSID::type4).getSID();
    case masterAgent:
        return masterAgentSID();
    default:
        return fixedWellKnownSID(which);
    }
}

bool QelSID::isWellKnownSID(WellKnownSIDs which) const {
    if (which != anyAgent)
        return *this == createWellKnownSID(which);
    const QelLocalSID local(*this);
    return *this == QelLocalSID(0, QelLocalSID::type4, local.getEID()).getSID();
}

bool containsWellKnownSID(const std::set<QelSID>& sids, QelSID::WellKnownSIDs which) {
    return std::any_of(sids.begin(), sids.end(), [&](const QelSID& sid) { return sid.isWellKnownSID(which); });
}

int QelSID::Reader::operator()(const QelMessageIterator& cursor, QelSID& sid) const {
    std::string bytes;
    if (const int result = cursor.getValueBase64(bytes, getEmptyID()))
        return result;
    return bytes.empty() ? -1 : sid.fromBinary(bytes.data(), static_cast<unsigned>(bytes.size()));
}

int QelSID::Writer::operator()(QelMessageIterator& cursor, const QelSID& sid) const {
    const auto& binary = sid.toBinary();
    if (binary.empty())
        return -1;
    return cursor.putValueBase64(reinterpret_cast<const char*>(binary.data()), static_cast<int>(binary.size()),
                                 getEmptyID());
}

} // namespace Qel
