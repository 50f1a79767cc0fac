#pragma once

#include <set>
#include <string>

#include <boost/intrusive_ptr.hpp>
#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelFunctionalityCore/Vocabulary/QelVocID.h"
#include "QelFunctionalityCore/Vocabulary/QelVocMapIterator.h"
#include "QelFunctionalityCore/Vocabulary/QelVocPrototype.h"

namespace Qel {

/// Any number of vocabularies in one message (see VocabularyElements.h).  Readers see the vocabularies that pass two
/// filters: the load set, fixed at construction, and the restriction set by setRestrictVocSet().
///
/// The message may contain several versions of a vocabulary; the filters select one of them.
///
/// Operations return 0 on success and -1 on failure, or a new iterator owned by the caller, null on failure.  Iterators
/// refer to the map's message: reset() and erase() invalidate them.  Not thread-safe.
class QEL_EXPORT QelVocMap {
public:
    using Categories = QelVocIterator::Categories;
    using QelVocIDSortUniqueName = Qel::QelVocIDSortUniqueName;

    /// Takes ownership of the message, which may be null.  An empty `loadSet` lets all vocabularies pass.
    explicit QelVocMap(QelMessage* message, const QelVocIDSet& loadSet = {}) : m_message(message), m_loadSet(loadSet) {}
    QelVocMap(const QelVocMap&) = delete;
    QelVocMap& operator=(const QelVocMap&) = delete;
    ~QelVocMap() { reset(nullptr); }

    /// Destroys the current message and takes ownership of the new one, which may be null.
    void reset(QelMessage* message);
    /// The message, owned by the map; null if there is none.
    [[nodiscard]] QelMessage* getMessage() const { return m_message; }

    /// Adds a copy of the vocabulary under `source`, unless `map` already contains its name and version.  -1 if the
    /// vocabulary has no name or no version.
    [[nodiscard]] static int insert(QelMessage* map, QelMessageIterator* source);
    /// Adds a copy of an unnamed vocabulary under the name `id.name`, unless `map` already contains `id`.  Does not
    /// check that the vocabulary has a version; iterators skip a vocabulary without one.
    [[nodiscard]] static int insert(QelMessage* map, const QelVocID& id,
                                    const boost::intrusive_ptr<QelVocPrototype>& voc);
    /// Removes a vocabulary; -1 if the filters hide it.
    [[nodiscard]] int erase(const QelVocID& id);

    [[nodiscard]] QelVocMapIterator* read() const;
    /// An iterator restricted to elements that belong to every given category.
    [[nodiscard]] QelVocIterator* readCategory(const Categories& categories) const;
    [[nodiscard]] QelVocIterator* readCategory(const std::string& category) const;
    /// An iterator at the first parameter with that ID; null if there is none.
    [[nodiscard]] QelVocIterator* readParameter(const std::string& id) const;
    /// Reads the value type of a counter: 0 for doubles, any other number for integers.  -1, and `type` unchanged, if
    /// there is no parameter with that ID or it does not specify a value type.
    int readValueType(const std::string& id, int& type) const;
    /// Whether there is a parameter with that ID.  Its presence enables the feature, whatever its value.
    [[nodiscard]] bool isFeatureEnabled(const std::string& id) const;

    /// Restricts readers to vocabularies with these names.  An empty set removes the restriction.
    ///
    /// With a load set, a name outside it is an error that leaves the restriction unchanged.  Without a load set,
    /// unknown names are ignored, so a set of unknown names only also removes the restriction; a map without
    /// vocabularies is an error.
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
