#pragma once

#include <map>
#include <string>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/QelVocIterator.h"

namespace Qel {

/// Iterates over the vocabularies of a map as if they were one: vocabularies in order of name and version, the
/// categories or parameters of each in document order.  Does not copy them.
///
/// The set of vocabularies is fixed at construction.  Removing one of them from the map invalidates the iterator.
class QEL_EXPORT QelVocMapIterator : public QelVocIterator {
public:
    /// Iterates over the vocabularies whose name and version are in `filter`; over all if it is null or empty.  Skips
    /// vocabularies whose identity cannot be read.  Of several with equal identity, the last one counts.  The message
    /// must not be null.
    explicit QelVocMapIterator(QelMessage* message, const QelVocIDSet* filter = nullptr);
    /// Copies the position and the filters.
    explicit QelVocMapIterator(const QelVocMapIterator* other);

    using QelVocIterator::newIterator;
    /// Returns a copy, owned by the caller.
    [[nodiscard]] QelVocMapIterator* newIterator() const;

    /// Hides the vocabularies whose name is not in the set; versions are ignored.  An empty set hides none.  Takes
    /// effect at the next step.
    void setVocFilter(const QelVocIDSet& vocFilter) { m_vocFilter = vocFilter; }

    /// Identity of the current vocabulary.  Call it after a successful step only.  The reference is valid as long as
    /// the iterator.
    [[nodiscard]] const QelVocID& getVocID() const { return m_current->first; }
    /// Move to the element of the first or next visible vocabulary.
    int firstVocabulary() const;
    int nextVocabulary() const;
    /// If the current vocabulary is hidden, selects the next visible one; -1 if there is none.
    int filterVocByID() const;

    /// Moves to the element of the current vocabulary; at the end, to that of the first one.
    int seekRoot() const override;

    /// Move to a category or parameter with that ID, in the first vocabulary whose first such element matches the
    /// restriction.
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
    Vocabularies m_vocabularies; ///< with a cursor at the element of each
    mutable Vocabularies::const_iterator m_current;
};

} // namespace Qel
