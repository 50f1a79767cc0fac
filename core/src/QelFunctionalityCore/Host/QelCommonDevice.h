#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A device of a host.
struct QelCommonDevice : QelRecord<QelCommonDevice> {
    virtual ~QelCommonDevice() = default;

    /// Returns a copy with the dynamic type of the object.
    [[nodiscard]] virtual boost::shared_ptr<QelCommonDevice> clone() const;

    std::string name;
    std::string description;

    static const QelWireLayout& wire;
};

struct QelWindowsDevice : QelRecord<QelWindowsDevice, QelCommonDevice> {
    [[nodiscard]] boost::shared_ptr<QelCommonDevice> clone() const override;

    std::string f2112;

    static const QelWireLayout& wire;
};

struct QelScsiDevice : QelRecordAs<QelWindowsDevice, 278, 303> {
    [[nodiscard]] boost::shared_ptr<QelCommonDevice> clone() const override;
};

extern template class QelDerivedParserFactory<QelCommonDevice>;

extern QelDerivedParserFactoryT<QelCommonDevice, QelCommonDevice> factoryQelCommonDevice;
extern QelDerivedParserFactoryT<QelWindowsDevice, QelCommonDevice> factoryQelWindowsDevice;
extern QelDerivedParserFactoryT<QelScsiDevice, QelCommonDevice> factoryQelScsiDevice;

} // namespace Qel
