#pragma once

#include <string>

#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A template of the mail that the agent sends.
struct QelMailTemplate {
    std::string name;
    std::string text1328;  ///< any bytes
    bool flag1607 = false; ///< reading sets it, and never clears it

    using Reader = QelRecordReader<QelMailTemplate>;
    using Writer = QelRecordWriter<QelMailTemplate>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A sender or receiver of mail.
struct QelMailerAccount {
    std::string name;
    std::string address1099;

    using Reader = QelRecordReader<QelMailerAccount>;
    using Writer = QelRecordWriter<QelMailerAccount>;
    using reader_type = Reader;
    using writer_type = Writer;
};

/// The agent's mail notification settings.
struct QelMailerConfig {
    bool enabled2150 = false;
    QelOptionalProperty<QelMailerAccount> account2152;
    QelOptionalProperty<QelMailerAccount> account1044;

    /// Takes over whether mail is enabled, and those accounts that `other` has; always 0.
    int merge(const QelMailerConfig& other);

    /// The accounts lie in an element 2151, and both functors leave the cursor there: whoever goes on with it stands
    /// one level deeper, and one seekUp() leads to the record's own element.  Reading a record without that element
    /// leaves the cursor where it was.
    struct Reader {
        int operator()(const QelMessageIterator& cursor, QelMailerConfig& config) const;
    };
    struct Writer : QelWriterBaseT<Writer> {
        int operator()(QelMessageIterator& cursor, const QelMailerConfig& config) const;
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

} // namespace Qel
