#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"

#include <algorithm>
#include <memory>

#include "QelFunctionalityCore/Vocabulary/VocabularyElements.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

namespace Element = VocabularyElement;

namespace {

/// Whether the root has a child vocabulary with this name and version.  The cursor must be at the root.
bool containsVocabulary(const QelMessageIterator& root, const QelVocID& id) {
    if (root.firstChild("vocabulary"_element) != 0)
        return false;
    bool found = false;
    do {
        QelVocID each;
        found = root.getObj(each, getEmptyID()) == 0 && each == id;
    } while (!found && root.nextSibling("vocabulary"_element) == 0);
    root.seekUp();
    return found;
}

} // namespace

void QelVocMap::reset(QelMessage* message) {
    ifDestroy(m_message);
    m_message = message;
}

int QelVocMap::insert(QelMessage* map, QelMessageIterator* source) {
    QelVocID id;
    if (source->getObj(id, getEmptyID()) != 0)
        return -1;
    const std::unique_ptr<QelMessageIterator> to(map->rootIterator());
    if (containsVocabulary(*to, id))
        return 0;
    to->newChild("vocabulary"_element);
    // Cannot fail: the identity was read from child elements.
    source->firstChild();
    int result = 0;
    do
        result = to->copyToChild(source);
    while (result == 0 && source->nextSibling() == 0);
    source->seekUp();
    return result == 0 ? 0 : -1;
}

int QelVocMap::insert(QelMessage* map, const QelVocID& id, const boost::intrusive_ptr<QelVocPrototype>& voc) {
    const std::unique_ptr<QelMessageIterator> to(map->rootIterator());
    if (containsVocabulary(*to, id))
        return 0;
    to->newChild("vocabulary"_element);
    to->putValue(std::string(id.name.c_str()), "name"_element);
    // Ignore a failure: for a prototype without a message, the new vocabulary contains only the name.
    to->putObj(*voc, getEmptyID());
    return 0;
}

int QelVocMap::erase(const QelVocID& id) {
    const std::unique_ptr<QelVocMapIterator> at(read());
    if (!at || at->firstVocabulary() != 0)
        return -1;
    while (!(at->getVocID() == id))
        if (at->nextVocabulary() != 0)
            return -1;
    return at->deleteFromChild();
}

QelVocMapIterator* QelVocMap::read() const {
    if (!m_message)
        return nullptr;
    auto iterator = std::make_unique<QelVocMapIterator>(m_message, &m_loadSet);
    iterator->setVocFilter(m_restrictSet);
    return iterator.release();
}

QelVocIterator* QelVocMap::readCategory(const Categories& categories) const {
    QelVocMapIterator* const iterator = read();
    if (iterator)
        iterator->setRestrictSet(categories);
    return iterator;
}

QelVocIterator* QelVocMap::readCategory(const std::string& category) const {
    return readCategory(Categories{category});
}

QelVocIterator* QelVocMap::readParameter(const std::string& id) const {
    std::unique_ptr<QelVocMapIterator> iterator(read());
    return iterator && iterator->seekParameter(id) == 0 ? iterator.release() : nullptr;
}

int QelVocMap::readValueType(const std::string& id, int& type) const {
    const std::unique_ptr<QelVocIterator> at(readParameter(id));
    return at ? at->getValue(type, Element::valueType) : -1;
}

bool QelVocMap::isFeatureEnabled(const std::string& id) const {
    return std::unique_ptr<QelVocIterator>(readParameter(id)) != nullptr;
}

int QelVocMap::setRestrictVocSet(const std::set<std::string>& names) {
    QelVocIDSet found;
    if ((m_loadSet.empty() ? findInMessage(names, found) : findInLoadSet(names, found)) != 0)
        return -1;
    m_restrictSet.swap(found);
    return 0;
}

int QelVocMap::findInMessage(const std::set<std::string>& names, QelVocIDSet& found) const {
    if (names.empty())
        return 0;
    const std::unique_ptr<QelVocMapIterator> at(read());
    if (!at)
        return -1;
    at->setVocFilter({});
    if (at->firstVocabulary() != 0)
        return -1;
    do {
        if (names.contains(at->getVocID().name.c_str()))
            found.insert(at->getVocID());
    } while (at->nextVocabulary() == 0);
    return 0;
}

int QelVocMap::findInLoadSet(const std::set<std::string>& names, QelVocIDSet& found) const {
    for (const std::string& name : names) {
        const auto loaded =
            std::find_if(m_loadSet.begin(), m_loadSet.end(), [&](const QelVocID& id) { return id.name == name; });
        if (loaded == m_loadSet.end())
            return -1;
        found.insert(*loaded);
    }
    return 0;
}

} // namespace Qel
