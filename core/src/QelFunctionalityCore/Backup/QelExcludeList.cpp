#include "QelFunctionalityCore/Backup/QelExcludeList.h"

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr int pathElement = 1156;

int readPaths(const QelMessageIterator& cursor, QelExcludeList& list) {
    return QelReaderList(QelReaderString(), pathElement, QelReaderOptional)(cursor, list);
}
int writePaths(QelMessageIterator& cursor, const QelExcludeList& list) {
    return QelWriterList(QelWriterString(), pathElement)(cursor, list);
}

} // namespace

template <> struct Wire<QelExcludeList> : WireWords<QelExcludeList> {
    static constexpr QelWireField fields[] = {
        flag<&R::option1982>(1982),
        flag<&R::option1044>(1044),
        step<&readPaths, &writePaths>("paths", pathElement, optional, ifSet),
    };
};
const QelWireLayout& QelExcludeList::wire = wireLayoutOf<QelExcludeList>;

} // namespace Qel
