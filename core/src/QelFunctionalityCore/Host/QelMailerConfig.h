#pragma once

#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A template for mail sent by the agent.
struct QEL_EXPORT QelMailTemplate : QelRecord<QelMailTemplate> {
    std::string name;
    std::string text1328;  ///< any bytes
    bool flag1607 = false; ///< a read may set it but never clears it

    static const QelWireLayout& wire;
};

/// A sender or recipient of mail.
struct QEL_EXPORT QelMailerAccount : QelRecord<QelMailerAccount> {
    std::string name;
    std::string address1099;

    static const QelWireLayout& wire;
};

/// The agent's mail notification settings.
struct QEL_EXPORT QelMailerConfig {
    bool enabled2150 = false;
    QelOptionalProperty<QelMailerAccount> account2152;
    QelOptionalProperty<QelMailerAccount> account1044;

    /// Copies `enabled2150` and the specified accounts from `other`.  Always 0.
    int merge(const QelMailerConfig& other);

    /// The accounts are nested in an element 2151.  Trap: both functors leave the cursor at that element, one level
    /// below the record's own element, and the caller has to call seekUp().  Reading a record without element 2151 does
    /// not move the cursor.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelMailerConfig& config) const;
    };
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelMailerConfig& config) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;
};

} // namespace Qel
