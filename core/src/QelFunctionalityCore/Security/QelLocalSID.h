#pragma once

#include <limits>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

/// A globally unique SID for a principal of one environment.  It encodes the type in the authority, and the
/// environment's EID and the principal's number there in five sub-authorities.
class QEL_EXPORT QelLocalSID {
public:
    /// Type of a principal; each one has its own SID authority.
    enum PrincipalType : int {
        notLocal = 0,
        type1 = 1, ///< authority 8193
        type2 = 2, ///< authority 8192
        type3 = 3, ///< authority 8194
        type4 = 4, ///< authority 8195
    };
    /// `id` of a SID that is not a local SID.
    static constexpr unsigned noID = std::numeric_limits<unsigned>::max();

    /// For an unknown type the SID is the default one, "S-1-0-0".
    QelLocalSID(unsigned principal, PrincipalType principalType, const QelEID& environment);
    /// A principal of the local environment.  If that has no valid EID, the SID is the default one.
    QelLocalSID(unsigned principal, PrincipalType principalType);
    /// Decodes a SID.  If it is not a local SID, the type is notLocal, the ID noID and the EID invalid.
    explicit QelLocalSID(const QelSID& from);

    [[nodiscard]] const QelSID& getSID() const { return sid; }
    [[nodiscard]] QelEID getEID() const { return eid; }

    QelEID eid;
    unsigned id = noID;
    PrincipalType type = notLocal;
    QelSID sid;
};

} // namespace Qel
