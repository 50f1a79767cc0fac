#include "QelFunctionalityCore/Backup/QelExcludeList.h"

#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

int readPaths(const QelMessageIterator& cursor, QelExcludeList& list) {
    return QelReaderList(QelReaderString(), "path"_element, QelReaderOptional)(cursor, list);
}
int writePaths(QelMessageIterator& cursor, const QelExcludeList& list) {
    return QelWriterList(QelWriterString(), "path"_element)(cursor, list);
}

} // namespace

template <> struct Wire<QelExcludeList> : WireWords<QelExcludeList> {
    static constexpr QelWireField fields[] = {
        flag<&R::option1982>(1982),
        flag<&R::option1044>(1044),
        step<&readPaths, &writePaths>("paths", "path"_element, optional, ifSet),
    };
};
const QelWireLayout& QelExcludeList::wire = wireLayoutOf<QelExcludeList>;

} // namespace Qel
