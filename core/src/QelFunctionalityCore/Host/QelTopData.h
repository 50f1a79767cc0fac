#pragma once

#include <string>
#include <vector>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The environments with the highest values of a metric, and the total over all environments.
///
/// Values are either integers or doubles.  The message does not specify which; the caller, who requested the metric,
/// passes it to the reader.
struct QEL_EXPORT QelTopData {
    /// Only the member selected by `isWhole` is read and written; the other one is left unchanged.
    struct Value {
        long long whole = 0;
        double real = 0;
    };

    struct TopSet {
        QelEID eid;
        Value value;

        /// Nonzero if the environment or the value cannot be read.
        class Reader {
        public:
            explicit Reader(bool isWhole = false) : m_isWhole(isWhole) {}
            int operator()(const QelMessageIterator& cursor, TopSet& entry) const;

        private:
            bool m_isWhole;
        };
        class Writer : public QelWriterBaseT<Writer> {
        public:
            explicit Writer(bool isWhole = false) : m_isWhole(isWhole) {}
            int operator()(QelMessageIterator& cursor, const TopSet& entry) const;

        private:
            bool m_isWhole;
        };
        using reader_type = Reader;
        using writer_type = Writer;
    };

    std::vector<TopSet> entries;
    Value total;
    bool isWhole = false; ///< values are integers; the reader stores its constructor's argument here

    /// Stops with -1 at the first entry that cannot be read.  Nonzero if there is no total.
    class Reader {
    public:
        explicit Reader(bool isWhole = false) : m_isWhole(isWhole) {}
        int operator()(const QelMessageIterator& cursor, QelTopData& data) const;

    private:
        bool m_isWhole;
    };
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelTopData& data) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Parameters of a request for QelTopData.
struct QEL_EXPORT QelTopInfo : QelRecord<QelTopInfo> {
    std::string f1017;
    bool f1378 = false;
    bool f1346 = false;
    QelEIDList f1899;

    static const QelWireLayout& wire;
};

} // namespace Qel
