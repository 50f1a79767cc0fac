#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// Security identifier of a user, a group or an agent.  It has the structure of a Windows SID (MS-DTYP 2.4.2):
/// revision, 48-bit authority, up to 15 sub-authorities of 32 bits.
class QEL_EXPORT QelSID {
public:
    /// Well-known identifiers.  Those named by number have no role that this library knows.
    enum WellKnownSIDs : int {
        wellKnown0 = 0,
        wellKnown1 = 1,
        localAdministrators = 2, ///< local SID of ID 0 and type 2 in the local environment
        anonymous = 3,           ///< "S-1-5-7"; result of parsing a malformed string
        localAgent = 4,          ///< local SID of ID 0 and type 4 in the local environment
        anyAgent = 5,            ///< see isWellKnownSID
        wellKnown6 = 6,
        masterAgent = 7, ///< local SID of ID 0 and type 4 in the environment of the server group's master
        nobody = 8,      ///< "S-1-0-0": the default SID
        wellKnown9 = 9,
        wellKnown10 = 10,
    };
    static constexpr int wellKnownSIDCount = 11;

    /// String prefix of the system's own well-known SIDs.
    static const std::string SID_PREFIX;

    static constexpr unsigned maxSubAuthorities = 15;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    /// "S-1-0-0".
    QelSID();
    /// Parses the string form.  Trap: a malformed string yields the anonymous SID without an error.
    explicit QelSID(const std::string& text);

    /// Binary form: revision (1 byte), number of sub-authorities (1 byte), authority (6 bytes, big-endian),
    /// sub-authorities (4 bytes each, host byte order).  No bytes for an empty SID.
    [[nodiscard]] const std::vector<std::uint8_t>& toBinary() const { return m_binary; }
    /// Decodes a binary form of revision 1 with 1 to 15 sub-authorities.  Null `data` yields an empty SID.  `size` 0:
    /// derive the size from the number of sub-authorities.  Returns 0, or -1 with the SID unchanged.
    int fromBinary(const void* data, unsigned size);

    /// String form: "S-", then revision, authority and sub-authorities in decimal, separated by "-".  An authority from
    /// 2^32 on is hexadecimal.  Empty for an empty SID.
    [[nodiscard]] std::string toString() const;
    /// Parses the string form; ignores anything after the last number.  Returns 0, or -1 with the SID unspecified, for
    /// the caller to replace.
    ///
    /// Trap: the format defines the authority as decimal on input, so a hexadecimal one is parsed as 0.  A SID with an
    /// authority from 2^32 on does not survive a round trip through its string form.
    int fromString(const std::string& text);

    [[nodiscard]] bool operator==(const QelSID& other) const { return m_binary == other.m_binary; }
    /// Compares string forms, so 10 sorts before 2.
    [[nodiscard]] bool operator<(const QelSID& other) const { return toString() < other.toString(); }

    /// An unknown value yields the SID of `anyAgent`, "S-1-1000-0".
    [[nodiscard]] static QelSID createWellKnownSID(WellKnownSIDs which);
    /// Whether this equals createWellKnownSID(which).  Exception: for `anyAgent`, whether this is the agent SID of any
    /// environment; the result of createWellKnownSID(anyAgent) itself is not.
    [[nodiscard]] bool isWellKnownSID(WellKnownSIDs which) const;

private:
    std::vector<std::uint8_t> m_binary;
};

/// Reads the binary form, in base64, from the value of the current element.  Returns the cursor's result, or -1 if the
/// value is not a SID.
struct QEL_EXPORT QelSID::Reader {
    int operator()(const QelMessageIterator& cursor, QelSID& sid) const;
};

/// -1 if the SID is empty.
struct QEL_EXPORT QelSID::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelSID& sid) const;
};

/// Whether isWellKnownSID(which) holds for a member of the set.
QEL_EXPORT [[nodiscard]] bool containsWellKnownSID(const std::set<QelSID>& sids, QelSID::WellKnownSIDs which);

} // namespace Qel
