#pragma once

#include <set>
#include <string>

#include "QelMessage/QelBinaryIterator.h"

namespace Qel {

/// A cursor that knows the shape of a vocabulary (see VocabularyElements.h): it steps over the categories and the
/// parameters, all of them or those that belong to each of a set of categories.
///
/// The message must be a vocabulary of its own; it stays the caller's and must outlive the iterator.  A new iterator
/// stands at the root of the message.  Operations give 0 for success and -1 for failure.
class QelVocIterator : public QelBinaryIterator {
public:
    using Categories = std::set<std::string>;

    /// With `restrictSet` it is restricted to those categories from the start.
    explicit QelVocIterator(QelMessage* message, const Categories* restrictSet = nullptr);
    /// At the same element, with the same restriction.
    explicit QelVocIterator(const QelVocIterator* other);

    using QelBinaryIterator::newIterator;
    /// A copy, the caller's.
    [[nodiscard]] QelVocIterator* newIterator() const;

    /// To the element that holds the vocabulary.
    int seekRoot() const override;

    /// The categories that the operations without an argument of their own ask for.
    void setRestrictSet(const Categories& categories) { m_restrictSet = categories; }

    /// To the first, or to the next, category or parameter that belongs to each of the categories: to any one for an
    /// empty set.  A first that isn't found leaves the cursor at the vocabulary, a next that isn't found at the last
    /// element.
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

    /// ID of the category or parameter under the cursor.
    int getID(std::string& id) const;
    /// Whether what is under the cursor belongs to each of the categories.
    [[nodiscard]] bool belongsTo(const Categories& categories) const;
    [[nodiscard]] bool belongsTo(const std::string& category) const { return belongsTo(Categories{category}); }

    /// To the first category or parameter of that ID.  One that doesn't belong to the restriction is a failure, at
    /// which the cursor stays: there is no second look for another of that ID.
    int seekCategory(const std::string& id) const;
    int seekParameter(const std::string& id) const;

    /// What the operations above are made of: `first` begins at the vocabulary's first element, otherwise the walk goes
    /// on behind the present one.
    virtual int processCategory(const Categories& categories, bool first) const;
    virtual int processParameter(const Categories& categories, bool first) const;

private:
    int process(int element, const Categories& categories, bool first) const;
    int seekElement(int element, const std::string& id) const;

    Categories m_restrictSet;
};

} // namespace Qel
