#include "QelFunctionalityCore/Security/QelDirEntry.h"

#include "QelFunctionalityCore/Values/QelListLastWriter.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

int QelDirAttributeReader::operator()(const QelMessageIterator& cursor, QelNamedStrListProperty& attribute) const {
    std::string name;
    if (cursor.getValue(name, "name"_element) != 0)
        return -1;
    attribute.setName(name);
    return QelReaderData(attribute.get(), "value"_element, QelReaderOptional)(cursor, attribute.get());
}

int QelDirAttributeWriter::operator()(QelMessageIterator& cursor, const QelNamedStrListProperty& attribute) const {
    if (cursor.putValue(attribute.getName(), "name"_element) != 0)
        return -1;
    return QelWriterData(attribute.get(), "value"_element)(cursor, attribute.get());
}

template <> struct Wire<QelDirEntry> : WireWords<QelDirEntry> {
    static constexpr int nsId = 270;
    static constexpr QelWireField fields[] = {
        field<&R::dn>(1928, required, always),
        list<&R::attributes>(1918, optional),
    };
};
const QelWireLayout& QelDirEntry::wire = wireLayoutOf<QelDirEntry>;

int QelDirEntry::Writer::operator()(QelMessageIterator& cursor, const QelDirEntry& entry) const {
    return writeWithListLast(QelDirEntry::wire, &entry, cursor);
}

} // namespace Qel
