#pragma once

#include <string>

namespace Qel {

/// The directories of one agent instance.  All lie below one root: the environment variable QEL_ROOT, or "/" when that
/// is unset or empty.
class QelInstanceFolders {
public:
    /// The directories of one client of the agent: ROOT/var/lib/qel/clients/NAME.
    class client {
    public:
        /// The directory that takes what the client uploads, created if `create` and readable for nobody else.  0, or
        /// -1, with the error message set and `directory` as it was: it can't be created, or the name is none that a
        /// directory can have, such as "..".
        [[nodiscard]] int uploads(bool create, std::string& directory) const;

    private:
        friend class QelInstanceFolders;

        explicit client(const std::string& name) : m_name(name) {}

        std::string m_name;
    };

    /// Directory of settings: ROOT/etc/qel.
    [[nodiscard]] static std::string etc();

    /// The client of this session name.
    [[nodiscard]] static client getClient(const std::string& name) { return client(name); }

    /// `directory` and `leaf` joined with one slash.
    [[nodiscard]] static std::string join(const std::string& directory, const std::string& leaf);
};

/// Path of the global configuration file: "qel.conf" in QelInstanceFolders::etc().
[[nodiscard]] std::string getConfigurationFile();

} // namespace Qel
