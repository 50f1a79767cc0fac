#include "QelFunctionalityCore/QelRecordTypes.h"

#include <algorithm>
#include <array>
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

} // namespace

std::span<const QelRecordType> recordTypes() {
    static const std::vector<QelRecordType> types = joinFamilies();
    return types;
}

const QelRecordType* findRecordType(std::string_view name) {
    const auto types = recordTypes();
    const auto found =
        std::lower_bound(types.begin(), types.end(), name,
                         [](const QelRecordType& type, std::string_view key) { return type.name < key; });
    return found != types.end() && found->name == name ? &*found : nullptr;
}

} // namespace Qel
