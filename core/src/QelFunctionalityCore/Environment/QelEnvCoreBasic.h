#pragma once

#include <cstddef>
#include <cstdint>

#include <boost/shared_ptr.hpp>

#include "QelCore/QelCachedItem.h"
#include "QelCore/QelContainers.h"
#include "QelFunctionalityCore/Environment/QelAlertType.h"
#include "QelFunctionalityCore/Environment/QelEnvStatus.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

class QelMessage;

/// The type of an environment: the name of the virtualisation technology that it belongs to.
using QelEnvType = limited_length_string<16, char>;

/// Which of an environment's two configurations is meant.
enum class EnvConfigType : int { base = 0, virtualised = 1 };

/// The one flat form of an environment: its identity, followed by the bytes of its two configurations.  It holds no
/// pointer, so it lies in the cache file as it is, and is copied with memcpy.
///
/// The layout is a file format: 32-bit little-endian integers, the same on 32 and 64 bits.
///
///       0  reference count: how many snapshots of the cache list the record; no meaning in a private copy
///       4  EID of the parent environment
///      20  own EID, the key in the cache
///      36  state, 40 transition
///      44  type, 16 bytes
///      60  five alert levels, one a reason
///      80  bytes of the base configuration, 84 of the virtual one; 0 for none
///      88  base configuration, then virtual configuration, each a flattened message
///
/// A record is as long as its declared size and the two configurations together, so at least 4 bytes at its end are
/// spare.
class QelEnvCoreBasic : public QelCachedItem {
public:
    /// A blank record: no identity, status (1, 0), no type, no alerts, no configuration.
    QelEnvCoreBasic() = default;
    /// The head of another record but for its reference count.  Whoever has made room for the configurations copies
    /// them too.
    QelEnvCoreBasic(const QelEnvCoreBasic& other);
    QelEnvCoreBasic& operator=(const QelEnvCoreBasic&) = delete;

    /// Bytes of the whole record.
    [[nodiscard]] std::uint32_t length() const;
    /// Tells the record's address, if `out` isn't null, and length.  Always 0; the third argument has no meaning here.
    int getBuffer(const void** out, unsigned& length, const void*) const;

    /// The configuration as a new message, which is the caller's; null if there is none or it can't be parsed.
    [[nodiscard]] QelMessage* getConfig() const;
    [[nodiscard]] QelMessage* getVirtualConfig() const;

    /// The bytes of the configurations, which aren't terminated.
    [[nodiscard]] const char* configBytes() const;
    [[nodiscard]] const char* virtualConfigBytes() const;

    void resetVirtualConfigData();
    /// Moves the virtual configuration to the front and drops the base one.  As many bytes are moved as the base
    /// configuration has, so a longer virtual configuration loses its tail: that is how this operation is settled.
    void resetConfigData();

    // Each of these gives a private record, owned with deleter_free; null when memory is short.

    /// The head and base configuration of `a` with the virtual configuration of `b`, and its type if specified.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createInstance(const QelEnvCoreBasic& a,
                                                                           const QelEnvCoreBasic& b);
    /// A deep copy.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createInstance(const QelEnvCoreBasic& a);
    /// A record that holds the element under the cursor as one configuration, and takes its type from there; a blank
    /// one for a null cursor.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createInstance(const QelMessageIterator* it,
                                                                           EnvConfigType type);
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createInstance(const QelMessageIterator& it,
                                                                           EnvConfigType type);
    /// A copy of `old` with one configuration replaced by the element under the cursor.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic>
    createInstance(const QelMessageIterator* it, const QelEnvCoreBasic& old, EnvConfigType type);
    /// The head of another record with room for `dataSize` bytes of configurations, which are zero.
    [[nodiscard]] static boost::shared_ptr<QelEnvCoreBasic> createWithRoom(const QelEnvCoreBasic& head,
                                                                           std::size_t dataSize);

    QelEID parentEID;
    QelEID eid;
    QelEnvStatus status;
    QelEnvType type;
    QelAlertType alertType[qelAlertReasonCount] = {};
    std::uint32_t configSize = 0;
    std::uint32_t vconfigSize = 0;
    char data[1] = {}; // the first byte of the configurations
};

/// Bytes of the fixed part of a record, from which every length is counted.
inline constexpr std::uint32_t qelEnvCoreBasicSize = sizeof(QelEnvCoreBasic);
static_assert(qelEnvCoreBasicSize == 92);

} // namespace Qel
