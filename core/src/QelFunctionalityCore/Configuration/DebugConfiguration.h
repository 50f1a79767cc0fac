#pragma once

#include <memory>

#include "QelCommon/Export.h"
#include "QelCommon/SettingsProvider.h"
#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Configuration/QelConfigurationIterator.h"

namespace Qel::Debug {

/// Log settings from the section `system` of an agent's configuration.
///
/// Keeps a copy of the configuration, so later changes to the original have no effect.  Only order() reads the global
/// configuration file, at each call.  No operation fails: a setting that cannot be read has its default value.
class QEL_EXPORT Configuration : public SettingsProvider {
public:
    /// An empty configuration is treated as one without the section.
    explicit Configuration(const QelConfiguration& configuration);
    ~Configuration() override;

    /// "log_level"; -1 if missing.  A value outside 0 to 6 is logged as an error and returned unchanged.
    [[nodiscard]] int level() const override;
    /// "sorting_order", 0 or 1; 0 if missing.
    [[nodiscard]] int order() const override;
    /// "log_func_name_level"; 0 if missing.
    [[nodiscard]] int format() const override;
    /// "log_process_plugins" and "log_ignore_plugins"; a missing one is empty.
    [[nodiscard]] ModuleFilter filter() const override;

private:
    QelConfiguration m_config;
    std::unique_ptr<QelConfigurationIterator> m_sectionIterator; ///< positioned at the section; null if there is none
};

} // namespace Qel::Debug
