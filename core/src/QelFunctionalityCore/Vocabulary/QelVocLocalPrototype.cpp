#include "QelFunctionalityCore/Vocabulary/QelVocLocalPrototype.h"

#include "QelCommon/InstanceFolders.h"

namespace Qel {

namespace {

constexpr const char* fileName = "qelagent.voc.linux";

} // namespace

QelVocIterator* QelVocLocalPrototype::newIteratorWithInit() {
    // Held during the load: otherwise a second thread could load the file again and destroy the first thread's message.
    const QelGuardT<QelLock> guard(lock());
    if (!getMessage() && readFromFile(QelInstanceFolders::join(QelInstanceFolders::etc(), fileName)) != 0)
        return nullptr;
    return newIterator();
}

} // namespace Qel
