#pragma once

namespace Qel::EnvConfigElement {

/// The source path in log records and failed checks about configurations.
inline constexpr const char* sourcePath = "core/src/QelFunctionalityCore/QelEnvConfig";

/// The namespace of a configuration's tree.
inline constexpr int rootNamespace = 292;

} // namespace Qel::EnvConfigElement
