#include "QelFunctionalityCore/Backup/QelBackupData.h"

#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

template <> struct Wire<QelBackupData> : WireWords<QelBackupData> { static constexpr int nsId = 282, typeId = 284; };
template <> const QelWireLayout& qelWireLayout<QelBackupData>() {
    return wireLayoutOf<QelBackupData>;
}

template <> struct Wire<QelEnvBackupData> : WireWords<QelEnvBackupData> {
    static constexpr int nsId = 282, typeId = 285;
    static constexpr QelWireField fields[] = {
        field<&QelEnvBackupData::env>(1624, ignored, ifSet).unchecked(),
        wrapped<&QelEnvBackupData::paths>(1980, 1156, ignored, ifSet),
        field<&QelEnvBackupData::excludes>(1981, ignored, always),
    };
};
template <> const QelWireLayout& qelWireLayout<QelEnvBackupData>() {
    return wireLayoutOf<QelEnvBackupData>;
}

template class QelDerivedParserFactory<QelBackupData>;

QelDerivedParserFactoryT<QelBackupData, QelBackupData> factoryQelBackupData(true);
QelDerivedParserFactoryT<QelEnvBackupData, QelBackupData> factoryQelEnvBackupData(false);

} // namespace Qel
