#include "QelFunctionalityCore/Host/QelCommonDevice.h"

#include <boost/make_shared.hpp>

#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template class QelDerivedParserFactory<QelCommonDevice>;

QelDerivedParserFactoryT<QelCommonDevice, QelCommonDevice> factoryQelCommonDevice(true);
QelDerivedParserFactoryT<QelWindowsDevice, QelCommonDevice> factoryQelWindowsDevice(false);
QelDerivedParserFactoryT<QelScsiDevice, QelCommonDevice> factoryQelScsiDevice(false);

boost::shared_ptr<QelCommonDevice> QelCommonDevice::clone() const {
    return boost::make_shared<QelCommonDevice>(*this);
}

boost::shared_ptr<QelCommonDevice> QelWindowsDevice::clone() const {
    return boost::make_shared<QelWindowsDevice>(*this);
}

boost::shared_ptr<QelCommonDevice> QelScsiDevice::clone() const {
    return boost::make_shared<QelScsiDevice>(*this);
}

template <> struct Wire<QelCommonDevice> : WireWords<QelCommonDevice> {
    static constexpr int nsId = 278, typeId = 301;
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, ignored, always),
        field<&R::description>(1496, ignored, always),
    };
};
const QelWireLayout& QelCommonDevice::wire = wireLayoutOf<QelCommonDevice>;

template <> struct Wire<QelWindowsDevice> : WireWords<QelWindowsDevice> {
    static constexpr int nsId = 278, typeId = 302;
    static constexpr QelWireField fields[] = {
        base<QelCommonDevice>(),
        field<&R::f2112>(2112, ignored, always),
    };
};
const QelWireLayout& QelWindowsDevice::wire = wireLayoutOf<QelWindowsDevice>;

} // namespace Qel
