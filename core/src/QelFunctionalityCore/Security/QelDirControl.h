#pragma once

#include <string>
#include <string_view>

#include "QelCommon/Export.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// An LDAP control (RFC 4511, 4.1.11) in its message form.  The directory client converts it to LDAP.
struct QEL_EXPORT QelDirControl {
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

struct QEL_EXPORT QelDirControl::Reader {
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
struct QEL_EXPORT QelDirSortControl : virtual QelDirControl {
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
struct QEL_EXPORT QelDirVlvControl : virtual QelDirControl {
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

QEL_EXPORT extern QelDerivedParserFactoryT<QelDirControl, QelDirControl> factoryQelDirControl;
QEL_EXPORT extern QelDerivedParserFactoryT<QelDirVlvControl, QelDirControl> factoryQelDirVlvControl;
QEL_EXPORT extern QelDerivedParserFactoryT<QelDirSortControl, QelDirControl> factoryQelDirSortControl;

} // namespace Qel
