#pragma once

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/QelVocIterator.h"

namespace Qel {

/// Walks the vocabularies of a map as if they were one: by name and version, the categories or the parameters of each
/// in their order.  What a vocabulary holds isn't copied.
///
/// The iterator is invalid when a vocabulary that it knows has left the map, and doesn't see one that is added.
class QelVocMapIterator : public QelVocIterator {
public:
    /// Over the vocabularies of the message that `filter` names with their version; over all of them if it is null or
    /// empty.  One without a readable identity is left out, of several with one identity the last is taken.  The
    /// message must not be null.
    explicit QelVocMapIterator(QelMessage* message, const QelVocIDSet* filter = nullptr);
    /// At the same element and vocabulary, with the same filters.
    explicit QelVocMapIterator(const QelVocMapIterator* other);

    using QelVocIterator::newIterator;
    /// A copy, the caller's.
    [[nodiscard]] QelVocMapIterator* newIterator() const;

    /// Hides the vocabularies whose name isn't in the set, whatever their version, from the next step on; an empty set
    /// shows them all.
    void setVocFilter(const QelVocIDSet& vocFilter) { m_vocFilter = vocFilter; }

    /// Identity of the present vocabulary, valid behind a step that succeeded and as long as the iterator lives.
    [[nodiscard]] const QelVocID& getVocID() const { return m_current->first; }
    /// To the first, or to the next, vocabulary that is shown; the cursor then stands on its element.
    int firstVocabulary() const;
    int nextVocabulary() const;
    /// Leaves a vocabulary that is hidden for the next one that is shown; -1 if there is none.
    int filterVocByID() const;

    /// To the element of the present vocabulary; at the end, to that of the first one.
    int seekRoot() const override;

    /// To the first category or parameter of that ID that a vocabulary has and the restriction allows.
    int seekCategory(const std::string& id) const;
    int seekParameter(const std::string& id) const;

    int processCategory(const Categories& categories, bool first) const override;
    int processParameter(const Categories& categories, bool first) const override;

private:
    using Vocabularies = std::map<QelVocID, boost::shared_ptr<QelBinaryIterator>>;

    int enterVocabulary() const;
    template <class Search> int searchFromFirst(const Search& search) const;
    template <class Search> int searchOn(int result, const Search& search) const;

    QelVocIDSet m_vocFilter;
    Vocabularies m_vocabularies; ///< a cursor for each, at its element
    mutable Vocabularies::const_iterator m_current;
};

} // namespace Qel
