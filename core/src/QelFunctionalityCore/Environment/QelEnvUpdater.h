#pragma once

#include <set>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"

namespace Qel {

class QelEnv;

/// A set of EIDs of environments.
using QelEnvIDList = std::set<QelEID, QelEnvIDComparator>;

/// Receives the changes of environments of one type, on behalf of a virtualisation technology.  Registered with
/// QelEnvFactory.  Called without the cache lock, on the thread that changes the cache.
class QEL_EXPORT QelEnvUpdater {
public:
    /// Called before an environment enters the cache.  A nonzero result rejects it and becomes the caller's result.
    virtual int insertEnv(const QelEnv& env) = 0;
    /// Called before an environment changes.  A nonzero result rejects the change and becomes the caller's result.
    virtual int updateEnv(const QelEnv& env) = 0;
    /// Called before an environment leaves the cache, and after the cache has rejected one that was offered.
    virtual int removeEnv(const QelEID& eid) = 0;
    /// Receives the children of one environment that are in the cache.
    virtual void syncEnvList(const QelEID& parent, const QelEnvIDList& children) = 0;
    /// Returns 0 if the updater wants to receive the changes of this environment.
    virtual int checkEnv(const QelEnv& env) = 0;

    QelEnvUpdater() = default;
    QelEnvUpdater(const QelEnvUpdater&) = delete;
    QelEnvUpdater& operator=(const QelEnvUpdater&) = delete;
    virtual ~QelEnvUpdater() = default;
};

} // namespace Qel
