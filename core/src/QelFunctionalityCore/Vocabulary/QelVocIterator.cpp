#include "QelFunctionalityCore/Vocabulary/QelVocIterator.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelElementNames.h"

namespace Qel {

QelVocIterator::QelVocIterator(QelMessage* message, const Categories* restrictSet)
    : QelBinaryIterator(dynamic_cast<QelBinary*>(message)) {
    if (restrictSet)
        m_restrictSet = *restrictSet;
}

QelVocIterator::QelVocIterator(const QelVocIterator* other)
    : QelBinaryIterator(other), m_restrictSet(other->m_restrictSet) {}

QelVocIterator* QelVocIterator::newIterator() const {
    return new QelVocIterator(this);
}

int QelVocIterator::seekRoot() const {
    const QelBinaryIterator root(static_cast<QelBinary*>(getMessage()));
    if (root.seek("data"_element) != 0 || root.seek("agent"_element) != 0)
        return -1;
    takePlaceOf(root);
    return 0;
}

int QelVocIterator::getID(std::string& id) const {
    return getValue(id, "id"_element);
}

bool QelVocIterator::belongsTo(const Categories& categories) const {
    if (categories.empty())
        return true;
    if (firstChild("category"_element) != 0)
        return false;
    std::vector<std::string_view> missing(categories.begin(), categories.end());
    std::string category;
    do {
        if (getValue(category, getEmptyID()) == 0)
            std::erase(missing, category);
    } while (!missing.empty() && nextSibling("category"_element) == 0);
    seekUp();
    return missing.empty();
}

int QelVocIterator::process(int element, const Categories& categories, bool first) const {
    if (first ? seekRoot() != 0 || firstChild(element) != 0 : nextSibling(element) != 0)
        return -1;
    while (!belongsTo(categories)) {
        if (nextSibling(element) == 0)
            continue;
        if (first)
            seekUp();
        return -1;
    }
    return 0;
}

int QelVocIterator::processCategory(const Categories& categories, bool first) const {
    return process("category"_element, categories, first);
}

int QelVocIterator::processParameter(const Categories& categories, bool first) const {
    return process("parameter"_element, categories, first);
}

int QelVocIterator::seekElement(int element, const std::string& id) const {
    if (seekRoot() != 0 || seekChildByValue(element, "id"_element, id) != 0)
        return -1;
    return belongsTo(m_restrictSet) ? 0 : -1;
}

int QelVocIterator::seekCategory(const std::string& id) const {
    return seekElement("category"_element, id);
}

int QelVocIterator::seekParameter(const std::string& id) const {
    return seekElement("parameter"_element, id);
}

} // namespace Qel
