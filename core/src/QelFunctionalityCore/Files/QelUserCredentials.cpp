#include "QelFunctionalityCore/Files/QelUserCredentials.h"

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

// A name takes precedence over a user ID.  User IDs are encoded as signed numbers.
int readUid(const QelMessageIterator& cursor, QelUserCredentials& credentials) {
    return cursor.seekPresence("user"_element) == 0 ? 0 : QelUserCredentials::getUid(cursor, credentials.uid);
}

int writeUid(QelMessageIterator& cursor, const QelUserCredentials& credentials) {
    if (!credentials.name.empty() || credentials.uid == QelUserCredentials::noUid)
        return 0;
    return cursor.putValue(static_cast<int>(credentials.uid), "uid"_element);
}

struct GidReader {
    int operator()(const QelMessageIterator& cursor, int& gid) const { return cursor.getValue(gid, "uid"_element); }
};

int readGids(const QelMessageIterator& cursor, QelUserCredentials& credentials) {
    if (cursor.seekPresence("group"_element) == 0)
        return 0;
    return QelReaderList(GidReader(), "gid"_element, QelReaderRequired)(cursor, credentials.gids);
}

int writeGids(QelMessageIterator& cursor, const QelUserCredentials& credentials) {
    return credentials.groups.empty() ? QelWriterData(credentials.gids, "gid"_element)(cursor, credentials.gids) : 0;
}

} // namespace

int QelUserCredentials::getUid(const QelMessageIterator& cursor, unsigned& uid) {
    int number = 0;
    const int result = cursor.getValue(number, "uid"_element);
    if (result == 0)
        uid = static_cast<unsigned>(number);
    return result;
}

template <> struct Wire<QelUserCredentials> : WireWords<QelUserCredentials> {
    static constexpr QelWireField fields[] = {
        field<&R::name>("user"_element, ignored, ifSet),
        step<&readUid, &writeUid>("uid", "uid"_element, ignored, ifSet),
        list<&R::groups>("group"_element, ignored),
        step<&readGids, &writeGids>("gids", "gid"_element, ignored, ifSet),
        field<&R::flags>(1176, ignored, always),
    };
};
const QelWireLayout& QelUserCredentials::wire = wireLayoutOf<QelUserCredentials>;

} // namespace Qel
