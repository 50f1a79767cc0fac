#include "QelFunctionalityCore/Values/QelNamedOpStrListProperty.h"

#include "QelCommon/Debug.h"
#include "QelCommon/Strings.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"

namespace Qel {

int QelNamedOpStrListProperty::Reader::operator()(const QelMessageIterator& cursor,
                                                  QelNamedOpStrListProperty& property) const {
    int operation = property.getOperation();
    cursor.getValue(operation, "operation"_element);
    property.setOperation(operation);

    std::string name;
    if (cursor.getValue(name, "name"_element) != 0)
        return -1;
    property.setName(name);
    return QelReaderData(property.get(), "value"_element, QelReaderOptional)(cursor, property.get());
}

int QelNamedOpStrListProperty::Writer::operator()(QelMessageIterator& cursor,
                                                  const QelNamedOpStrListProperty& property) const {
    if (property.getOperation() != noOperation)
        cursor.putValue(property.getOperation(), "operation"_element);
    cursor.putValue(property.getName(), "name"_element);
    QelWriterData(property.get(), "value"_element)(cursor, property.get());
    return 0;
}

bool QelLessNamedOpStrListPropertyPtr::operator()(const boost::shared_ptr<QelNamedOpStrListProperty>& a,
                                                  const boost::shared_ptr<QelNamedOpStrListProperty>& b) const {
    QEL_CHECK_AT(a || b, "core/src/QelFunctionalityCore/QelProperty", 30);
    return compareNoCase(a->getName(), b->getName()) < 0;
}

} // namespace Qel
