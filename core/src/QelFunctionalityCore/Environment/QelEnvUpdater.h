#pragma once

#include <set>

#include "QelFunctionalityCore/Values/QelEnvIDComparator.h"

namespace Qel {

class QelEnv;

/// Environments by their EIDs.
using QelEnvIDList = std::set<QelEID, QelEnvIDComparator>;

/// What a virtualisation technology wants to know of the environments of its type.  Registered with QelEnvFactory.  The
/// calls come outside the cache's lock and on the thread that changes the cache.
class QelEnvUpdater {
public:
    /// An environment is about to enter the cache.  Anything but 0 keeps it out and is the caller's result.
    virtual int insertEnv(const QelEnv& env) = 0;
    /// An environment is about to change.  Anything but 0 keeps the change out and is the caller's result.
    virtual int updateEnv(const QelEnv& env) = 0;
    /// An environment is about to leave, or one that was announced didn't get in.
    virtual int removeEnv(const QelEID& eid) = 0;
    /// The children of one environment, as the cache knows them.
    virtual void syncEnvList(const QelEID& parent, const QelEnvIDList& children) = 0;
    /// 0 if the updater wants to hear of this environment.
    virtual int checkEnv(const QelEnv& env) = 0;

    QelEnvUpdater() = default;
    QelEnvUpdater(const QelEnvUpdater&) = delete;
    QelEnvUpdater& operator=(const QelEnvUpdater&) = delete;
    virtual ~QelEnvUpdater() = default;
};

} // namespace Qel
