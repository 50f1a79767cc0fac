#pragma once

namespace Qel::EnvConfigElement {

/// The source path in log records and failed checks about configurations.
inline constexpr const char* sourcePath = "core/src/QelFunctionalityCore/QelEnvConfig";

/// The root element of a configuration's tree, and the namespace of the tree.
inline constexpr int root = 1185;
inline constexpr int rootNamespace = 292;

// Children of the root element.
inline constexpr int name = 1026;
inline constexpr int description = 1496; // base64
inline constexpr int domain = 1374;
inline constexpr int hostname = 1261;
inline constexpr int addresses = 1687;
inline constexpr int architecture = 1276;
inline constexpr int operatingSystem = 1277;
inline constexpr int type = 1007;
inline constexpr int nameservers = 1281;
inline constexpr int searchDomains = 1558;
inline constexpr int baseSample = 1895;
inline constexpr int baseSnapshot = 1896;
inline constexpr int childTypes = 2153;
inline constexpr int qos = 1476;
inline constexpr int agentVersion = 1223;
inline constexpr int configCustomized = 1766;
inline constexpr int disabled = 1705;

} // namespace Qel::EnvConfigElement
