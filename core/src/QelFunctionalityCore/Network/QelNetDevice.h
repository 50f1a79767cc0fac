#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelIPAddress.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A network device of a host, or a filter for such devices (see checkFilter()).  The service that owns the devices
/// defines the fields without a name.
struct QEL_EXPORT QelNetDevice : QelRecord<QelNetDevice> {
    virtual ~QelNetDevice() = default;

    /// Bits of `kind`.
    enum Kind : int { kindFirst = 1, kindSecond = 2 };

    std::string id; ///< unique on the host
    std::vector<QelIPAddress> ipAddresses;
    std::string text2048; ///< may hold any bytes
    std::string text1282;
    std::string text2307;
    bool flag2066 = false;
    bool flag2305 = false;
    int kind = 0; ///< bits of Kind; at most one is sent, `kindFirst` in preference to `kindSecond`

    struct Reader;
    using reader_type = Reader;

    static const QelWireLayout& wire;
};

/// Returns -1 and leaves the cursor at the element of the kind if that is not a known kind.  All other fields may be
/// missing or malformed and are then left unchanged, except that a missing flag reads as false.
struct QEL_EXPORT QelNetDevice::Reader {
    int operator()(const QelMessageIterator& cursor, QelNetDevice& device) const;
};

/// A physical adapter.
struct QEL_EXPORT QelNetNIC : QelRecord<QelNetNIC, QelNetDevice> {
    std::string text1836;

    static const QelWireLayout& wire;
};

/// A VLAN on an adapter.
struct QEL_EXPORT QelNetVLAN : QelRecord<QelNetVLAN, QelNetDevice> {
    std::string text2051;
    std::string text2052;
    std::string text1836;

    static const QelWireLayout& wire;
};

/// A bridge.
struct QelNetBridge : QelRecordAs<QelNetDevice, 299, 218> {};

/// Returns whether a device matches a filter.  The non-empty fields of the filter are the conditions.  Neither pointer
/// may be null.
///
/// A filter of class QelNetDevice matches devices of every class, a filter of a derived class only its own class.
/// Compared are `id`, `text2048`, `text1836` of a NIC, and `text2051` and `text2052` of a VLAN.  For each address of
/// the filter the device must have one that is equal according to ipCompare.  All other fields are ignored.
QEL_EXPORT [[nodiscard]] bool checkFilter(const boost::shared_ptr<QelNetDevice>& device,
                                          const boost::shared_ptr<QelNetDevice>& filter);

extern template class QelDerivedParserFactory<QelNetDevice>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelNetDevice, QelNetDevice> factoryQelNetDevice;
QEL_EXPORT extern QelDerivedParserFactoryT<QelNetNIC, QelNetDevice> factoryQelNetNIC;
QEL_EXPORT extern QelDerivedParserFactoryT<QelNetVLAN, QelNetDevice> factoryQelNetVLAN;
QEL_EXPORT extern QelDerivedParserFactoryT<QelNetBridge, QelNetDevice> factoryQelNetBridge;

} // namespace Qel
