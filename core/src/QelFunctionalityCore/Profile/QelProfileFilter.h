#pragma once

#include <string>
#include <utility>

#include <boost/shared_ptr.hpp>

#include "QelMessage/QelMessageIterator.h"

// What the set algebra of profiles is made of.  A filter is itself a profile: a section is in it when it is specified,
// and of a section's items it selects those whose names it holds.

namespace Qel {

namespace Internal {

[[nodiscard]] int readItemName(const QelMessageIterator& cursor, std::string& name, int nameID);

} // namespace Internal

/// Reads the name of an item and nothing else of it.  -1 if there is none.
template <class Item> struct QelItemNameReader {
    int operator()(const QelMessageIterator& cursor, Item& item) const {
        return Internal::readItemName(cursor, item.name, Item::nameID);
    }
};

/// Writes the name of an item and nothing else of it.
template <class Item> struct QelItemNameWriter : QelWriterBaseT<QelItemNameWriter<Item>> {
    int operator()(QelMessageIterator& cursor, const Item& item) const {
        return cursor.putValue(item.name, Item::nameID) == 0 ? 0 : -1;
    }
};

/// Which part of a message is read through a filter.
enum class QelFilterMode : bool {
    difference,   ///< what the filter doesn't hold
    intersection, ///< what it does
};

/// Reads a part of what stands in a message, as readFiltered() of the record tells.  Without a filter it reads all.
template <class Record, QelFilterMode mode> class QelFilteredReader {
public:
    /// May be null.
    explicit QelFilteredReader(boost::shared_ptr<const Record> filter) : m_filter(std::move(filter)) {}

    int operator()(const QelMessageIterator& cursor, Record& record) const {
        return readFiltered(cursor, record, m_filter.get(), mode);
    }

private:
    boost::shared_ptr<const Record> m_filter;
};

} // namespace Qel
