#include "QelFunctionalityCore/Network/QelNetDevice.h"

#include <algorithm>

#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

int kindOf(const QelMessageIterator& cursor) {
    if (cursor.seekPresence("device_kind_first"_element) == 0)
        return QelNetDevice::kindFirst;
    return cursor.seekPresence("device_kind_second"_element) == 0 ? QelNetDevice::kindSecond : 0;
}

int readKind(const QelMessageIterator& cursor, QelNetDevice& device) {
    device.kind = 0;
    if (cursor.seek("status"_element) != 0)
        return 0;
    device.kind = kindOf(cursor);
    cursor.seekUp();
    return device.kind == 0 ? -1 : 0;
}

// A kind with neither of the two bits is written as an empty element, which every reader rejects: a device from a newer
// service must not be mistaken for a device without a kind.
int writeKind(QelMessageIterator& cursor, const QelNetDevice& device) {
    if (device.kind == 0)
        return 0;
    cursor.newChild("status"_element);
    if (device.kind & QelNetDevice::kindFirst)
        cursor.putChild("device_kind_first"_element);
    else if (device.kind & QelNetDevice::kindSecond)
        cursor.putChild("device_kind_second"_element);
    cursor.seekUp();
    return 0;
}

} // namespace

template <> struct Wire<QelNetDevice> : WireWords<QelNetDevice> {
    static constexpr int nsId = 292, typeId = 166;
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, ignored, always).bestEffort(),
        list<&R::ipAddresses>(2047, ignored).bestEffort(),
        field<&R::text2048>(2048, ignored, ifSet, base64).bestEffort(),
        field<&R::text1282>(1282, ignored, ifSet).bestEffort(),
        field<&R::text2307>(2307, ignored, ifSet).bestEffort(),
        flag<&R::flag2066>(2066).bestEffort(),
        flag<&R::flag2305>(2305).bestEffort(),
        step<&readKind, &writeKind>("kind", "status"_element, optional, ifSet),
    };
};
const QelWireLayout& QelNetDevice::wire = wireLayoutOf<QelNetDevice>;

int QelNetDevice::Reader::operator()(const QelMessageIterator& cursor, QelNetDevice& device) const {
    const int result = readByLayout(QelNetDevice::wire, &device, cursor);
    // Only the kind can fail.  The cursor is left at its element so that the caller can inspect the unknown content;
    // such a message is rejected as a whole, so nothing else is read through this cursor.
    if (result != 0)
        cursor.seek("status"_element);
    return result;
}

template <> struct Wire<QelNetNIC> : WireWords<QelNetNIC> {
    static constexpr int nsId = 292, typeId = 167;
    static constexpr QelWireField fields[] = {
        base<QelNetDevice>(),
        field<&R::text1836>(1836, ignored, ifSet).bestEffort(),
    };
};
const QelWireLayout& QelNetNIC::wire = wireLayoutOf<QelNetNIC>;

template <> struct Wire<QelNetVLAN> : WireWords<QelNetVLAN> {
    static constexpr int nsId = 299, typeId = 217;
    static constexpr QelWireField fields[] = {
        base<QelNetDevice>(),
        field<&R::text2051>(2051, ignored, always).bestEffort(),
        field<&R::text2052>(2052, ignored, always).bestEffort(),
        field<&R::text1836>(1836, ignored, ifSet).bestEffort(),
    };
};
const QelWireLayout& QelNetVLAN::wire = wireLayoutOf<QelNetVLAN>;

template class QelDerivedParserFactory<QelNetDevice>;

QelDerivedParserFactoryT<QelNetDevice, QelNetDevice> factoryQelNetDevice(true);
QelDerivedParserFactoryT<QelNetNIC, QelNetDevice> factoryQelNetNIC(false);
QelDerivedParserFactoryT<QelNetVLAN, QelNetDevice> factoryQelNetVLAN(false);
QelDerivedParserFactoryT<QelNetBridge, QelNetDevice> factoryQelNetBridge(false);

namespace {

bool matches(const std::string& wanted, const std::string& actual) {
    return wanted.empty() || wanted == actual;
}

// Conditions of the derived classes, in addition to those of QelNetDevice.
bool matchesOwnFields(const QelNetNIC& device, const QelNetNIC& filter) {
    return matches(filter.text1836, device.text1836);
}
bool matchesOwnFields(const QelNetVLAN& device, const QelNetVLAN& filter) {
    return matches(filter.text2051, device.text2051) && matches(filter.text2052, device.text2052);
}
bool matchesOwnFields(const QelNetBridge&, const QelNetBridge&) {
    return true;
}

// Returns true if the filter is not a `Device`, or if both are `Device` objects with matching fields.
template <class Device> bool matchesAs(const QelNetDevice& device, const QelNetDevice& filter) {
    const auto* const wanted = dynamic_cast<const Device*>(&filter);
    if (!wanted)
        return true;
    const auto* const actual = dynamic_cast<const Device*>(&device);
    return actual && matchesOwnFields(*actual, *wanted);
}

bool hasAddress(const QelNetDevice& device, const QelIPAddress& wanted) {
    return std::any_of(device.ipAddresses.begin(), device.ipAddresses.end(), ipCompare(wanted));
}

} // namespace

bool checkFilter(const boost::shared_ptr<QelNetDevice>& device, const boost::shared_ptr<QelNetDevice>& filter) {
    return matches(filter->id, device->id) && matchesAs<QelNetNIC>(*device, *filter) &&
           matchesAs<QelNetVLAN>(*device, *filter) && matchesAs<QelNetBridge>(*device, *filter) &&
           std::all_of(filter->ipAddresses.begin(), filter->ipAddresses.end(),
                       [&](const QelIPAddress& wanted) { return hasAddress(*device, wanted); }) &&
           matches(filter->text2048, device->text2048);
}

} // namespace Qel
