#pragma once

#include <string>
#include <utility>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Profile/QelProfileFilter.h"

// Filtered iteration over the named items of a section.  Private header.

namespace Qel::Internal {

/// Without a filter, the settings' own reader reads all items and restores the cursor.  The filtered iteration does
/// not: it leaves the cursor at the last item, or at the item that ended it.  The position determines which sections an
/// intersection finds after its browse lists; agents of all versions depend on it.
template <class Settings>
int readFilteredItems(const QelMessageIterator& cursor, Settings& settings, const Settings* filter,
                      QelFilterMode mode) {
    using Item = typename Settings::Item;
    if (!filter || filter->items.empty())
        return typename Settings::Reader()(cursor, settings);
    if (cursor.seek(Settings::itemID) != 0)
        return 0;
    do {
        Item key;
        if (readItemName(cursor, key.name, Item::nameID) != 0)
            return -1;
        if (key.name.empty()) {
            setErrorMessage("cannot read %s: its name is empty", cursor.curName().c_str());
            return -1;
        }
        if (filter->items.contains(key) == (mode == QelFilterMode::intersection)) {
            // A partly malformed item is kept with the fields that could be read.
            Item item;
            static_cast<void>(typename Item::Reader()(cursor, item));
            settings.items.insert(std::move(item));
        }
    } while (cursor.nextSibling(Settings::itemID) == 0);
    return 0;
}

} // namespace Qel::Internal
