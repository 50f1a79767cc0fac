#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "QelCommon/Export.h"

namespace Qel::Debug {

/// Selects the modules whose records are logged.
class QEL_EXPORT ModuleFilter {
public:
    /// Accepts every module.
    ModuleFilter() = default;
    /// From two lists of module names, separated by commas or white space.  If `processed` is empty, every module is
    /// processed.  A module in both lists is ignored.
    ModuleFilter(const std::string& processed, const std::string& ignored);

    [[nodiscard]] bool passes(std::string_view module) const;

private:
    std::vector<std::string> m_processed;
    std::vector<std::string> m_ignored;
};

/// Source of the log settings.
class QEL_EXPORT SettingsProvider {
public:
    virtual ~SettingsProvider() = default;

    /// The highest level that is logged, 0 to 6.  Any other value leaves the level unchanged.
    [[nodiscard]] virtual int level() const = 0;
    /// First field of a line on standard error, and hence its sort key: 0 the module, 1 the level.
    [[nodiscard]] virtual int order() const = 0;
    /// Origin of the record in a line on standard error: <= 0 none, 1 the function name, >= 2 source file, line and
    /// full function signature.
    [[nodiscard]] virtual int format() const = 0;
    /// The modules that are logged.  Like the level, the filter applies to every sink.
    [[nodiscard]] virtual ModuleFilter filter() const = 0;
};

/// Sets the provider and applies its current settings.  Null restores the initial settings: level 1, order 0, format 0,
/// every module.  Must not run concurrently with itself or reconfigure(); the provider may log during the call.
QEL_EXPORT void setSettingsProvider(std::shared_ptr<const SettingsProvider> provider);

/// Applies the current settings of the provider.
QEL_EXPORT void reconfigure();

} // namespace Qel::Debug
