#pragma once

#include <set>
#include <string>

#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/QelVocMapIterator.h"
#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

namespace Qel {

/// Any number of vocabularies in one message (see VocabularyElements.h), of which a reader sees those that two filters
/// let pass: a choice that is fixed when the map is made, and a narrower one that may change.
///
/// Versions of one vocabulary exist side by side in the message; it is the filters that pick one.
///
/// Operations give 0 for success and -1 for failure, or a new iterator that is the caller's, null for failure.
/// Iterators work on the map's own message: one that was made before a reset() or an erase() is invalid.  A map belongs
/// to one thread at a time.
class QelVocMap {
public:
    using Categories = QelVocIterator::Categories;
    using QelVocIDSortUniqueName = Qel::QelVocIDSortUniqueName;

    /// Owns the message, which may be null.  Readers see the vocabularies of `loadSet` only, unless it is empty.
    explicit QelVocMap(QelMessage* message, const QelVocIDSet& loadSet = {}) : m_message(message), m_loadSet(loadSet) {}
    QelVocMap(const QelVocMap&) = delete;
    QelVocMap& operator=(const QelVocMap&) = delete;
    ~QelVocMap() { reset(nullptr); }

    /// Puts this message, which it then owns, in place of the former one, which is destroyed.
    void reset(QelMessage* message);
    /// The message, which stays the map's; null if there is none.
    [[nodiscard]] QelMessage* getMessage() const { return m_message; }

    /// Adds a copy of the vocabulary on which `source` stands, unless `map` has one of its name and version already.
    /// -1 for one without a name or a version.
    [[nodiscard]] static int insert(QelMessage* map, QelMessageIterator* source);
    /// The same for a vocabulary that has no name yet.  Whether it has a version isn't looked at; without one no
    /// iterator will see it.
    [[nodiscard]] static int insert(QelMessage* map, const QelVocID& id,
                                    const boost::intrusive_ptr<QelVocPrototype>& voc);
    /// Removes a vocabulary that the filters let pass.
    [[nodiscard]] int erase(const QelVocID& id);

    [[nodiscard]] QelVocMapIterator* read() const;
    /// Restricted to what belongs to each of the categories.
    [[nodiscard]] QelVocIterator* readCategory(const Categories& categories) const;
    [[nodiscard]] QelVocIterator* readCategory(const std::string& category) const;
    /// At the first parameter of that ID; null if there is none.
    [[nodiscard]] QelVocIterator* readParameter(const std::string& id) const;
    /// How the values of a counter travel: 0 as doubles, anything else as integers.  -1, and `type` as it was, if there
    /// is no parameter of that ID, or it doesn't tell.
    int readValueType(const std::string& id, int& type) const;
    /// Whether there is a parameter of that ID: a feature is enabled by being mentioned.
    [[nodiscard]] bool isFeatureEnabled(const std::string& id) const;

    /// Narrows what readers see to vocabularies of these names; no names lift that.
    ///
    /// Under a `loadSet`, a name outside of it is a failure, and the restriction stays as it was.  Without one a name
    /// that no vocabulary has is passed over, so that only unknown names lift the restriction; but there must be a
    /// vocabulary.
    [[nodiscard]] int setRestrictVocSet(const std::set<std::string>& names);

private:
    int findInMessage(const std::set<std::string>& names, QelVocIDSet& found) const;
    int findInLoadSet(const std::set<std::string>& names, QelVocIDSet& found) const;

    QelMessage* m_message;
    QelVocIDSet m_loadSet;
    QelVocIDSet m_restrictSet;
};

using QelVocMapSP = boost::shared_ptr<QelVocMap>;

} // namespace Qel
