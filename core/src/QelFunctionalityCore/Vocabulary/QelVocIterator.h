#pragma once

#include <set>
#include <string>

#include "QelCommon/Export.h"
#include "QelMessage/QelBinaryIterator.h"

namespace Qel {

/// A cursor for the layout of a vocabulary (see VocabularyElements.h).  It iterates over the categories or the
/// parameters, optionally only over those that belong to every category of a given set.
///
/// The message must contain a single vocabulary.  The caller keeps ownership of it, and it must outlive the iterator. A
/// new iterator is positioned at the root of the message.  Operations return 0 on success and -1 on failure.
class QEL_EXPORT QelVocIterator : public QelBinaryIterator {
public:
    using Categories = std::set<std::string>;

    /// `restrictSet`: initial value for setRestrictSet(); null: empty.
    explicit QelVocIterator(QelMessage* message, const Categories* restrictSet = nullptr);
    /// Copies the position and the restriction.
    explicit QelVocIterator(const QelVocIterator* other);

    using QelBinaryIterator::newIterator;
    /// Returns a copy, owned by the caller.
    [[nodiscard]] QelVocIterator* newIterator() const;

    /// Moves to the element that contains the vocabulary.
    int seekRoot() const override;

    /// Sets the categories that the overloads without a parameter filter by.
    void setRestrictSet(const Categories& categories) { m_restrictSet = categories; }

    /// Move to the first or next category or parameter that belongs to every given category; an empty set matches all.
    /// If there is none, first...() leaves the cursor at the vocabulary, and next...() at the last element.
    int firstCategory(const Categories& categories) const { return processCategory(categories, true); }
    int nextCategory(const Categories& categories) const { return processCategory(categories, false); }
    int firstParameter(const Categories& categories) const { return processParameter(categories, true); }
    int nextParameter(const Categories& categories) const { return processParameter(categories, false); }
    int firstCategory() const { return firstCategory(m_restrictSet); }
    int nextCategory() const { return nextCategory(m_restrictSet); }
    int firstParameter() const { return firstParameter(m_restrictSet); }
    int nextParameter() const { return nextParameter(m_restrictSet); }
    int firstCategory(const std::string& category) const { return firstCategory(Categories{category}); }
    int nextCategory(const std::string& category) const { return nextCategory(Categories{category}); }
    int firstParameter(const std::string& category) const { return firstParameter(Categories{category}); }
    int nextParameter(const std::string& category) const { return nextParameter(Categories{category}); }

    /// Reads the ID of the category or parameter under the cursor.
    int getID(std::string& id) const;
    /// Whether the category or parameter under the cursor belongs to every given category.
    [[nodiscard]] bool belongsTo(const Categories& categories) const;
    [[nodiscard]] bool belongsTo(const std::string& category) const { return belongsTo(Categories{category}); }

    /// Move to the first category or parameter with that ID.  If it does not match the restriction, they fail and leave
    /// the cursor there; later elements with that ID are not considered.
    int seekCategory(const std::string& id) const;
    int seekParameter(const std::string& id) const;

    /// Implement the iteration above.  `first`: start at the first element of the vocabulary; otherwise continue after
    /// the current one.
    virtual int processCategory(const Categories& categories, bool first) const;
    virtual int processParameter(const Categories& categories, bool first) const;

private:
    int process(int element, const Categories& categories, bool first) const;
    int seekElement(int element, const std::string& id) const;

    Categories m_restrictSet;
};

} // namespace Qel
