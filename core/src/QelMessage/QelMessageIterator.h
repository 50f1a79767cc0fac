#pragma once

#include <string>

#include "QelCommon/Debug.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessage;

/// What a missing element means to a reader.
enum QelReaderFlags {
    QelReaderOptional = 0, ///< no failure: the value stays as it was
    QelReaderRequired = 1, ///< a failure: -1
};

/// The element ID that stands for the element under the cursor itself instead of one of its children.
[[nodiscard]] constexpr int getEmptyID() {
    return 0;
}
[[nodiscard]] constexpr bool isIdEmpty(int id) {
    return id == getEmptyID();
}

/// A cursor on a message tree: a document of nested elements, each with an element ID, a namespace, a complex type,
/// attributes, a text value and an ordered list of children.  Siblings may share one ID; that is how lists are carried.
/// An element with neither value nor children is a presence flag.
///
/// Results: 0 is success.  Gets answer exactly 0 or -1, moves 0 or nonzero.  A failed move leaves the position, a
/// failed get leaves its output as it was.
///
/// Navigation is const: a reader moves the position of a const cursor and must leave it where it found it.  Wherever an
/// element ID is passed, 0 means the element that the cursor stands on.  Every form with a name behaves as its twin
/// with the ID; the name is that of the ID (see QelDefaultMap), or one without an ID.
///
/// A cursor doesn't own the tree, and belongs to one thread at a time, like the message.
class QelMessageIterator {
public:
    QelMessageIterator(const QelMessageIterator&) = delete;
    QelMessageIterator& operator=(const QelMessageIterator&) = delete;
    virtual ~QelMessageIterator();

    /// The message that owns the tree; not the caller's.
    [[nodiscard]] virtual QelMessage* getMessage() const = 0;
    /// Without `copy` a second cursor at the same element; with it a cursor on a deep copy of the element in a new
    /// message, which the caller obtains with getMessage() and destroys.  The cursor itself is the caller's to delete.
    [[nodiscard]] virtual QelMessageIterator* newIterator(bool copy) const = 0;

    virtual int seekRoot() const = 0;
    /// To the parent.  Ends the process if there is none, since no caller tests it.
    virtual int seekUp() const = 0;
    /// To the first child of this name.  A text with a leading slash is a path from the root and names every level
    /// ("/data/system"); "/" is the root.
    virtual int seek(const std::string& name) const = 0;
    virtual int seekPresence(const std::string& name) const = 0;
    virtual int setNamespace(const std::string& ns) = 0;
    virtual int saveNamespace(const std::string& ns) = 0;
    virtual int setComplexType(const std::string& ns, const std::string& type) = 0;
    virtual int newChild(const std::string& name) = 0;
    virtual int putChild(const std::string& name) = 0;
    virtual int firstChild(const std::string& name) const = 0;
    /// To the next sibling, whatever its ID.
    virtual int nextSibling() const = 0;
    virtual int nextSibling(const std::string& name) const = 0;
    [[nodiscard]] virtual std::string curName() const = 0;
    /// The complex type of the current element as the key under which a derived factory is registered:
    /// "namespace:type", "type" when it has no namespace, empty when it has no type.
    [[nodiscard]] virtual std::string curType() const = 0;
    [[nodiscard]] virtual int curNamespaceID() const = 0;
    /// To the first child, whatever its ID.
    virtual int firstChild() const = 0;
    /// The current element with its subtree in binary form.  `*buf` is malloc memory and the caller's.
    virtual int serializeFromChild(char** buf, int* len) const = 0;
    /// Adds the element in such a buffer as a child.
    virtual int deserializeToChild(const char* buf, int len) = 0;
    /// Adds a copy of the element under `from`, with its own ID, type, attributes and subtree, as a child.
    virtual int copyToChild(const QelMessageIterator* from) = 0;
    /// The current element with its subtree as text; malloc memory and the caller's, null on failure.
    [[nodiscard]] virtual char* toTextFromChild() const = 0;
    /// Adds the element that such a text holds as a child.
    virtual int fromTextToChild(const char* text) = 0;
    /// Removes the current element; the cursor then stands on its parent.
    virtual int deleteFromChild() = 0;
    /// Removes the first child of this ID.
    virtual int deleteChild(int id) = 0;
    /// The whole message as text; malloc memory and the caller's, null on failure.
    [[nodiscard]] virtual char* toText() const = 0;
    /// The whole message in binary form; the third argument selects the format, of which 0 is the only one.
    virtual int serialize(char** buf, int* len, int format) const = 0;

    virtual int getValueBase64(std::string& value, const std::string& name) const = 0;
    virtual int getValue(std::string& value, const std::string& name) const = 0;
    virtual int getValue(int& value, const std::string& name) const = 0;
    virtual int getValue(bool& value, const std::string& name) const = 0;
    virtual int getValueLongLong(long long& value, const std::string& name) const = 0;
    virtual int getValueDouble(double& value, const std::string& name) const = 0;
    virtual int getValueTime(long& value, const std::string& name) const = 0;
    virtual int getValueTimeZone(long& value, int& zone, const std::string& name) const = 0;
    virtual int putValueBase64(const std::string& value, const std::string& name) = 0;
    virtual int putValue(const std::string& value, const std::string& name) = 0;
    virtual int putValueLongLong(long long value, const std::string& name) = 0;
    virtual int putValueDouble(double value, const std::string& name) = 0;
    virtual int putValue(int value, const std::string& name) = 0;
    virtual int putValueTime(long value, const std::string& name) = 0;
    virtual int putValueTimeZone(long value, int zone, const std::string& name) = 0;

    /// To the first child of this ID.
    virtual int seek(int id) const = 0;
    /// Appends a child behind all others, even of the same ID, and moves to it.
    virtual int newChild(int id) = 0;
    /// Sets the namespace of the current element only.
    virtual int setNamespace(int ns) = 0;
    /// Sets the namespace that elements written from now on through this cursor take; 0 clears it.  There is no stack.
    virtual int saveNamespace(int ns) = 0;
    /// Marks the current element as an instance of this complex type.
    virtual int setComplexType(int ns, int type) = 0;
    virtual int firstChild(int id) const = 0;
    virtual int nextSibling(int id) const = 0;
    /// 0 if a child of this ID is there.  The position doesn't change.
    virtual int seekPresence(int id) const = 0;
    /// Appends an empty child without moving: a presence flag.
    virtual int putChild(int id) = 0;

    /// The value of child `id`, base64-decoded.
    virtual int getValueBase64(std::string& value, int id) const = 0;
    virtual int getValue(std::string& value, int id) const = 0;
    virtual int getValue(int& value, int id) const = 0;
    /// An element without a value is true: its presence is the flag.
    virtual int getValue(bool& value, int id) const = 0;
    virtual int getValueLongLong(long long& value, int id) const = 0;
    virtual int getValueDouble(double& value, int id) const = 0;
    /// Seconds since the epoch.
    virtual int getValueTime(long& value, int id) const = 0;
    /// Seconds since the epoch, and the zone in minutes east of Greenwich.
    virtual int getValueTimeZone(long& value, int& zone, int id) const = 0;

    /// Appends a child with this value, without moving and without looking for one that is there; with `id` 0 sets the
    /// value of the current element.
    virtual int putValueBase64(const char* data, int len, int id) = 0;
    virtual int putValue(const char* data, int len, int id) = 0;
    virtual int putValueBase64(const std::string& value, int id) = 0;
    virtual int putValue(const std::string& value, int id) = 0;
    virtual int putValueLongLong(long long value, int id) = 0;
    virtual int putValueDouble(double value, int id) = 0;
    virtual int putValue(int value, int id) = 0;
    virtual int putValueTime(long value, int id) = 0;
    virtual int putValueTimeZone(long value, int zone, int id) = 0;

    /// Makes the cursor unusable: every later operation on it ends the process.
    virtual void invalidate() const = 0;
    /// Element ID of the current element; 0 for one whose name has no ID.
    [[nodiscard]] virtual int curID() const = 0;

    /// Attribute `id` of the current element.
    virtual int getAttr(int& value, int id) const = 0;
    virtual int getAttr(std::string& value, int id) const = 0;
    virtual int getAttrTime(long& value, int id) const = 0;
    /// Sets the attribute, replacing an earlier value.
    virtual int putAttr(const std::string& value, int id) = 0;
    virtual int putAttr(int value, int id) = 0;
    virtual int putAttrTime(long value, int id) = 0;

    /// The content of child `id` (its value and children) as markup, and the reverse.
    virtual int getValueXML(std::string& markup, int id) const = 0;
    virtual int putValueXML(const std::string& markup, int id) = 0;

    /// Who sent the message that the cursor stands in; nonzero if that isn't known.
    int getOrigin(std::string& origin) const;
    /// Sets the namespace of every child of the current element.
    int setNamespaceChild(int ns);

    /// Reads child `id` with `T::reader_type`; -1 if it is missing.
    template <class T> int getObj(T& obj, int id) const { return getObject(obj, typename T::reader_type(), id); }
    /// Writes `obj` with `T::writer_type` as child `id`, in place of the first one that is there.
    template <class T> int putObj(const T& obj, int id) { return putObject(obj, typename T::writer_type(), id); }
    template <class T, class Reader> int getObject(T& obj, const Reader& reader, int id) const;
    template <class T, class Writer> int putObject(const T& obj, const Writer& writer, int id);

protected:
    QelMessageIterator() = default;

private:
    template <class T, class Writer> int putObjectInternal(const T& obj, const Writer& writer);
};

/// Reads child `id` with `Reader` and comes back, whatever the result.
template <class ID, class Reader> struct QelReaderIDT : Reader {
    QelReaderIDT(const Reader& reader, ID elementID, QelReaderFlags flags)
        : Reader(reader), id(elementID), optional(!flags) {}

    template <class T> int operator()(const QelMessageIterator& cursor, T& value) const {
        QEL_CHECK_AT(!isIdEmpty(id), "core/src/QelMessage/QelMessageIterator", 752);
        if (cursor.seek(id) != 0)
            return optional ? 0 : -1;
        const int result = Reader::operator()(cursor, value);
        cursor.seekUp();
        return result;
    }

    ID id;
    bool optional;
};

/// The namespace that a QelWriterIDT gives its element after the value is written; empty for none.
using QelNoNamespace = int;

/// Appends child `id` and writes into it, marked as the writer's statics say.
template <class ID, class Writer, class itemNSType = QelNoNamespace> struct QelWriterIDT : QelWriterBaseT<Writer> {
    explicit QelWriterIDT(ID elementID) : id(elementID) {}
    QelWriterIDT(const Writer& w, ID elementID, itemNSType ns = itemNSType()) : writer(w), id(elementID), nsType(ns) {}

    template <class T> int operator()(QelMessageIterator& cursor, const T& value) const {
        QEL_CHECK_AT(!isIdEmpty(id), "core/src/QelMessage/QelMessageIterator", 671);
        cursor.newChild(id);
        const int result = cursor.putObject(value, writer, getEmptyID());
        if (!isIdEmpty(nsType))
            cursor.setNamespace(nsType);
        cursor.seekUp();
        return result;
    }

    Writer writer;
    ID id;
    itemNSType nsType{};
};

template <class Reader> QelReaderIDT<int, Reader> QelReaderID(const Reader& reader, int id, QelReaderFlags flags) {
    return {reader, id, flags};
}
template <class Writer> QelWriterIDT<int, Writer> QelWriterID(const Writer& writer, int id) {
    return {writer, id};
}
template <class Writer> QelWriterIDT<int, Writer> QelWriterID(const Writer& writer, int id, int nsType) {
    return {writer, id, nsType};
}

template <class T, class Reader> int QelMessageIterator::getObject(T& obj, const Reader& reader, int id) const {
    if (isIdEmpty(id))
        return reader(*this, obj);
    return QelReaderID(reader, id, QelReaderRequired)(*this, obj);
}

template <class T, class Writer> int QelMessageIterator::putObject(const T& obj, const Writer& writer, int id) {
    if (isIdEmpty(id))
        return putObjectInternal(obj, writer);
    if (seek(id) == 0)
        deleteFromChild();
    return QelWriterID(writer, id)(*this, obj);
}

template <class T, class Writer> int QelMessageIterator::putObjectInternal(const T& obj, const Writer& writer) {
    constexpr int firstComplexType = 101;
    const char* const nsName = Writer::getStrNSID();
    const char* const typeName = Writer::getStrTypeID();
    QEL_CHECK_AT(nsName != nullptr, "core/src/QelMessage/QelMessageIterator", 853);
    QEL_CHECK_AT(typeName != nullptr, "core/src/QelMessage/QelMessageIterator", 854);

    // The element itself takes the writer's namespace, and so does what is written into it.
    const bool hasNamespace = Writer::getNSID() != 0 || *nsName != '\0';
    if (Writer::getNSID() != 0) {
        saveNamespace(Writer::getNSID());
        setNamespace(Writer::getNSID());
    } else if (hasNamespace) {
        saveNamespace(std::string(nsName));
        setNamespace(std::string(nsName));
    }

    if (Writer::getTypeID() >= firstComplexType)
        setComplexType(Writer::getNSID(), Writer::getTypeID());
    else if (*typeName != '\0')
        setComplexType(std::string(nsName), std::string(typeName));

    const int result = writer(*this, obj);
    // Cleared and not restored: the wire format has no stack of namespaces, so what an outer record writes behind a
    // nested typed one carries no saved namespace.
    if (hasNamespace)
        saveNamespace(0);
    return result;
}

} // namespace Qel
