#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A device of a host.
struct QEL_EXPORT QelCommonDevice : QelRecord<QelCommonDevice> {
    virtual ~QelCommonDevice() = default;

    /// Returns a copy with the dynamic type of the object.
    [[nodiscard]] virtual boost::shared_ptr<QelCommonDevice> clone() const;

    std::string name;
    std::string description;

    static const QelWireLayout& wire;
};

struct QEL_EXPORT QelWindowsDevice : QelRecord<QelWindowsDevice, QelCommonDevice> {
    [[nodiscard]] boost::shared_ptr<QelCommonDevice> clone() const override;

    std::string f2112;

    static const QelWireLayout& wire;
};

struct QEL_EXPORT QelScsiDevice : QelRecordAs<QelWindowsDevice, 278, 303> {
    [[nodiscard]] boost::shared_ptr<QelCommonDevice> clone() const override;
};

extern template class QelDerivedParserFactory<QelCommonDevice>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelCommonDevice, QelCommonDevice> factoryQelCommonDevice;
QEL_EXPORT extern QelDerivedParserFactoryT<QelWindowsDevice, QelCommonDevice> factoryQelWindowsDevice;
QEL_EXPORT extern QelDerivedParserFactoryT<QelScsiDevice, QelCommonDevice> factoryQelScsiDevice;

} // namespace Qel
