#pragma once

#include <string>
#include <utility>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Profile/QelProfileFilter.h"

// The walk over the named items of a section.  For source files only.

namespace Qel::Internal {

/// Where nothing is to be selected, the settings' own reader reads them and comes back.  The walk doesn't: it leaves
/// the cursor on the last item, or on the one that ended it.  Which sections an intersection finds behind its browse
/// lists follows from that, and agents of all ages are to find the same.
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
            setErrorMessage("can't read %s: its name is empty", cursor.curName().c_str());
            return -1;
        }
        if (filter->items.contains(key) == (mode == QelFilterMode::intersection)) {
            // An item that can't be read whole is taken as far as it could.
            Item item;
            static_cast<void>(typename Item::Reader()(cursor, item));
            settings.items.insert(std::move(item));
        }
    } while (cursor.nextSibling(Settings::itemID) == 0);
    return 0;
}

} // namespace Qel::Internal
