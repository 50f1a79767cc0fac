#pragma once

#include <string>

namespace Qel {

/// The directories of one agent instance.  All lie below one root: the environment variable QEL_ROOT, or "/" when that
/// is unset or empty.
class QelInstanceFolders {
public:
    /// Directory of settings: ROOT/etc/qel.
    [[nodiscard]] static std::string etc();

    /// `directory` and `leaf` joined with one slash.
    [[nodiscard]] static std::string join(const std::string& directory, const std::string& leaf);
};

/// Path of the global configuration file: "qel.conf" in QelInstanceFolders::etc().
[[nodiscard]] std::string getConfigurationFile();

} // namespace Qel
