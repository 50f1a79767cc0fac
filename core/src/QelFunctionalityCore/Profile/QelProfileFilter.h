#pragma once

#include <string>
#include <utility>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelMessage/QelMessageIterator.h"

// Set algebra of profiles.  A filter is itself a profile: its specified sections, and the item names in them, form the
// set.

namespace Qel {

namespace Internal {

QEL_EXPORT [[nodiscard]] int readItemName(const QelMessageIterator& cursor, std::string& name, int nameID);

} // namespace Internal

/// Reads only the name of an item.  Returns -1 if it is missing.
template <class Item> struct QelItemNameReader {
    int operator()(const QelMessageIterator& cursor, Item& item) const {
        return Internal::readItemName(cursor, item.name, Item::nameID);
    }
};

/// Writes only the name of an item.
template <class Item> struct QelItemNameWriter : QelWriterBaseT<QelItemNameWriter<Item>> {
    int operator()(QelMessageIterator& cursor, const Item& item) const {
        return cursor.putValue(item.name, Item::nameID) == 0 ? 0 : -1;
    }
};

/// Part of a message that is read through a filter.
enum class QelFilterMode : bool {
    difference,   ///< elements not in the filter
    intersection, ///< elements in the filter
};

/// Reads part of a message; see readFiltered() of the record.  Reads everything if there is no filter.
template <class Record, QelFilterMode mode> class QelFilteredReader {
public:
    /// `filter` may be null.
    explicit QelFilteredReader(boost::shared_ptr<const Record> filter) : m_filter(std::move(filter)) {}

    int operator()(const QelMessageIterator& cursor, Record& record) const {
        return readFiltered(cursor, record, m_filter.get(), mode);
    }

private:
    boost::shared_ptr<const Record> m_filter;
};

} // namespace Qel
