#pragma once

#include <string>
#include <vector>

#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// The environments that have most of something, and how much all have together.
///
/// Values are either whole numbers or reals.  Which of them isn't told on the wire: whoever asked knows, and says so to
/// the reader.
struct QelTopData {
    /// Only the one of the record's representation is read and written; the other stays as it was.
    struct Value {
        long long whole = 0;
        double real = 0;
    };

    struct TopSet {
        QelEID eid;
        Value value;

        /// -1 if the environment or the value can't be read.
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
    bool isWhole = false; ///< the representation; the reader stores the one that it was made with

    /// -1 at the first entry that can't be read, or without a total.
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

/// What a list of the topmost is asked for.
struct QelTopInfo {
    std::string f1017;
    bool f1378 = false;
    bool f1346 = false;
    QelEIDList f1899;

    using Reader = QelRecordReader<QelTopInfo>;
    using Writer = QelRecordWriter<QelTopInfo>;
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
