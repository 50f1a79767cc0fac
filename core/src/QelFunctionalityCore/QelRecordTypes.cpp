#include "QelFunctionalityCore/QelRecordTypes.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "QelFunctionalityCore/QelFamilyRecordTypes.h"

namespace Qel {

namespace {

constexpr std::array families{
    backupRecordTypes,   configurationRecordTypes, environmentRecordTypes, eventsRecordTypes,  filesRecordTypes,
    hostRecordTypes,     monitoringRecordTypes,    networkRecordTypes,     profileRecordTypes, schedulingRecordTypes,
    securityRecordTypes, valuesRecordTypes,        vocabularyRecordTypes};

std::vector<QelRecordType> joinFamilies() {
    std::vector<QelRecordType> all;
    for (const auto family : families) {
        const std::vector<QelRecordType> types = family();
        all.insert(all.end(), types.begin(), types.end());
    }
    std::sort(all.begin(), all.end(), [](const QelRecordType& a, const QelRecordType& b) { return a.name < b.name; });
    return all;
}

// Templates with a single instance, which is listed under its alias.
constexpr std::pair<std::string_view, std::string_view> soleInstances[] = {{"QelRangedPool", "QelResourceIpPool"},
                                                                           {"QelRangedResource", "QelResourceIp"}};

} // namespace

std::span<const QelRecordType> recordTypes() {
    static const std::vector<QelRecordType> types = joinFamilies();
    return types;
}

const QelRecordType* findRecordType(std::string_view name) {
    for (const auto& [templateName, alias] : soleInstances)
        if (name == templateName)
            name = alias;
    const auto types = recordTypes();
    const auto found =
        std::lower_bound(types.begin(), types.end(), name,
                         [](const QelRecordType& type, std::string_view key) { return type.name < key; });
    return found != types.end() && found->name == name ? &*found : nullptr;
}

} // namespace Qel
