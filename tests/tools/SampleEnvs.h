#pragma once

#include <string>

/// Sample EIDs and messages with environments.
namespace SampleEnvs {

/// The n-th EID in ascending order.
inline std::string eid(unsigned n) {
    std::string digits = std::to_string(n);
    digits.insert(0, 12 - digits.size(), '0');
    return "00000000-0000-4000-8000-" + digits;
}

inline const std::string noEid = "00000000-0000-0000-0000-000000000000";

inline std::string env(const std::string& eid, const std::string& parent, const std::string& name, int state = 1) {
    return "<environment xmlns=\"urn:qel:env\" xsi:type=\"env:env\"><parent_eid>" + parent + "</parent_eid><eid>" +
           eid + "</eid><status xsi:type=\"env:env_status\"><state>" + std::to_string(state) +
           "</state></status><alert_level>0</alert_level><alert_level>2</alert_level><virtual_config "
           "xsi:type=\"env:virtual_env_config\"><name>" +
           name + "</name><type>vm</type></virtual_config></environment>";
}

/// A message that contains the environments.
inline std::string message(const std::string& envs) {
    return "<message xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xmlns:env=\"urn:qel:env\">" + envs +
           "</message>";
}

} // namespace SampleEnvs
