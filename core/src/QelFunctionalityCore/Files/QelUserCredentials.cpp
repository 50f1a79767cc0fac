#include "QelFunctionalityCore/Files/QelUserCredentials.h"

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int userName = 1025;
constexpr int userNumber = 1030;
constexpr int groupName = 1029;
constexpr int groupNumber = 1027;

// User IDs are sent as signed numbers.
int readUid(const QelMessageIterator& cursor, QelUserCredentials& credentials) {
    return cursor.seekPresence(userName) == 0 ? 0 : QelUserCredentials::getUid(cursor, credentials.uid);
}

int writeUid(QelMessageIterator& cursor, const QelUserCredentials& credentials) {
    if (!credentials.name.empty() || credentials.uid == QelUserCredentials::noUid)
        return 0;
    return cursor.putValue(static_cast<int>(credentials.uid), userNumber);
}

struct GidReader {
    int operator()(const QelMessageIterator& cursor, int& gid) const { return cursor.getValue(gid, userNumber); }
};

int readGids(const QelMessageIterator& cursor, QelUserCredentials& credentials) {
    if (cursor.seekPresence(groupName) == 0)
        return 0;
    return QelReaderList(GidReader(), groupNumber, QelReaderRequired)(cursor, credentials.gids);
}

int writeGids(QelMessageIterator& cursor, const QelUserCredentials& credentials) {
    return credentials.groups.empty() ? QelWriterData(credentials.gids, groupNumber)(cursor, credentials.gids) : 0;
}

} // namespace

int QelUserCredentials::getUid(const QelMessageIterator& cursor, unsigned& uid) {
    int number = 0;
    const int result = cursor.getValue(number, userNumber);
    if (result == 0)
        uid = static_cast<unsigned>(number);
    return result;
}

template <> struct Wire<QelUserCredentials> : WireWords<QelUserCredentials> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(userName, ignored, ifSet), step<&readUid, &writeUid>("uid", userNumber, ignored, ifSet),
        list<&R::groups>(groupName, ignored),      step<&readGids, &writeGids>("gids", groupNumber, ignored, ifSet),
        field<&R::flags>(1176, ignored, always),
    };
};
const QelWireLayout& QelUserCredentials::wire = wireLayoutOf<QelUserCredentials>;

} // namespace Qel
