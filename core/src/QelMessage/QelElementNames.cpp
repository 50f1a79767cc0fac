#include "QelMessage/QelElementNames.h"

#include "QelMessage/QelNameTables.h"

namespace Qel::QelNames {

constinit const Table elementTable = checkedTable<elementEntries>('e');

} // namespace Qel::QelNames
