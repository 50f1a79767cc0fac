#include "QelFunctionalityCore/Vocabulary/QelVocMapIterator.h"

#include <boost/make_shared.hpp>

#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

namespace {

QelMessage* checked(QelMessage* message) {
    QEL_CHECK(message != nullptr, "core/src/QelFunctionalityCore/QelVoc");
    return message;
}

bool isSelected(const QelVocID& id, const QelVocIDSet* filter) {
    if (!filter || filter->empty())
        return true;
    const auto sameName = filter->find(id);
    return sameName != filter->end() && *sameName == id;
}

} // namespace

QelVocMapIterator::QelVocMapIterator(QelMessage* message, const QelVocIDSet* filter)
    : QelVocIterator(checked(message)) {
    // A new cursor is at the root of the message.
    const QelBinaryIterator at(this);
    if (at.firstChild("vocabulary"_element) == 0) {
        do {
            QelVocID id;
            if (at.getObj(id, getEmptyID()) == 0 && isSelected(id, filter))
                m_vocabularies[id] = boost::make_shared<QelBinaryIterator>(&at);
        } while (at.nextSibling("vocabulary"_element) == 0);
    }
    m_current = m_vocabularies.begin();
}

QelVocMapIterator::QelVocMapIterator(const QelVocMapIterator* other)
    : QelVocIterator(other), m_vocFilter(other->m_vocFilter), m_vocabularies(other->m_vocabularies),
      m_current(other->m_current == other->m_vocabularies.end() ? m_vocabularies.end()
                                                                : m_vocabularies.find(other->getVocID())) {}

QelVocMapIterator* QelVocMapIterator::newIterator() const {
    return new QelVocMapIterator(this);
}

int QelVocMapIterator::firstVocabulary() const {
    m_current = m_vocabularies.begin();
    return enterVocabulary();
}

int QelVocMapIterator::nextVocabulary() const {
    if (m_current != m_vocabularies.end())
        ++m_current;
    return enterVocabulary();
}

int QelVocMapIterator::filterVocByID() const {
    if (!m_vocFilter.empty())
        while (m_current != m_vocabularies.end() && !m_vocFilter.contains(m_current->first))
            ++m_current;
    return m_current != m_vocabularies.end() ? 0 : -1;
}

/// Moves to the current vocabulary, or to the next one that the filter passes.
int QelVocMapIterator::enterVocabulary() const {
    if (filterVocByID() != 0)
        return -1;
    takePlaceOf(*m_current->second);
    return 0;
}

int QelVocMapIterator::seekRoot() const {
    if (m_current == m_vocabularies.end())
        m_current = m_vocabularies.begin();
    return enterVocabulary();
}

/// Continues a search in the following vocabularies until it succeeds.  `result` is its result in the current
/// vocabulary.
template <class Search> int QelVocMapIterator::searchOn(int result, const Search& search) const {
    while (result != 0) {
        if (nextVocabulary() != 0)
            return -1;
        result = search();
    }
    return 0;
}

template <class Search> int QelVocMapIterator::searchFromFirst(const Search& search) const {
    return firstVocabulary() == 0 ? searchOn(search(), search) : -1;
}

int QelVocMapIterator::processCategory(const Categories& categories, bool first) const {
    const auto searchWhole = [&] { return QelVocIterator::processCategory(categories, true); };
    return first ? searchFromFirst(searchWhole)
                 : searchOn(QelVocIterator::processCategory(categories, false), searchWhole);
}

int QelVocMapIterator::processParameter(const Categories& categories, bool first) const {
    const auto searchWhole = [&] { return QelVocIterator::processParameter(categories, true); };
    return first ? searchFromFirst(searchWhole)
                 : searchOn(QelVocIterator::processParameter(categories, false), searchWhole);
}

int QelVocMapIterator::seekCategory(const std::string& id) const {
    return searchFromFirst([&] { return QelVocIterator::seekCategory(id); });
}

int QelVocMapIterator::seekParameter(const std::string& id) const {
    return searchFromFirst([&] { return QelVocIterator::seekParameter(id); });
}

} // namespace Qel
