#include "QelCommon/InstanceFolders.h"

#include <cstdlib>

namespace Qel {

std::string QelInstanceFolders::etc() {
    const char* root = std::getenv("QEL_ROOT");
    return join(root ? root : "", "etc/qel");
}

std::string QelInstanceFolders::join(const std::string& directory, const std::string& leaf) {
    const auto last = directory.find_last_not_of('/');
    return (last == std::string::npos ? std::string() : directory.substr(0, last + 1)) + '/' + leaf;
}

std::string getConfigurationFile() {
    return QelInstanceFolders::join(QelInstanceFolders::etc(), "qel.conf");
}

} // namespace Qel
