#pragma once

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Monitoring/QelPerfStat.h"
#include "QelFunctionalityCore/Monitoring/QelTimeInterval.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

class QelVocMap;

/// Counter statistics of an environment over an interval.
struct QelMonitorData {
    /// Keyed by counter name: the ID of its parameter in the vocabulary.
    using Counters = std::map<std::string, QelPerfStat>;
    using Instances = std::map<std::string, Counters>;
    using Subsystems = std::map<std::string, Instances>;

    QelEID eid;
    Subsystems data;
    QelTimeInterval interval;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Adds the counters of the message to `data`.  Returns -1 if the identifier or the interval is missing or malformed,
/// and at the first malformed counter; the error message specifies which.  Empty subsystems and instances are skipped.
/// A counter without a name is skipped together with the rest of its instance.
struct QEL_EXPORT QelMonitorData::Reader {
    /// The vocabulary determines the form of a counter (see QelVocMap::readValueType); integer if it does not list the
    /// counter, or is null.
    explicit Reader(const boost::shared_ptr<QelVocMap>& vocMap = {}) : vocabulary(vocMap) {}

    int operator()(const QelMessageIterator& cursor, QelMonitorData& report) const;

    boost::shared_ptr<QelVocMap> vocabulary;
};

/// Writes each counter in the form that it is stored in.
struct QEL_EXPORT QelMonitorData::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelMonitorData& report) const;
};

} // namespace Qel
