#include "QelFunctionalityCore/Host/QelMailerConfig.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelMailTemplate> : WireWords<QelMailTemplate> {
    static constexpr QelWireField fields[] = {
        field<&QelMailTemplate::name>(1026, required, always),
        field<&QelMailTemplate::text1328>(1328, required, always, base64),
        flag<&QelMailTemplate::flag1607>(1607).kept(),
    };
};
template <> const QelWireLayout& qelWireLayout<QelMailTemplate>() {
    return wireLayoutOf<QelMailTemplate>;
}

template <> struct Wire<QelMailerAccount> : WireWords<QelMailerAccount> {
    static constexpr QelWireField fields[] = {
        field<&QelMailerAccount::name>(1026, optional, always),
        field<&QelMailerAccount::address1099>(1099, optional, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelMailerAccount>() {
    return wireLayoutOf<QelMailerAccount>;
}

template <> struct Wire<QelMailerConfig> : WireWords<QelMailerConfig> {
    static constexpr int enabledElement = 2150, accountsElement = 2151;
    static constexpr QelWireField accounts[] = {
        field<&QelMailerConfig::account2152>(2152, optional, ifSet).kept(),
        field<&QelMailerConfig::account1044>(1044, optional, ifSet).kept(),
    };
    static constexpr QelWireField fields[] = {
        field<&QelMailerConfig::enabled2150>(enabledElement, required, always),
        grouped<accounts>("accounts", accountsElement, optional),
    };
};
template <> const QelWireLayout& qelWireLayout<QelMailerConfig>() {
    return wireLayoutOf<QelMailerConfig>;
}

int QelMailerConfig::merge(const QelMailerConfig& other) {
    enabled2150 = other.enabled2150;
    for (const auto account : {&QelMailerConfig::account2152, &QelMailerConfig::account1044})
        if ((other.*account).isSpecified())
            (this->*account).set((other.*account).get());
    return 0;
}

// The functors go by the table, and then down to where they leave the cursor.

int QelMailerConfig::Reader::operator()(const QelMessageIterator& cursor, QelMailerConfig& config) const {
    const int result = readByLayout(qelWireLayout<QelMailerConfig>(), &config, cursor);
    bool isEnabled = false;
    if (cursor.getValue(isEnabled, Wire<QelMailerConfig>::enabledElement) == 0)
        cursor.seek(Wire<QelMailerConfig>::accountsElement);
    return result;
}

int QelMailerConfig::Writer::operator()(QelMessageIterator& cursor, const QelMailerConfig& config) const {
    const int result = writeByLayout(qelWireLayout<QelMailerConfig>(), &config, cursor);
    cursor.seek(Wire<QelMailerConfig>::accountsElement);
    return result;
}

} // namespace Qel
