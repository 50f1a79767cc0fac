#pragma once

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Environment/QelVEnvConfig.h"

namespace Qel {

/// Keeps the flat record of an environment in sync with its two configurations.  Changing a configuration only changes
/// its tree; getBuffer() serialises the tree into a new record.
class QEL_EXPORT QelEnvCoreBasicMaintainer {
public:
    /// A blank record.
    QelEnvCoreBasicMaintainer();
    /// A view of a record, which is not copied and must not be null.
    explicit QelEnvCoreBasicMaintainer(boost::shared_ptr<QelEnvCoreBasic> core);
    // Builds a new record from configurations, which must not be null.  The record is null if memory is exhausted.
    QelEnvCoreBasicMaintainer(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config,
                              const boost::shared_ptr<QelVEnvConfig>& vconfig);
    QelEnvCoreBasicMaintainer(const QelEID& eid, const boost::shared_ptr<QelEnvConfig>& config);
    QelEnvCoreBasicMaintainer(const QelEID& eid, const boost::shared_ptr<QelVEnvConfig>& vconfig);
    /// Copies the record.  Changes of configurations that are not in the record yet are not copied.
    QelEnvCoreBasicMaintainer(const QelEnvCoreBasicMaintainer& other);
    QelEnvCoreBasicMaintainer& operator=(const QelEnvCoreBasicMaintainer& other);
    ~QelEnvCoreBasicMaintainer() = default;

    /// Serialises changed configurations into a new record, then returns the length of the record and, if `out` is not
    /// null, its address.  Returns 0, or -1 with nothing changed if a configuration cannot be serialised.  Other owners
    /// of the previous record keep it.  The third argument is ignored.
    int getBuffer(const void** out, unsigned& length, const void*);

    boost::shared_ptr<QelEnvCoreBasic> m_core;
    boost::shared_ptr<QelEnvConfig> m_config;
    boost::shared_ptr<QelVEnvConfig> m_vconfig;
    bool configDirty = false;  ///< the tree of m_config may differ from the bytes in m_core
    bool vconfigDirty = false; ///< the tree of m_vconfig may differ from the bytes in m_core

private:
    struct Half; // source of the bytes of one configuration

    void remakeViews();
    // A new view may have a tree that is not from the record, for example one from a child factory.
    void applyDirtyRule();
    [[nodiscard]] bool isConfigUnsaved() const;
    [[nodiscard]] bool isVirtualConfigUnsaved() const;
    [[nodiscard]] Half baseHalf() const;
    [[nodiscard]] Half virtualHalf() const;
    [[nodiscard]] QelEnvType typeByConfigs() const;
};

} // namespace Qel
