#pragma once

#include <string>

#include "QelCommon/Debug.h"
#include "QelCommon/Export.h"
#include "QelMessage/QelWriterBase.h"

namespace Qel {

class QelMessage;

/// How a reader treats a missing element.
enum QelReaderFlags {
    QelReaderOptional = 0, ///< success; the value is left unchanged
    QelReaderRequired = 1, ///< failure: -1
};

/// The empty element ID. It refers to the current element instead of one of its children.
[[nodiscard]] constexpr int getEmptyID() {
    return 0;
}
[[nodiscard]] constexpr bool isIdEmpty(int id) {
    return id == getEmptyID();
}

/// A cursor on a message tree: a document of nested elements, each with an element ID, a namespace, a complex type,
/// attributes, a value and an ordered list of children. Siblings may share an ID; lists are encoded that way. An
/// element with neither value nor children is a presence flag.
///
/// Results: 0 is success. Gets return exactly 0 or -1, moves return 0 or nonzero. A failed move leaves the position
/// unchanged, a failed get leaves its output unchanged.
///
/// Navigation is const: a reader moves a const cursor and must restore its position. For seek(), seekPresence() and the
/// functions that get or put values and objects, element ID 0 is the current element; every other operation rejects it.
/// An overload with a name behaves like the overload with the ID; the name is either that of an ID (see QelDefaultMap)
/// or one that has no ID.
///
/// A cursor does not own the tree. Like its message, it must be used by one thread at a time.
class QEL_EXPORT QelMessageIterator {
public:
    QelMessageIterator(const QelMessageIterator&) = delete;
    QelMessageIterator& operator=(const QelMessageIterator&) = delete;
    virtual ~QelMessageIterator();

    /// The message that owns the tree. The caller must not destroy it.
    [[nodiscard]] virtual QelMessage* getMessage() const = 0;
    /// Without `copy`, returns a second cursor on the same element. With it, returns a cursor on a deep copy of the
    /// element in a new message, which the caller obtains with getMessage() and destroys. The caller deletes the cursor
    /// in both cases.
    [[nodiscard]] virtual QelMessageIterator* newIterator(bool copy) const = 0;

    virtual int seekRoot() const = 0;
    /// Moves to the parent. Ends the process if there is none, since no caller checks the result.
    virtual int seekUp() const = 0;
    /// Moves to the first child with this name. A string with a leading slash is a path from the root that names every
    /// level ("/data/system"); "/" is the root.
    virtual int seek(const std::string& name) const = 0;
    virtual int seekPresence(const std::string& name) const = 0;
    virtual int setNamespace(const std::string& ns) = 0;
    virtual int saveNamespace(const std::string& ns) = 0;
    virtual int setComplexType(const std::string& ns, const std::string& type) = 0;
    virtual int newChild(const std::string& name) = 0;
    virtual int putChild(const std::string& name) = 0;
    virtual int firstChild(const std::string& name) const = 0;
    /// Moves to the next sibling, regardless of its ID.
    virtual int nextSibling() const = 0;
    virtual int nextSibling(const std::string& name) const = 0;
    [[nodiscard]] virtual std::string curName() const = 0;
    /// The complex type of the current element in the form under which derived factories are registered:
    /// "namespace:type", "type" without a namespace, empty without a type.
    [[nodiscard]] virtual std::string curType() const = 0;
    [[nodiscard]] virtual int curNamespaceID() const = 0;
    /// Moves to the first child, regardless of its ID.
    virtual int firstChild() const = 0;
    /// Encodes the current element with its subtree in binary form. `*buf` is allocated with malloc and owned by the
    /// caller.
    virtual int serializeFromChild(char** buf, int* len) const = 0;
    /// Appends the element encoded by serializeFromChild() as a child.
    virtual int deserializeToChild(const char* buf, int len) = 0;
    /// Appends a copy of the element under `from`, with its ID, type, attributes and subtree, as a child.
    virtual int copyToChild(const QelMessageIterator* from) = 0;
    /// The current element with its subtree in text form. Allocated with malloc and owned by the caller; null on
    /// failure.
    [[nodiscard]] virtual char* toTextFromChild() const = 0;
    /// Appends the element in `text`, a document as returned by toTextFromChild(), as a child.
    virtual int fromTextToChild(const char* text) = 0;
    /// Removes the current element and moves to its parent.
    virtual int deleteFromChild() = 0;
    /// Removes the first child with this ID.
    virtual int deleteChild(int id) = 0;
    /// The whole message in text form. Allocated with malloc and owned by the caller; null on failure.
    [[nodiscard]] virtual char* toText() const = 0;
    /// The whole message in binary form, in a malloc buffer owned by the caller. `format` must be 0, the only format.
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

    /// Moves to the first child with this ID.
    virtual int seek(int id) const = 0;
    /// Appends a child, even if another child has the same ID, and moves to it.
    virtual int newChild(int id) = 0;
    /// Sets the namespace of the current element only.
    virtual int setNamespace(int ns) = 0;
    /// Sets the namespace of all elements that are written through this cursor from now on; 0 clears it. Calls do not
    /// nest.
    virtual int saveNamespace(int ns) = 0;
    /// Sets the complex type of the current element.
    virtual int setComplexType(int ns, int type) = 0;
    virtual int firstChild(int id) const = 0;
    virtual int nextSibling(int id) const = 0;
    /// Returns 0 if there is a child with this ID. The position does not change.
    virtual int seekPresence(int id) const = 0;
    /// Appends an empty child, a presence flag, without moving.
    virtual int putChild(int id) = 0;

    /// The base64-decoded value of child `id`.
    virtual int getValueBase64(std::string& value, int id) const = 0;
    virtual int getValue(std::string& value, int id) const = 0;
    virtual int getValue(int& value, int id) const = 0;
    /// An element without a value is true, since its presence is the flag.
    virtual int getValue(bool& value, int id) const = 0;
    virtual int getValueLongLong(long long& value, int id) const = 0;
    virtual int getValueDouble(double& value, int id) const = 0;
    /// Seconds since the epoch.
    virtual int getValueTime(long& value, int id) const = 0;
    /// Seconds since the epoch, and the zone in minutes east of Greenwich.
    virtual int getValueTimeZone(long& value, int& zone, int id) const = 0;

    /// Appends a child with this value without moving, even if a child with this ID exists. With `id` 0, sets the value
    /// of the current element.
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
    /// The ID of the current element; 0 if its name has no ID.
    [[nodiscard]] virtual int curID() const = 0;

    /// Attribute `id` of the current element.
    virtual int getAttr(int& value, int id) const = 0;
    virtual int getAttr(std::string& value, int id) const = 0;
    virtual int getAttrTime(long& value, int id) const = 0;
    /// Sets an attribute of the current element, replacing an existing value.
    virtual int putAttr(const std::string& value, int id) = 0;
    virtual int putAttr(int value, int id) = 0;
    virtual int putAttrTime(long value, int id) = 0;

    /// Gets or appends the content of child `id`, its value and children, as markup in text form.
    virtual int getValueXML(std::string& markup, int id) const = 0;
    virtual int putValueXML(const std::string& markup, int id) = 0;

    /// The origin in the envelope of the cursor's message; nonzero if it is unset.
    int getOrigin(std::string& origin) const;
    /// Sets the namespace of every child of the current element.
    int setNamespaceChild(int ns);

    /// Reads child `id` with `T::reader_type`; -1 if there is no such child.
    template <class T> int getObj(T& obj, int id) const { return getObject(obj, typename T::reader_type(), id); }
    /// Writes `obj` with `T::writer_type` as child `id`, replacing the first existing child with this ID.
    template <class T> int putObj(const T& obj, int id) { return putObject(obj, typename T::writer_type(), id); }
    template <class T, class Reader> int getObject(T& obj, const Reader& reader, int id) const;
    template <class T, class Writer> int putObject(const T& obj, const Writer& writer, int id);

protected:
    QelMessageIterator() = default;

private:
    template <class T, class Writer> int putObjectInternal(const T& obj, const Writer& writer);
};

/// Reads child `id` with `Reader` and restores the position, even after a failure.
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

/// Namespace ID that a QelWriterIDT sets on its element after writing the value; 0 for none.
using QelNoNamespace = int;

/// Appends child `id` and writes the value into it, with the namespace and complex type that the writer's static
/// functions declare.
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

template <class T, class Writer> inline int QelMessageIterator::putObjectInternal(const T& obj, const Writer& writer) {
    constexpr int firstComplexType = 101;
    const char* const nsName = Writer::getStrNSID();
    const char* const typeName = Writer::getStrTypeID();
    QEL_CHECK_AT(nsName != nullptr, "core/src/QelMessage/QelMessageIterator", 853);
    QEL_CHECK_AT(typeName != nullptr, "core/src/QelMessage/QelMessageIterator", 854);

    // The namespace applies to the element itself and to everything the writer adds to it.
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
    // Cleared, not restored: the wire format has no namespace stack, so elements that an outer record writes after a
    // nested typed one have no saved namespace.
    if (hasNamespace)
        saveNamespace(0);
    return result;
}

} // namespace Qel
