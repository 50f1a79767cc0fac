#include "QelFunctionalityCore/Security/QelToken.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Security/QelLocalSID.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelToken> : WireWords<QelToken> {
    static constexpr int nsId = 292, typeId = 147;
    static constexpr QelWireField fields[] = {
        field<&R::sid>(1025, required, always),           wrapped<&R::groups>(2011, 1911, ignored, always),
        wrapped<&R::denied>(2012, 1911, ignored, always), wrapped<&R::privileges>(2013, 2014, ignored, always),
        field<&R::authName>(1026, ignored, ifSet),
    };
};
const QelWireLayout& QelToken::wire = wireLayoutOf<QelToken>;

namespace {

using SIDs = std::set<QelSID>;

template <class Item> std::set<Item> inBoth(const std::set<Item>& a, const std::set<Item>& b) {
    std::set<Item> both;
    std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), std::inserter(both, both.end()));
    return both;
}

SIDs inOneOnly(const SIDs& a, const SIDs& b) {
    SIDs one;
    std::set_symmetric_difference(a.begin(), a.end(), b.begin(), b.end(), std::inserter(one, one.end()));
    return one;
}

QelToken& currentToken() {
    static QelToken current = QelToken::getAgentToken();
    return current;
}

} // namespace

QelToken QelToken::getAgentToken() {
    struct QelAgentToken : QelToken {
        QelAgentToken() {
            sid = QelSID::createWellKnownSID(QelSID::localAgent);
            groups = {sid, QelSID::createWellKnownSID(QelSID::localAdministrators)};
        }
    };
    static const QelToken anonymousAgent = [] {
        QelToken token;
        token.groups = {token.sid};
        return token;
    }();
    return QelConfiguration::getLocalEID().isValid() ? QelAgentToken() : anonymousAgent;
}

const QelToken& QelToken::getCurrent() {
    return currentToken();
}

QelToken QelToken::setCurrent(const QelToken& token) {
    // Copy first: the argument may be the current token itself.
    return std::exchange(currentToken(), QelToken(token));
}

void QelToken::restrict(const QelToken& other) {
    denied.merge(SIDs(other.denied));
    denied.merge(inOneOnly(groups, other.groups));
    groups = inBoth(groups, other.groups);
    privileges = inBoth(privileges, other.privileges);
}

bool QelToken::isEnvAdministrators(const QelEID& eid) const {
    return isOrBelongsTo(QelLocalSID(0, QelLocalSID::type2, eid).getSID());
}

bool QelToken::isLocalAdministrators() const {
    return isOrBelongsTo(QelSID::createWellKnownSID(QelSID::localAdministrators));
}

bool QelToken::isOrBelongsTo(const QelSID& principal) const {
    return sid == principal || groups.contains(principal);
}

int QelToken::Reader::operator()(const QelMessageIterator& cursor, QelToken& token) const {
    QelToken read;
    if (readByLayout(QelToken::wire, &read, cursor) != 0)
        return -1;
    token = std::move(read);
    return 0;
}

int QelToken::Writer::operator()(QelMessageIterator& cursor, const QelToken& token) const {
    if (writeByLayout(QelToken::wire, &token, cursor) == 0)
        return 0;
    // 1 is the failure code of list writers; any other failure is -1.
    return token.sid.toBinary().empty() ? -1 : 1;
}

} // namespace Qel
