#pragma once

#include <set>
#include <string>

#include "QelFunctionalityCore/Configuration/QelAuthName.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelEID.h"
#include "QelFunctionalityCore/Values/QelProperty.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// Who a piece of work acts as.
///
/// The process has one current token, the agent's own at start.  It has no lock: getCurrent and setCurrent are for one
/// thread at a time.
class QelToken {
public:
    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    QelSID sid; ///< "S-1-0-0" unless told
    std::set<QelSID> groups;
    std::set<QelSID> denied;
    std::set<std::string> privileges;
    QelOptionalProperty<QelAuthName> authName; ///< the name of the login, if there was one

    /// What the local agent acts as: itself, a member of its host's administrators.  Made anew at each call, so that it
    /// follows a change of the local identity.  While there is none, a token of the default SID, which is its own
    /// group.
    [[nodiscard]] static QelToken getAgentToken();

    /// Keeps what the agent's token was at the first use until setCurrent changes it.  The reference is valid until the
    /// next setCurrent.
    [[nodiscard]] static const QelToken& getCurrent();
    /// Gives the token that was current, for the caller to put it back.
    static QelToken setCurrent(const QelToken& token);

    /// Narrows this token to what both allow: groups and privileges become those that both have, and what either
    /// denies is denied, as is every group that only one of them has.  SID and name of the login stay.
    void restrict(const QelToken& other);

    /// Whether it is or belongs to the administrators of an environment.
    [[nodiscard]] bool isEnvAdministrators(const QelEID& eid) const;
    /// The same for the local environment.  Without a local identity the administrators are the default SID, so that
    /// the agent's own token is one of them.
    [[nodiscard]] bool isLocalAdministrators() const;

private:
    [[nodiscard]] bool isOrBelongsTo(const QelSID& principal) const;
};

/// -1 if there is no SID; the token then stays as it was.  Otherwise 0 and a token that is new in all its fields: what
/// is missing is empty, and a list that is unreadable ends where it becomes so.
struct QelToken::Reader {
    int operator()(const QelMessageIterator& cursor, QelToken& token) const;
};

/// -1 if the SID is empty, 1 if one in a list is.
struct QelToken::Writer : QelRecordWriter<QelToken> {
    int operator()(QelMessageIterator& cursor, const QelToken& token) const;
};

} // namespace Qel
