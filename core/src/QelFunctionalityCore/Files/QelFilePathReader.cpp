#include "QelFunctionalityCore/Files/QelFilePathReader.h"

#include "QelCommon/InstanceFolders.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

int QelFilePathReader::operator()(const QelMessageIterator& cursor, std::string& path) const {
    std::string given;
    if (cursor.getValueBase64(given, getEmptyID()) != 0)
        return -1;
    if (given.starts_with(QelFilerBase::SESSION_DIR)) {
        std::string client;
        if (cursor.getMessage()->getSession(client) != 0)
            cursor.getOrigin(client);
        std::string folder;
        if (QelInstanceFolders::getClient(client).uploads(true, folder) != 0)
            return -1;
        given.replace(0, QelFilerBase::SESSION_DIR.size(), folder);
    }
    path = given;
    return 0;
}

} // namespace Qel
