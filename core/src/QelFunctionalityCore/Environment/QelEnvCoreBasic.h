#pragma once

#include <cstddef>
#include <cstdint>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelCore/QelCachedItem.h"
#include "QelCore/QelContainers.h"
#include "QelFunctionalityCore/Environment/QelAlertType.h"
#include "QelFunctionalityCore/Environment/QelEnvStatus.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

class QelMessage;

/// The type of an environment: the name of its virtualisation technology.
using QelEnvType = limited_length_string<16, char>;

/// Selects one of the two configurations of an environment.
enum class EnvConfigType : int { base = 0, virtualised = 1 };

/// The flat form of an environment: its identity, followed by the bytes of its two configurations.  It contains no
/// pointers, so the cache file holds it unchanged and it is copied with memcpy.
///
/// The layout is a file format: 32-bit little-endian integers, identical for 32-bit and 64-bit processes.  Offsets:
///
///       0  reference count: number of cache snapshots that contain the record; unused in a private copy
///       4  EID of the parent environment
///      20  own EID, the key in the cache
///      36  state
///      40  transition
///      44  type, 16 bytes
///      60  five alert levels, one per reason
///      80  size of the base configuration in bytes; 0: none
///      84  size of the virtual configuration in bytes; 0: none
///      88  base configuration, then virtual configuration, each a flattened message
///
/// The length of a record is the declared size of this class plus the sizes of the two configurations, so at least its
/// last 4 bytes are unused.
class QEL_EXPORT QelEnvCoreBasic : public QelCachedItem {
public:
    /// A blank record: no identity, state 1, transition 0, no type, no alerts, no configurations.
    QelEnvCoreBasic() = default;
    /// Copies the fixed part of `other` except its reference count.  A caller that has allocated space for the
    /// configurations copies them itself.
    QelEnvCoreBasic(const QelEnvCoreBasic& other);
    QelEnvCoreBasic& operator=(const QelEnvCoreBasic&) = delete;

    /// Size of the whole record in bytes.
    [[nodiscard]] std::uint32_t length() const;
    /// Returns the length of the record and, if `out` is not null, its address.  Always returns 0.  The third argument
    /// is ignored.
    int getBuffer(const void** out, unsigned& length, const void*) const;

    /// Parses the configuration into a new message, owned by the caller; null if there is none or it cannot be parsed.
    [[nodiscard]] QelMessage* getConfig() const;
    [[nodiscard]] QelMessage* getVirtualConfig() const;

    /// The bytes of the configurations, not terminated.
    [[nodiscard]] const char* configBytes() const;
    [[nodiscard]] const char* virtualConfigBytes() const;

    void resetVirtualConfigData();
    /// Moves the virtual configuration to the front and drops the base one.  Moves at most as many bytes as the base
    /// configuration has, so a longer virtual configuration is truncated: the truncation is part of the contract.
    void resetConfigData();

    // Each of these returns a private record, freed with deleter_free, or null if memory is exhausted.

    /// The fixed part and the base configuration of `a`, the virtual configuration of `b`, and the type of `b` if
    /// specified.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createInstance(const QelEnvCoreBasic& a,
                                                                           const QelEnvCoreBasic& b);
    /// A deep copy.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createInstance(const QelEnvCoreBasic& a);
    /// A record with the element under the cursor as one of its configurations and with the type from that element.  A
    /// null cursor makes a blank record.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createInstance(const QelMessageIterator* it,
                                                                           EnvConfigType type);
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createInstance(const QelMessageIterator& it,
                                                                           EnvConfigType type);
    /// A copy of `old` with one configuration replaced by the element under the cursor.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic>
    createInstance(const QelMessageIterator* it, const QelEnvCoreBasic& old, EnvConfigType type);
    /// The fixed part of `head`, followed by `dataSize` zero bytes for the configurations.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createWithRoom(const QelEnvCoreBasic& head,
                                                                           std::size_t dataSize);

    QelEID parentEID;
    QelEID eid;
    QelEnvStatus status;
    QelEnvType type;
    QelAlertType alertType[qelAlertReasonCount] = {};
    std::uint32_t configSize = 0;
    std::uint32_t vconfigSize = 0;
    char data[1] = {}; // first byte of the configurations
};

/// Size of the fixed part of a record, included in every length.
inline constexpr std::uint32_t qelEnvCoreBasicSize = sizeof(QelEnvCoreBasic);
static_assert(qelEnvCoreBasicSize == 92);

} // namespace Qel
