#include "QelCommon/InstanceFolders.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>

#include <sys/stat.h>

#include "QelCommon/ErrorMessage.h"

namespace Qel {

namespace {

std::string underRoot(const std::string& path) {
    const char* root = std::getenv("QEL_ROOT");
    return QelInstanceFolders::join(root ? root : "", path);
}

// Rejects names that refer to a place outside the directory of all clients: a client chooses its own name.
bool isLeaf(const std::string& name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of(std::string_view("/\0", 2)) == std::string::npos;
}

int failToCreate(const std::string& directory, const std::string& reason) {
    setErrorMessage("cannot create directory '%s': %s", directory.c_str(), reason.c_str());
    return -1;
}

} // namespace

std::string QelInstanceFolders::etc() {
    return underRoot("etc/qel");
}

int QelInstanceFolders::client::uploads(bool create, std::string& directory) const {
    if (!isLeaf(m_name)) {
        setErrorMessage("invalid client name '%s'", m_name.c_str());
        return -1;
    }
    const std::string parent = join(underRoot("var/lib/qel/clients"), m_name);
    const std::string uploads = join(parent, "uploads");
    if (create) {
        std::error_code error;
        if (std::filesystem::create_directories(parent, error); error)
            return failToCreate(parent, error.message());
        if (mkdir(uploads.c_str(), S_IRWXU) != 0 && errno != EEXIST)
            return failToCreate(uploads, std::strerror(errno));
        if (!std::filesystem::is_directory(uploads, error))
            return failToCreate(uploads, std::strerror(ENOTDIR));
    }
    directory = uploads;
    return 0;
}

std::string QelInstanceFolders::join(const std::string& directory, const std::string& leaf) {
    const auto last = directory.find_last_not_of('/');
    return (last == std::string::npos ? std::string() : directory.substr(0, last + 1)) + '/' + leaf;
}

std::string getConfigurationFile() {
    return QelInstanceFolders::join(QelInstanceFolders::etc(), "qel.conf");
}

} // namespace Qel
