#include "QelFunctionalityCore/Security/QelDirRealm.h"

#include <string_view>

#include "QelCommon/ErrorMessage.h"
#include "QelCommon/Strings.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr const char* invalidRealm =
    "the server address or port is missing, or the search DN is not within the base DN";

bool isNotEmpty(const std::string& text) {
    return !text.empty();
}

bool isNotZero(int number) {
    return number != 0;
}

int readRealm(const QelMessageIterator& cursor, QelRealm& realm) {
    return QelRealm::Reader()(cursor, realm) == 0 && realm.type == QelDirRealm::directoryType ? 0 : -1;
}

int writeRealm(QelMessageIterator& cursor, const QelRealm& realm) {
    return QelRealm::Writer()(cursor, realm);
}

} // namespace

template <> struct Wire<QelDirRealm::LoginType> : WireWords<QelDirRealm::LoginType> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::domain>(1374, ignored, ifSet, base64),
        field<&R::loginName>(1026, ignored, ifSet, base64),
        field<&R::realm>(1957, ignored, ifSet),
    };
};
const QelWireLayout& QelDirRealm::LoginType::wire = wireLayoutOf<QelDirRealm::LoginType>;

template <> struct Wire<QelDirRealm> : WireWords<QelDirRealm> {
    static constexpr int nsId = 270, typeId = 182;
    static constexpr QelWireField fields[] = {
        field<&R::loginType>(1630, ignored, always).bestEffort(),
        step<&readRealm, &writeRealm>("QelRealm", 0, required),
        validated<&R::address, isNotEmpty>(1687, required, always),
        validated<&R::port, isNotZero>(1704, required, always),
        field<&R::baseDN>(1958, required, always),
        field<&R::searchDN>(1959, required, always),
    };
};
const QelWireLayout& QelDirRealm::wire = wireLayoutOf<QelDirRealm>;

bool QelDirRealm::isValid() const {
    if (address.empty() || port == 0 || searchDN.size() < baseDN.size())
        return false;
    return compareNoCase(std::string_view(searchDN).substr(searchDN.size() - baseDN.size()), baseDN) == 0;
}

int QelDirRealm::set(const QelRealm& other) {
    const auto* const directory = dynamic_cast<const QelDirRealm*>(&other);
    if (!directory) {
        setErrorMessage("Invalid realm type");
        return -1;
    }
    if (!directory->isValid()) {
        setErrorMessage("Invalid realm parameters");
        return -1;
    }
    if (const int result = QelRealm::set(other))
        return result;
    address = directory->address;
    baseDN = directory->baseDN;
    searchDN = directory->searchDN;
    port = directory->port;
    loginType = directory->loginType;
    if (!loginType.realm.isSpecified())
        loginType.realm = directory->id;
    return 0;
}

int QelDirRealm::Reader::operator()(const QelMessageIterator& cursor, QelDirRealm& realm) const {
    if (readByLayout(QelDirRealm::wire, &realm, cursor) != 0)
        return -1;
    if (realm.isValid())
        return 0;
    setErrorMessage("cannot read QelDirRealm: %s", invalidRealm);
    return -1;
}

int QelDirRealm::Writer::operator()(QelMessageIterator& cursor, const QelDirRealm& realm) const {
    if (realm.isValid())
        return writeByLayout(QelDirRealm::wire, &realm, cursor);
    setErrorMessage("cannot write QelDirRealm: %s", invalidRealm);
    return -1;
}

QelDerivedParserFactoryT<QelDirRealm, QelRealm> factoryQelDirRealm(false);

} // namespace Qel
