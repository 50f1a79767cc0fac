#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Values/QelIPAddress.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A network device of a host, or a filter for such devices (see checkFilter()).  What the fields without a name mean
/// is the business of the service that owns the devices.
struct QelNetDevice {
    virtual ~QelNetDevice() = default;

    /// Bits of `kind`.
    enum Kind : int { kindFirst = 1, kindSecond = 2 };

    std::string id; ///< identity on the host
    std::vector<QelIPAddress> ipAddresses;
    std::string text2048; ///< may hold any bytes
    std::string text1282;
    std::string text2307;
    bool flag2066 = false;
    bool flag2305 = false;
    int kind = 0; ///< bits of Kind, of which one crosses the wire, `kindFirst` before `kindSecond`

    struct Reader;
    using Writer = QelRecordWriter<QelNetDevice>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// -1, and the cursor is left at the element of the kind, if that names none.  Every other field may be missing or
/// malformed, and then stays as it was.
struct QelNetDevice::Reader {
    int operator()(const QelMessageIterator& cursor, QelNetDevice& device) const;
};

/// A physical adapter.
struct QelNetNIC : QelNetDevice {
    std::string text1836;

    using Reader = QelRecordReader<QelNetNIC>;
    using Writer = QelRecordWriter<QelNetNIC>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A virtual network on an adapter.
struct QelNetVLAN : QelNetDevice {
    std::string text2051;
    std::string text2052;
    std::string text1836;

    using Reader = QelRecordReader<QelNetVLAN>;
    using Writer = QelRecordWriter<QelNetVLAN>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A bridge.
struct QelNetBridge : QelNetDevice {
    using Reader = QelReaderAs<QelNetDevice>;
    using Writer = QelWriterAs<QelNetDevice, 299, 218>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Whether a device satisfies a filter: a device whose fields that aren't empty are the conditions.  Neither is null.
///
/// A filter of class QelNetDevice takes devices of every class, one of a derived class its own class only.  Compared
/// are `id`, `text2048`, a NIC's `text1836`, and a VLAN's `text2051` and `text2052`.  For each address of the filter
/// the device must have one that ipCompare finds to be it.  The other fields take no part.
[[nodiscard]] bool checkFilter(const boost::shared_ptr<QelNetDevice>& device,
                               const boost::shared_ptr<QelNetDevice>& filter);

extern template class QelDerivedParserFactory<QelNetDevice>;

extern QelDerivedParserFactoryT<QelNetDevice, QelNetDevice> factoryQelNetDevice;
extern QelDerivedParserFactoryT<QelNetNIC, QelNetDevice> factoryQelNetNIC;
extern QelDerivedParserFactoryT<QelNetVLAN, QelNetDevice> factoryQelNetVLAN;
extern QelDerivedParserFactoryT<QelNetBridge, QelNetDevice> factoryQelNetBridge;

} // namespace Qel
