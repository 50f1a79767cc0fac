#pragma once

#include <string>
#include <string_view>

#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// An LDAP control (RFC 4511, 4.1.11) in its message form.  The directory client converts it to LDAP.
struct QelDirControl {
    virtual ~QelDirControl() = default;

    bool critical = true;
    std::string value;
    std::string oid;

    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

struct QelDirControl::Reader {
    /// If the message contains no OID, the read fails if `requireOid`, and otherwise leaves the object's OID unchanged.
    explicit Reader(bool requireOid = true) : oidRequired(requireOid) {}

    int operator()(const QelMessageIterator& cursor, QelDirControl& control) const;

    bool oidRequired;
};

/// Always 0.  Always writes the OID; the constructor's argument is ignored.
struct QelDirControl::Writer : QelRecordWriter<QelDirControl> {
    explicit Writer(bool = true) {}
};

/// Server-side sorting (RFC 2891).
struct QelDirSortControl : virtual QelDirControl {
    static constexpr std::string_view oid = "1.2.840.113556.1.4.473";

    QelDirSortControl() { QelDirControl::oid = oid; }

    std::string attribute; ///< sort key
    bool reverse = false;

    using Reader = QelRecordReader<QelDirSortControl>;
    using Writer = QelRecordWriter<QelDirSortControl>;
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

/// Virtual list view: requests a window of a long list (draft-ietf-ldapext-ldapv3-vlv).
struct QelDirVlvControl : virtual QelDirControl {
    static constexpr std::string_view oid = "2.16.840.1.113730.3.4.9";

    QelDirVlvControl() { QelDirControl::oid = oid; }

    int beforeCount = 0; ///< number of entries requested before the one at `offset`
    int afterCount = 0;  ///< number of entries requested after it
    int offset = 0;
    int count = 0; ///< estimated number of entries in the whole list

    using Reader = QelRecordReader<QelDirVlvControl>;
    using Writer = QelRecordWriter<QelDirVlvControl>;
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

extern template class QelDerivedParserFactory<QelDirControl>;

extern QelDerivedParserFactoryT<QelDirControl, QelDirControl> factoryQelDirControl;
extern QelDerivedParserFactoryT<QelDirVlvControl, QelDirControl> factoryQelDirVlvControl;
extern QelDerivedParserFactoryT<QelDirSortControl, QelDirControl> factoryQelDirSortControl;

} // namespace Qel
