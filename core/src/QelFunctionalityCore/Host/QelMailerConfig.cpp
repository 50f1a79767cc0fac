#include "QelFunctionalityCore/Host/QelMailerConfig.h"

#include <span>

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelMailTemplate> : WireWords<QelMailTemplate> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),
        field<&R::text1328>(1328, required, always, base64),
        flag<&R::flag1607>(1607).kept(),
    };
};
const QelWireLayout& QelMailTemplate::wire = wireLayoutOf<QelMailTemplate>;

template <> struct Wire<QelMailerAccount> : WireWords<QelMailerAccount> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, optional, always),
        field<&R::address1099>(1099, optional, always),
    };
};
const QelWireLayout& QelMailerAccount::wire = wireLayoutOf<QelMailerAccount>;

template <> struct Wire<QelMailerConfig> : WireWords<QelMailerConfig> {
    static constexpr QelWireField accounts[] = {
        field<&R::account2152>(2152, optional, ifSet).kept(),
        field<&R::account1044>(1044, optional, ifSet).kept(),
    };
    static constexpr QelWireField fields[] = {
        field<&R::enabled2150>("mail_enabled"_element, required, always),
        grouped<accounts>("accounts", "mail_accounts"_element, optional),
    };
};
const QelWireLayout& QelMailerConfig::wire = wireLayoutOf<QelMailerConfig>;

int QelMailerConfig::merge(const QelMailerConfig& other) {
    enabled2150 = other.enabled2150;
    for (const auto account : {&QelMailerConfig::account2152, &QelMailerConfig::account1044})
        if ((other.*account).isSpecified())
            (this->*account).set((other.*account).get());
    return 0;
}

namespace {

constexpr QelWireLayout partOf(std::span<const QelWireField> rows) {
    QelWireLayout part = wireLayoutOf<QelMailerConfig>;
    part.fields = rows;
    part.readingOrder = part.readingOrder.first(rows.size());
    return part;
}
constexpr QelWireLayout head = partOf(wireLayoutOf<QelMailerConfig>.fields.first(1));
constexpr QelWireLayout accounts = partOf(Wire<QelMailerConfig>::accounts);

} // namespace

// Both functors leave the cursor at the accounts element; see the header.

int QelMailerConfig::Reader::operator()(const QelMessageIterator& cursor, QelMailerConfig& config) const {
    if (readByLayout(head, &config, cursor) != 0)
        return -1;
    return cursor.seek("mail_accounts"_element) == 0 ? readByLayout(accounts, &config, cursor) : 0;
}

int QelMailerConfig::Writer::operator()(QelMessageIterator& cursor, const QelMailerConfig& config) const {
    if (writeByLayout(head, &config, cursor) != 0)
        return -1;
    cursor.newChild("mail_accounts"_element);
    return writeByLayout(accounts, &config, cursor);
}

} // namespace Qel
