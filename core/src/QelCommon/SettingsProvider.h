#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Qel::Debug {

/// Tells which modules' records are logged.
class ModuleFilter {
public:
    /// Lets everything pass.
    ModuleFilter() = default;
    /// From two lists of module names, separated by commas or blanks.  An empty first list stands for all modules.  A
    /// module in both is ignored.
    ModuleFilter(const std::string& processed, const std::string& ignored);

    [[nodiscard]] bool passes(std::string_view module) const;

private:
    std::vector<std::string> m_processed;
    std::vector<std::string> m_ignored;
};

/// Where the log's settings come from.
class SettingsProvider {
public:
    virtual ~SettingsProvider() = default;

    /// The highest level that is logged, 0 to 6.  Any other number leaves the level as it is.
    [[nodiscard]] virtual int level() const = 0;
    /// What a line on standard error begins with, and so is sorted by: 0 the module, 1 the level.
    [[nodiscard]] virtual int order() const = 0;
    /// How a line on standard error tells where the record comes from: 0 and below not at all, 1 by the function's
    /// name, 2 and above by source file, line and the function's whole signature.
    [[nodiscard]] virtual int format() const = 0;
    /// Which modules are logged.  Like the level it holds for every sink.
    [[nodiscard]] virtual ModuleFilter filter() const = 0;
};

/// Takes a provider and the settings that it has at present.  Null stands for the settings at the process's start:
/// level 1, order 0, format 0, every module.  Setting and reconfiguring is one thread's work, which may log meanwhile.
void setSettingsProvider(std::shared_ptr<const SettingsProvider> provider);

/// Takes the settings that the provider has at present.
void reconfigure();

} // namespace Qel::Debug
