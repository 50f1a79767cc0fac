#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessageIterator;

/// A security identifier: the name of a user, a group or an agent.  It has the form of a Windows SID (MS-DTYP 2.4.2): a
/// revision, an authority of 48 bits, and up to 15 sub-authorities of 32 bits.
class QelSID {
public:
    /// The identifiers that have a role of their own.  The names tell the role where this library knows one.
    enum WellKnownSIDs : int {
        wellKnown0 = 0,
        wellKnown1 = 1,
        localAdministrators = 2, ///< local SID of ID 0 and type 2 in the local environment
        anonymous = 3,           ///< "S-1-5-7": what a text that can't be parsed becomes
        localAgent = 4,          ///< local SID of ID 0 and type 4 in the local environment
        anyAgent = 5,            ///< see isWellKnownSID
        wellKnown6 = 6,
        masterAgent = 7, ///< local SID of ID 0 and type 4 in the environment of the server group's master
        nobody = 8,      ///< "S-1-0-0": the default SID
        wellKnown9 = 9,
        wellKnown10 = 10,
    };
    static constexpr int wellKnownSIDCount = 11;

    /// What the texts of the system's own well-known SIDs begin with.
    static const std::string SID_PREFIX;

    static constexpr unsigned maxSubAuthorities = 15;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    /// "S-1-0-0".
    QelSID();
    /// A text that can't be parsed gives the anonymous SID, and nothing tells the caller.
    explicit QelSID(const std::string& text);

    /// Revision, number of sub-authorities, authority (6 bytes, big-endian), sub-authorities (4 bytes each, in host
    /// order).  Nothing for an empty SID.
    [[nodiscard]] const std::vector<std::uint8_t>& toBinary() const { return m_binary; }
    /// Takes a binary form of revision 1 with 1 to 15 sub-authorities; null gives an empty SID.  A `size` of 0 means
    /// that the data tell their length.  0, or -1 with the SID as it was.
    int fromBinary(const void* data, unsigned size);

    /// "S-", the revision, the authority and the sub-authorities in decimal, with "-" between them; the authority in
    /// hexadecimal from 2^32 on.  Nothing for an empty SID.
    [[nodiscard]] std::string toString() const;
    /// Parses the text form; what stands behind the last number is not looked at.  0, or -1 with the SID undefined: the
    /// caller replaces it.
    ///
    /// The authority is read in decimal only, so that one printed in hexadecimal comes back as 0: such a SID doesn't
    /// survive the trip through its text.  That is how the format is settled.
    int fromString(const std::string& text);

    [[nodiscard]] bool operator==(const QelSID& other) const { return m_binary == other.m_binary; }
    /// By the texts: 10 comes before 2.
    [[nodiscard]] bool operator<(const QelSID& other) const { return toString() < other.toString(); }

    /// Any value that isn't one of the enumeration gives what `anyAgent` does: "S-1-1000-0".
    [[nodiscard]] static QelSID createWellKnownSID(WellKnownSIDs which);
    /// Whether this is that SID.  For `anyAgent` the question is another one: whether this is the agent of any
    /// environment at all, which the constant that createWellKnownSID gives for it is not.
    [[nodiscard]] bool isWellKnownSID(WellKnownSIDs which) const;

private:
    std::vector<std::uint8_t> m_binary;
};

/// The value of the current element, the binary form in base64.  The cursor's result, or -1 for a value that isn't a
/// SID.
struct QelSID::Reader {
    int operator()(const QelMessageIterator& cursor, QelSID& sid) const;
};

/// -1 for an empty SID.
struct QelSID::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelSID& sid) const;
};

/// Whether a member of the set answers true to isWellKnownSID.
[[nodiscard]] bool containsWellKnownSID(const std::set<QelSID>& sids, QelSID::WellKnownSIDs which);

} // namespace Qel
