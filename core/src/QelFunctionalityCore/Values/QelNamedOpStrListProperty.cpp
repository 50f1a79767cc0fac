#include "QelFunctionalityCore/Values/QelNamedOpStrListProperty.h"

#include "QelCommon/Debug.h"
#include "QelCommon/Strings.h"
#include "QelMessage/QelCombinators.h"

namespace Qel {

namespace {

constexpr int operationElement = 1638;
constexpr int nameElement = 1026;
constexpr int valueElement = 1018;

} // namespace

int QelNamedOpStrListProperty::Reader::operator()(const QelMessageIterator& cursor,
                                                  QelNamedOpStrListProperty& property) const {
    int operation = property.getOperation();
    cursor.getValue(operation, operationElement);
    property.setOperation(operation);

    std::string name;
    if (cursor.getValue(name, nameElement) != 0)
        return -1;
    property.setName(name);
    return QelReaderData(property.get(), valueElement, QelReaderOptional)(cursor, property.get());
}

int QelNamedOpStrListProperty::Writer::operator()(QelMessageIterator& cursor,
                                                  const QelNamedOpStrListProperty& property) const {
    if (property.getOperation() != noOperation)
        cursor.putValue(property.getOperation(), operationElement);
    cursor.putValue(property.getName(), nameElement);
    QelWriterData(property.get(), valueElement)(cursor, property.get());
    return 0;
}

bool QelLessNamedOpStrListPropertyPtr::operator()(const boost::shared_ptr<QelNamedOpStrListProperty>& a,
                                                  const boost::shared_ptr<QelNamedOpStrListProperty>& b) const {
    QEL_CHECK_AT(a || b, "core/src/QelFunctionalityCore/QelProperty", 30);
    return compareNoCase(a->getName(), b->getName()) < 0;
}

} // namespace Qel
