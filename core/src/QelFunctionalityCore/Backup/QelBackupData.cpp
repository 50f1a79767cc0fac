#include "QelFunctionalityCore/Backup/QelBackupData.h"

#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelBackupData> : WireWords<QelBackupData> { static constexpr int nsId = 282, typeId = 284; };
const QelWireLayout& QelBackupData::wire = wireLayoutOf<QelBackupData>;

template <> struct Wire<QelEnvBackupData> : WireWords<QelEnvBackupData> {
    static constexpr int nsId = 282, typeId = 285;
    static constexpr QelWireField fields[] = {
        field<&R::env>(1624, ignored, ifSet).bestEffort(),
        wrapped<&R::paths>(1980, 1156, ignored, ifSet),
        field<&R::excludes>(1981, ignored, always),
    };
};
const QelWireLayout& QelEnvBackupData::wire = wireLayoutOf<QelEnvBackupData>;

template class QelDerivedParserFactory<QelBackupData>;

QelDerivedParserFactoryT<QelBackupData, QelBackupData> factoryQelBackupData(true);
QelDerivedParserFactoryT<QelEnvBackupData, QelBackupData> factoryQelEnvBackupData(false);

} // namespace Qel
