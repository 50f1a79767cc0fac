#include "QelFunctionalityCore/Backup/QelBackup.h"

#include <utility>

#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

int readBackup(const QelMessageIterator& cursor, QelNewBackupData& data) {
    return cursor.getObj(static_cast<QelBackup&>(data), "backup"_element);
}
int writeBackup(QelMessageIterator& cursor, const QelNewBackupData& data) {
    return cursor.putObj(static_cast<const QelBackup&>(data), "backup"_element);
}

} // namespace

void QelBackup::swap(QelBackup& other) noexcept {
    if (this == &other)
        return;
    QelDSObjectInfo::swap(other);
    std::swap(eid, other.eid);
    description.swap(other.description);
    std::swap(count, other.count);
    std::swap(flags, other.flags);
    std::swap(localFlag, other.localFlag);
}

template <> struct Wire<QelBackup> : WireWords<QelBackup> {
    static constexpr QelWireField fields[] = {
        field<&R::eid>(1866, required, always),
        field<&R::description>(1496, ignored, ifSet, base64),
        field<&R::count>(1259, ignored, always),
        wrappedBits<&R::flags, QelWireBit{1, 2131}>(1786, ifSet),
        base<QelDSObjectInfo>(),
    };
};
const QelWireLayout& QelBackup::wire = wireLayoutOf<QelBackup>;

template <> struct Wire<QelNewBackupData> : WireWords<QelNewBackupData> {
    static constexpr QelWireField fields[] = {step<&readBackup, &writeBackup>("backup", "backup"_element, required)};
};
const QelWireLayout& QelNewBackupData::wire = wireLayoutOf<QelNewBackupData>;

template <> struct Wire<QelDestroyedBackupsData> : WireWords<QelDestroyedBackupsData> {
    static constexpr QelWireField fields[] = {list<&R::ids>(1010, required)};
};
const QelWireLayout& QelDestroyedBackupsData::wire = wireLayoutOf<QelDestroyedBackupsData>;

template class QelDerivedParserFactory<QelNewBackupData>;
template class QelDerivedParserFactory<QelDestroyedBackupsData>;

QelDerivedParserFactoryT<QelNewBackupData, QelNewBackupData> factoryQelNewBackupData(true);
QelDerivedParserFactoryT<QelDestroyedBackupsData, QelDestroyedBackupsData> factoryQelDestroyedBackupsData(true);

} // namespace Qel
