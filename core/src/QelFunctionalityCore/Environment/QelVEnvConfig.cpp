#include "QelFunctionalityCore/Environment/QelVEnvConfig.h"

#include <algorithm>
#include <memory>

#include "QelFunctionalityCore/Environment/QelEnvConfigElements.h"
#include "QelMessage/QelElementNames.h"

namespace Qel {

using namespace EnvConfigElement;

int QelVEnvConfig::getDisabled(bool& isDisabled) const {
    const QelMessageIterator* const cursor = tree();
    if (!cursor)
        return -1;
    if (cursor->getValue(isDisabled, "disabled"_element) != 0)
        isDisabled = false;
    return 0;
}

int QelVEnvConfig::setDisabled(bool isDisabled) {
    QelMessageIterator& cursor = initMsg();
    const std::unique_ptr<QelMessageIterator> eraser(cursor.newIterator(false));
    QEL_CHECK(eraser != nullptr, sourcePath);
    if (eraser->seek("disabled"_element) == 0)
        eraser->deleteFromChild();
    return cursor.putValue(isDisabled ? 1 : 0, "disabled"_element);
}

template <class Limits> int QelVEnvConfig::getQoSLikeListExT(QelOptionalProperty<Limits>& limits, int id) const {
    const QelMessageIterator* const cursor = tree();
    if (!cursor)
        return -1;
    limits.get().clear();
    limits.specify(false);
    if (cursor->firstChild(id) != 0)
        return 0;
    limits.specify(true);
    int result = 0;
    do {
        typename Limits::value_type limit;
        if (cursor->getObj(limit, getEmptyID()) == 0) {
            limits.get().insert(limit);
        } else {
            // An element without content represents a list that is specified and empty.
            if (cursor->firstChild() == 0) {
                cursor->seekUp();
                result = -1;
            }
            break;
        }
    } while (cursor->nextSibling(id) == 0);
    cursor->seekUp();
    return result;
}

int QelVEnvConfig::getQoSes(QelQoSListOptionalProperty& limits) const {
    return getQoSLikeListExT(limits, "qos"_element);
}

int QelVEnvConfig::setQoSes(const QelQoSListOptionalProperty& limits) {
    return setListAttr(limits, "qos"_element);
}

int QelVEnvConfig::getQoS(QelOptionalProperty<QelQoS>& limit) const {
    QelQoSListOptionalProperty limits;
    if (getQoSes(limits) != 0)
        return -1;
    limit.specify(false);
    const auto& set = limits.get();
    const auto found = std::find_if(set.begin(), set.end(), QelQoS::CompareById(limit.get().id));
    if (found != set.end())
        limit = *found;
    return 0;
}

int QelVEnvConfig::setQoS(const QelOptionalProperty<QelQoS>& limit) {
    QelQoSListOptionalProperty limits;
    getQoSes(limits);
    limits.get().erase(limit.get());
    limits.get().insert(limit.get());
    limits.specify(true);
    return setQoSes(limits);
}

} // namespace Qel
