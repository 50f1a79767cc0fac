#pragma once

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Monitoring/QelPerfStat.h"
#include "QelFunctionalityCore/Monitoring/QelTimeInterval.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

class QelVocMap;

/// What the counters of an environment were over an interval.
struct QelMonitorData {
    /// By the counter's name: the ID of its parameter in the vocabulary.
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

/// Adds the counters that are there to `data`.  -1 at the first one that can't be read, or without a readable
/// identifier or interval; then the error message tells which.  A subsystem or an instance without anything in it is
/// left out, and so is what stands behind a counter without a name in its instance, with that counter.
struct QelMonitorData::Reader {
    /// The form of a counter is what the vocabulary tells (see QelVocMap::readValueType), and integer where it tells
    /// none, or is null.
    explicit Reader(const boost::shared_ptr<QelVocMap>& vocMap = {}) : vocabulary(vocMap) {}

    int operator()(const QelMessageIterator& cursor, QelMonitorData& report) const;

    boost::shared_ptr<QelVocMap> vocabulary;
};

/// Writes each counter in its own form.
struct QelMonitorData::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelMonitorData& report) const;
};

} // namespace Qel
