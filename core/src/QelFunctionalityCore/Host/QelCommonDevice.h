#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A device of a host.
struct QelCommonDevice {
    virtual ~QelCommonDevice() = default;

    /// Returns a copy with the dynamic type of the object.
    [[nodiscard]] virtual boost::shared_ptr<QelCommonDevice> clone() const;

    std::string name;
    std::string description;

    using Reader = QelRecordReader<QelCommonDevice>;
    using Writer = QelRecordWriter<QelCommonDevice>;
    using reader_type = Reader;
    using writer_type = Writer;
};

struct QelWindowsDevice : QelCommonDevice {
    [[nodiscard]] boost::shared_ptr<QelCommonDevice> clone() const override;

    std::string f2112;

    using Reader = QelRecordReader<QelWindowsDevice>;
    using Writer = QelRecordWriter<QelWindowsDevice>;
    using reader_type = Reader;
    using writer_type = Writer;
};

struct QelScsiDevice : QelWindowsDevice {
    [[nodiscard]] boost::shared_ptr<QelCommonDevice> clone() const override;

    using Reader = QelReaderAs<QelWindowsDevice>;
    using Writer = QelWriterAs<QelWindowsDevice, 278, 303>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelCommonDevice>;

extern QelDerivedParserFactoryT<QelCommonDevice, QelCommonDevice> factoryQelCommonDevice;
extern QelDerivedParserFactoryT<QelWindowsDevice, QelCommonDevice> factoryQelWindowsDevice;
extern QelDerivedParserFactoryT<QelScsiDevice, QelCommonDevice> factoryQelScsiDevice;

} // namespace Qel
