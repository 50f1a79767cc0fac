#pragma once

#include <string>
#include <string_view>

#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// An LDAP control (RFC 4511, 4.1.11), as a message carries it; the directory client makes the control's own form of
/// it.
struct QelDirControl {
    virtual ~QelDirControl() = default;

    bool critical = true;
    std::string value;
    std::string oid;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;
};

struct QelDirControl::Reader {
    /// Without an OID in the message the reading fails if it is required, and the object keeps its own otherwise.
    explicit Reader(bool requireOid = true) : oidRequired(requireOid) {}

    int operator()(const QelMessageIterator& cursor, QelDirControl& control) const;

    bool oidRequired;
};

/// Always 0.  A control is written with its OID, whatever the flag.
struct QelDirControl::Writer : QelRecordWriter<QelDirControl> {
    explicit Writer(bool = true) {}
};

/// Sorts the entries on the server (RFC 2891).
struct QelDirSortControl : virtual QelDirControl {
    static constexpr std::string_view oid = "1.2.840.113556.1.4.473";

    QelDirSortControl() { QelDirControl::oid = oid; }

    std::string attribute; ///< by which the entries are sorted
    bool reverse = false;

    using Reader = QelRecordReader<QelDirSortControl>;
    using Writer = QelRecordWriter<QelDirSortControl>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// Takes a window out of a long list (virtual list view, draft-ietf-ldapext-ldapv3-vlv).
struct QelDirVlvControl : virtual QelDirControl {
    static constexpr std::string_view oid = "2.16.840.1.113730.3.4.9";

    QelDirVlvControl() { QelDirControl::oid = oid; }

    int beforeCount = 0; ///< entries wanted before the one at `offset`
    int afterCount = 0;  ///< and behind it
    int offset = 0;
    int count = 0; ///< entries in the whole list, as far as is known

    using Reader = QelRecordReader<QelDirVlvControl>;
    using Writer = QelRecordWriter<QelDirVlvControl>;
    using reader_type = Reader;
    using writer_type = Writer;
};

extern template class QelDerivedParserFactory<QelDirControl>;

extern QelDerivedParserFactoryT<QelDirControl, QelDirControl> factoryQelDirControl;
extern QelDerivedParserFactoryT<QelDirVlvControl, QelDirControl> factoryQelDirVlvControl;
extern QelDerivedParserFactoryT<QelDirSortControl, QelDirControl> factoryQelDirSortControl;

} // namespace Qel
