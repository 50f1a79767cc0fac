#include "QelFunctionalityCore/Profile/QelProfileFilter.h"

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelNames.h"

namespace Qel::Internal {

int readItemName(const QelMessageIterator& cursor, std::string& name, int nameID) {
    if (cursor.getValue(name, nameID) == 0)
        return 0;
    setErrorMessage("cannot read %s: element %s is missing", cursor.curName().c_str(),
                    QelNames::elementName(nameID).c_str());
    return -1;
}

} // namespace Qel::Internal
