#pragma once

#include <set>
#include <string>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Security token: the identity under which an operation runs.
///
/// The process has one current token, initially the agent's.  getCurrent and setCurrent are not thread-safe.
class QEL_EXPORT QelToken {
public:
    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    static const QelWireLayout& wire;

    QelSID sid; ///< "S-1-0-0": unset
    std::set<QelSID> groups;
    std::set<QelSID> denied;
    std::set<std::string> privileges;
    QelOptionalProperty<QelAuthName> authName; ///< login name, if any

    /// Token of the local agent: the agent's SID, with the local administrators as a group.  Built at each call, so it
    /// reflects a change of the local identity.  If there is no local identity, SID and only group are the default SID.
    [[nodiscard]] static QelToken getAgentToken();

    /// The current token.  Initialised from getAgentToken() at first use.  setCurrent() changes the referenced object.
    [[nodiscard]] static const QelToken& getCurrent();
    /// Returns the previous token, for the caller to restore.
    static QelToken setCurrent(const QelToken& token);

    /// Restricts this token to what both tokens allow.  Groups and privileges become the intersections.  The denied set
    /// becomes the union of both, plus the groups that only one token has.  SID and login name are unchanged.
    void restrict(const QelToken& other);

    /// Whether the SID or one of the groups is the administrators' SID of the environment.
    [[nodiscard]] bool isEnvAdministrators(const QelEID& eid) const;
    /// isEnvAdministrators() for the local environment.  Without a local identity the administrators' SID is the
    /// default one, so the agent's own token qualifies.
    [[nodiscard]] bool isLocalAdministrators() const;

private:
    [[nodiscard]] bool isOrBelongsTo(const QelSID& principal) const;
};

/// If there is no SID, returns -1 and leaves the token unchanged.  Otherwise replaces all fields and returns 0: a
/// missing field becomes empty, and a list ends before its first unreadable item.
struct QEL_EXPORT QelToken::Reader {
    int operator()(const QelMessageIterator& cursor, QelToken& token) const;
};

/// -1 if the SID of the token is empty, 1 if a SID in a list is empty.
struct QEL_EXPORT QelToken::Writer : QelRecordWriter<QelToken> {
    int operator()(QelMessageIterator& cursor, const QelToken& token) const;
};

} // namespace Qel
