#include "QelCommon/SettingsProvider.h"

#include <algorithm>

namespace Qel::Debug {

namespace {

constexpr std::string_view separators = ", \t\r\n";

std::vector<std::string> splitNames(std::string_view list) {
    std::vector<std::string> names;
    while (true) {
        list.remove_prefix(std::min(list.find_first_not_of(separators), list.size()));
        if (list.empty())
            return names;
        const std::string_view name = list.substr(0, list.find_first_of(separators));
        names.emplace_back(name);
        list.remove_prefix(name.size());
    }
}

bool contains(const std::vector<std::string>& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

ModuleFilter::ModuleFilter(const std::string& processed, const std::string& ignored)
    : m_processed(splitNames(processed)), m_ignored(splitNames(ignored)) {}

bool ModuleFilter::passes(std::string_view module) const {
    return (m_processed.empty() || contains(m_processed, module)) && !contains(m_ignored, module);
}

} // namespace Qel::Debug
