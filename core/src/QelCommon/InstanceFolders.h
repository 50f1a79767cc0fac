#pragma once

#include <string>

#include "QelCommon/Export.h"

namespace Qel {

/// The directories of one agent instance.  All of them are below one root: the value of the environment variable
/// QEL_ROOT, or "/" if it is unset or empty.
class QEL_EXPORT QelInstanceFolders {
public:
    /// The directories of one client of the agent: ROOT/var/lib/qel/clients/NAME.
    class client {
    public:
        /// Directory for uploads of this client.  With `create` it is created if missing, accessible by its owner only.
        /// Returns 0, or -1 with the error message set and `directory` unchanged if it cannot be created or if the
        /// client name is not a valid directory name, for example "..".
        [[nodiscard]] int uploads(bool create, std::string& directory) const;

    private:
        friend class QelInstanceFolders;

        explicit client(const std::string& name) : m_name(name) {}

        std::string m_name;
    };

    /// Directory of settings: ROOT/etc/qel.
    [[nodiscard]] static std::string etc();

    /// The client with this session name.
    [[nodiscard]] static client getClient(const std::string& name) { return client(name); }

    /// Joins `directory` and `leaf` with exactly one slash.
    [[nodiscard]] static std::string join(const std::string& directory, const std::string& leaf);
};

/// Path of the global configuration file: "qel.conf" in QelInstanceFolders::etc().
QEL_EXPORT [[nodiscard]] std::string getConfigurationFile();

} // namespace Qel
