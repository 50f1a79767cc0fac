#pragma once

#include <memory>

#include "QelCommon/SettingsProvider.h"
#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Configuration/QelConfigurationIterator.h"

namespace Qel::Debug {

/// The log's settings as the section `system` of an agent's configuration tells them.
///
/// It keeps a copy of the configuration, so what changes there afterwards doesn't show.  The order alone comes from the
/// global configuration file, at each call.  Nothing here fails: what can't be read is at its default, and logged.
class Configuration : public SettingsProvider {
public:
    /// An empty configuration counts as one without the section.
    explicit Configuration(const QelConfiguration& configuration);
    ~Configuration() override;

    /// "log_level"; -1 without it.  A number beyond 0 to 6 is logged, and given all the same.
    [[nodiscard]] int level() const override;
    /// "sorting_order", 0 or 1; 0 without it.
    [[nodiscard]] int order() const override;
    /// "log_func_name_level"; 0 without it.
    [[nodiscard]] int format() const override;
    /// "log_process_plugins" and "log_ignore_plugins", either empty without it.
    [[nodiscard]] ModuleFilter filter() const override;

private:
    QelConfiguration m_config;
    std::unique_ptr<QelConfigurationIterator> m_sectionIterator; ///< at the section; null if there is none
};

} // namespace Qel::Debug
