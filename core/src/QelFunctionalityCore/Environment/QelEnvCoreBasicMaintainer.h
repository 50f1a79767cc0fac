#pragma once

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Environment/QelVEnvConfig.h"

namespace Qel {

/// Keeps an environment's flat record in step with its two configurations: a change of a configuration is a change of
/// its tree, and the record follows when somebody asks for its bytes.
class QelEnvCoreBasicMaintainer {
public:
    /// A blank record.
    QelEnvCoreBasicMaintainer();
    /// A view on a record, which isn't copied and must not be null.
    explicit QelEnvCoreBasicMaintainer(boost::shared_ptr<QelEnvCoreBasic> core);
    // A new record from configurations, which must not be null.  The record is null when memory was short.
    QelEnvCoreBasicMaintainer(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config,
                              const boost::shared_ptr<QelVEnvConfig>& vconfig);
    QelEnvCoreBasicMaintainer(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config);
    QelEnvCoreBasicMaintainer(const QelEID& eid, const boost::shared_ptr<QelVEnvConfig>& vconfig);
    /// Copies the record.  What was changed in the other's configurations and isn't in its record stays behind.
    QelEnvCoreBasicMaintainer(const QelEnvCoreBasicMaintainer& other);
    QelEnvCoreBasicMaintainer& operator=(const QelEnvCoreBasicMaintainer& other);
    ~QelEnvCoreBasicMaintainer() = default;

    /// Brings the record in step and tells its address, if `out` isn't null, and length.  0, or -1 with nothing changed
    /// when a configuration can't be serialised.  The record replaces the former one, which stays with whoever shares
    /// it.  The third argument has no meaning.
    int getBuffer(const void** out, unsigned& length, const void*);

    boost::shared_ptr<QelEnvCoreBasic> m_core;
    boost::shared_ptr<QelEnvConfig> m_config;
    boost::shared_ptr<QelVEnvConfig> m_vconfig;
    bool configDirty = false;  ///< the tree of m_config may differ from the bytes in m_core
    bool vconfigDirty = false; ///< the tree of m_vconfig may differ from the bytes in m_core

private:
    struct Half; // where the new bytes of one configuration come from

    void remakeViews();
    // A view may come with a tree that isn't from the record: a child factory's may.
    void applyDirtyRule();
    [[nodiscard]] bool isConfigUnsaved() const;
    [[nodiscard]] bool isVirtualConfigUnsaved() const;
    [[nodiscard]] Half baseHalf() const;
    [[nodiscard]] Half virtualHalf() const;
    [[nodiscard]] QelEnvType typeByConfigs() const;
};

} // namespace Qel
