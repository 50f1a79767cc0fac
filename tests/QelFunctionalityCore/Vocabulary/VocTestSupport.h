#pragma once

#include <set>
#include <string>
#include <vector>

#include "QelFunctionalityCore/Vocabulary/QelVocIterator.h"
#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageIterator.h"
#include "support/TestMessage.h"

namespace Qel::TestSupport {

using Categories = QelVocIterator::Categories;

/// A category or a parameter.
struct VocItem {
    std::string id;
    std::vector<std::string> categories{};
    std::string value{}; ///< parameters only; empty: no value
};

/// A vocabulary as plain lists.
struct Voc {
    std::string name;
    std::string version{}; ///< written as the first parameter unless empty
    std::vector<VocItem> categories{};
    std::vector<VocItem> parameters{};
};

inline void putItem(QelMessageIterator& at, int element, const VocItem& item) {
    at.newChild(element);
    at.putValue(item.id, 1010);
    for (const std::string& category : item.categories)
        at.putValue(category, 1264);
    if (!item.value.empty())
        at.putValue(item.value, 1307);
    at.seekUp();
}

/// Adds the categories and parameters as children of the current element.
inline void putItems(QelMessageIterator& at, const Voc& voc) {
    for (const VocItem& category : voc.categories)
        putItem(at, 1264, category);
    if (!voc.version.empty())
        putItem(at, 1017, {"vocversion", {}, voc.version});
    for (const VocItem& parameter : voc.parameters)
        putItem(at, 1017, parameter);
}

/// Adds the vocabulary to a map.  The cursor must be at its root.
inline void putVocabulary(QelMessageIterator& root, const Voc& voc) {
    root.newChild(1871);
    root.putValue(voc.name, 1026);
    putItems(root, voc);
    root.seekUp();
}

/// Returns a message with these vocabularies, owned by the caller.
[[nodiscard]] inline QelMessage* makeMap(const std::vector<Voc>& vocs) {
    QelMessage* const message = QelMessage::getFactory()->createNew();
    message->create(0);
    const std::unique_ptr<QelMessageIterator> root(message->rootIterator());
    for (const Voc& voc : vocs)
        putVocabulary(*root, voc);
    return message;
}

/// Returns a message with a single vocabulary, without its name, owned by the caller.
[[nodiscard]] inline QelMessage* makeVocabulary(const Voc& voc) {
    QelMessage* const message = QelMessage::getFactory()->createNew();
    message->create(0);
    const std::unique_ptr<QelMessageIterator> at(message->rootIterator());
    at->newChild(1307);
    at->newChild(1044);
    putItems(*at, voc);
    return message;
}

/// ID of the item under the cursor; "(none)" if it has none.
[[nodiscard]] inline std::string idOf(const QelVocIterator& at) {
    std::string id = "(none)";
    at.getID(id);
    return id;
}

/// IDs of the items, in iteration order.
[[nodiscard]] inline std::vector<std::string> categoriesOf(const QelVocIterator& at, const Categories& belonging = {}) {
    std::vector<std::string> ids;
    for (int result = at.firstCategory(belonging); result == 0; result = at.nextCategory(belonging))
        ids.push_back(idOf(at));
    return ids;
}
[[nodiscard]] inline std::vector<std::string> parametersOf(const QelVocIterator& at, const Categories& belonging = {}) {
    std::vector<std::string> ids;
    for (int result = at.firstParameter(belonging); result == 0; result = at.nextParameter(belonging))
        ids.push_back(idOf(at));
    return ids;
}

[[nodiscard]] inline std::string textOf(const QelVocID& id) {
    return std::string(id.name.c_str()) + ' ' + id.version.c_str();
}

/// The visible vocabularies, as "NAME VERSION".
[[nodiscard]] inline std::vector<std::string> vocabulariesOf(const QelVocMapIterator& at) {
    std::vector<std::string> ids;
    for (int result = at.firstVocabulary(); result == 0; result = at.nextVocabulary())
        ids.push_back(textOf(at.getVocID()));
    return ids;
}

} // namespace Qel::TestSupport
