#pragma once

#include <string>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelGUID.h"
#include "QelMessage/QelDerivedParsers.h"
#include "QelMessage/QelRecord.h"

namespace Qel {

/// A set of users managed by one authority, such as the host or a directory service.
struct QEL_EXPORT QelRealm : QelRecord<QelRealm> {
    virtual ~QelRealm() = default;

    /// Copies the name of `other`; no other field of a realm can change.  Returns -1 and sets the error message if the
    /// IDs or types differ or either realm is read-only.
    [[nodiscard]] virtual int set(const QelRealm& other);

    QelGUID id;
    int type = 0;
    std::string name;
    bool readOnly = false;

    /// Realms known to every agent.
    static constexpr QelGUID systemRealmID{};
    static constexpr QelGUID sessionRealmID{0, 0x0200000000000000};
    static constexpr QelGUID foreignSecurityPrincipalRealmID{0, 0x0300000000000000};
    static constexpr QelGUID externalSystemRealmID{0, 0x0400000000000000};
    static constexpr QelGUID sqlRealmID{0, 0x0500000000000000};
    static constexpr QelGUID internalRealmID{0, 0x0600000000000000};
    static constexpr QelGUID autoRealmID{0, 0x0700000000000000};

    static const QelWireLayout& wire;
};

using QelRealmList = std::vector<boost::shared_ptr<QelRealm>>;

extern template class QelDerivedParserFactory<QelRealm>;

QEL_EXPORT extern QelDerivedParserFactoryT<QelRealm, QelRealm> factoryQelRealm;

} // namespace Qel
