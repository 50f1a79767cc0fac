#pragma once

#include <limits>

#include "QelFunctionalityCore/Security/QelSID.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {

/// A principal of one environment, named so that no other environment has the same name for one of its own: its number
/// there, its type and the environment's EID, packed into a SID of five sub-authorities.
class QelLocalSID {
public:
    /// Which authority the SID is of.
    enum PrincipalType : int {
        notLocal = 0,
        type1 = 1, ///< authority 8193
        type2 = 2, ///< authority 8192
        type3 = 3, ///< authority 8194
        type4 = 4, ///< authority 8195
    };
    /// The ID of a SID that isn't local.
    static constexpr unsigned noID = std::numeric_limits<unsigned>::max();

    /// An unknown type leaves the SID at its default, "S-1-0-0".
    QelLocalSID(unsigned principal, PrincipalType principalType, const QelEID& environment);
    /// In the local environment.  While that has no valid identity, the SID stays at its default.
    QelLocalSID(unsigned principal, PrincipalType principalType);
    /// Takes a SID apart.  One that isn't local has type notLocal, ID noID and no environment.
    explicit QelLocalSID(const QelSID& from);

    [[nodiscard]] const QelSID& getSID() const { return sid; }
    [[nodiscard]] QelEID getEID() const { return eid; }

    QelEID eid;
    unsigned id = noID;
    PrincipalType type = notLocal;
    QelSID sid;
};

} // namespace Qel
