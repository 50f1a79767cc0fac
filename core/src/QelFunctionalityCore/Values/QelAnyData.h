#pragma once

#include <memory>
#include <string>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// An opaque element with its subtree, carried by a record without being interpreted.
///
/// Holds a cursor on the element.  The tree under the cursor is either owned, or borrowed and must then outlive this
/// object.
class QEL_EXPORT QelAnyData {
public:
    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    /// Empty.  `elementID` is the ID of the element to carry.
    explicit QelAnyData(int elementID) : m_elementID(elementID) {}
    /// Calls reset(it, copy).
    QelAnyData(QelMessageIterator* it, bool copy, int elementID);
    /// Deep copy if `other` owns its tree; otherwise borrows the same tree.
    QelAnyData(const QelAnyData& other);
    QelAnyData& operator=(const QelAnyData& other);
    QelAnyData(QelAnyData&& other) noexcept;
    QelAnyData& operator=(QelAnyData&& other) noexcept;
    ~QelAnyData();

    /// Calls reset(it, true).
    QelAnyData& operator=(QelMessageIterator* it);

    /// Replaces the content with the element under `it`: an owned copy if `copy` is true, otherwise a new cursor on the
    /// same tree.  Null clears the object.
    void reset(const QelMessageIterator* it, bool copy);

    [[nodiscard]] bool empty() const { return !m_iterator; }

    /// True if the element has a child `id`.
    [[nodiscard]] bool isSpecified(int id) const;
    /// Returns `cache`.  An empty `cache` is first filled with the value of child `id`, if there is one.
    const std::string& get(int id, std::string& cache) const;
    /// Replaces the value of child `id` and stores it in `cache`.  -1, and no change, if the object is empty.
    int set(int id, const std::string& value, std::string& cache);

    /// Adds the element, with its own ID, as a child of the element under `to`.  Does nothing if the object is empty.
    int serialize(QelMessageIterator* to) const;
    /// Encodes the element in binary form.  `*buf` is allocated with malloc and owned by the caller.  -1 if the object
    /// is empty.
    int serialize(char** buf, int* len) const;
    /// Replaces the content with an element decoded from binary form.  If `buf` is null or `len` is 0, or if the
    /// element has another ID, the object becomes empty and the result is 0.  If the data is malformed, the object
    /// becomes empty and the result is nonzero.
    int deserialize(const char* buf, int len);

    /// Encodes the element as text, allocated with malloc and owned by the caller.  Null if the object is empty.
    [[nodiscard]] char* toText() const;
    /// Replaces the content with element `id`, decoded from text form.  Results as for deserialize().
    int fromText(const char* text, int id);
    /// fromText() with the ID passed to the constructor.
    int fromText(const char* text);

    /// If the object is empty, creates an empty element `id` in namespace `ns`.
    void checkMsg(int id, int ns);

    /// A new cursor on the element, valid as long as the tree.  Null if the object is empty.
    [[nodiscard]] boost::shared_ptr<QelMessageIterator> any() const;
    /// A new cursor on the element, valid as long as the tree.  If the object is empty, creates the element first.
    [[nodiscard]] boost::shared_ptr<QelMessageIterator> any();

private:
    struct Destroyer {
        void operator()(QelMessage* message) const { ifDestroy(message); }
    };

    /// Creates an owned tree, with the cursor at its root.
    void makeTree();
    /// Moves the cursor to the parsed child `id`.  Destroys the tree if parsing failed or there is no such child.
    /// Returns `parsed`.
    int settle(int parsed, int id);
    void swap(QelAnyData& other) noexcept;

    // Order matters: the cursor must be destroyed before the tree that it points into.
    std::unique_ptr<QelMessage, Destroyer> m_message;
    std::unique_ptr<QelMessageIterator> m_iterator;
    int m_elementID;
};

/// Reads a copy of the child whose ID was passed to the object's constructor.
struct QEL_EXPORT QelAnyData::Reader {
    explicit Reader(bool isOptional = false) : optional(isOptional) {}

    /// If the child is missing, leaves the object unchanged and returns 0 if it is optional, -1 otherwise.
    int operator()(const QelMessageIterator& cursor, QelAnyData& any) const;

    bool optional;
};

/// Adds the element as a child of the current one.  Use it with ID 0: putObj with another ID would nest the element one
/// level deeper.
struct QEL_EXPORT QelAnyData::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelAnyData& any) const;
};

} // namespace Qel
