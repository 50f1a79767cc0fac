#pragma once

#include <memory>
#include <string>

#include <boost/shared_ptr.hpp>

#include "QelMessage/QelMessage.h"
#include "QelMessage/QelMessageIterator.h"

namespace Qel {

/// An element with its subtree that a record carries without looking into it.
///
/// It holds a cursor on the element, and either owns the tree that the cursor stands on or shares somebody else's,
/// which must live as long.
class QelAnyData {
public:
    struct Reader;
    struct Writer;
    using reader_type = Reader;
    using writer_type = Writer;

    /// Empty; will carry an element with this ID.
    explicit QelAnyData(int elementID) : m_elementID(elementID) {}
    /// With the element under `it`, as of reset().
    QelAnyData(QelMessageIterator* it, bool copy, int elementID);
    /// Owns a copy of the subtree if `other` owns its tree, and shares the tree otherwise.
    QelAnyData(const QelAnyData& other);
    QelAnyData& operator=(const QelAnyData& other);
    QelAnyData(QelAnyData&& other) noexcept;
    QelAnyData& operator=(QelAnyData&& other) noexcept;
    ~QelAnyData();

    /// Takes a copy of the element under `it`.
    QelAnyData& operator=(QelMessageIterator* it);

    /// Gives up what it has and takes the element under `it`: with `copy` a copy that it owns, without it a further
    /// cursor on the same tree.  Null leaves it empty.
    void reset(const QelMessageIterator* it, bool copy);

    [[nodiscard]] bool empty() const { return !m_iterator; }

    /// True if the element has a child `id`.
    [[nodiscard]] bool isSpecified(int id) const;
    /// The value of child `id`, fetched into `cache` unless there is something in it already; gives `cache`.
    const std::string& get(int id, std::string& cache) const;
    /// Replaces the value of child `id` and the cache; -1, and nothing changes, if it is empty.
    int set(int id, const std::string& value, std::string& cache);

    /// Adds the element, with its own ID, as a child of the element under `to`; nothing if it is empty.
    int serialize(QelMessageIterator* to) const;
    /// The element in binary form.  `*buf` is malloc memory and the caller's.  -1 if it is empty.
    int serialize(char** buf, int* len) const;
    /// Takes the element from its binary form.  Empty afterwards, and 0, if there are no bytes or they hold another
    /// element; empty and nonzero if they are malformed.
    int deserialize(const char* buf, int len);

    /// The element as text; malloc memory and the caller's, null if it is empty.
    [[nodiscard]] char* toText() const;
    /// Takes element `id` from its text form; results as of deserialize().
    int fromText(const char* text, int id);
    /// Takes the element with its own ID from its text form.
    int fromText(const char* text);

    /// Makes an empty element `id` in this namespace, unless it has an element.
    void checkMsg(int id, int ns);

    /// A further cursor at the element, valid as long as its tree; null if it is empty.
    [[nodiscard]] boost::shared_ptr<QelMessageIterator> any() const;
    /// The same, on a new element if it is empty.
    [[nodiscard]] boost::shared_ptr<QelMessageIterator> any();

private:
    struct Destroyer {
        void operator()(QelMessage* message) const { ifDestroy(message); }
    };

    /// Owns a new tree whose root the cursor stands on.
    void makeTree();
    /// Moves to the child `id` that a parser has added with this result, or gives up the tree.
    int settle(int parsed, int id);
    void swap(QelAnyData& other) noexcept;

    // The cursor is destroyed before the tree that it stands on.
    std::unique_ptr<QelMessage, Destroyer> m_message;
    std::unique_ptr<QelMessageIterator> m_iterator;
    int m_elementID;
};

/// Reads the child that has the ID which the object carries: takes a copy of it.
struct QelAnyData::Reader {
    explicit Reader(bool isOptional = false) : optional(isOptional) {}

    /// A missing child is -1, or 0 if it is optional; the object then stays as it was.
    int operator()(const QelMessageIterator& cursor, QelAnyData& any) const;

    bool optional;
};

/// Adds the element as a child of the current one.  To be used with ID 0, since putObj with another ID would nest it
/// one level deeper.
struct QelAnyData::Writer : QelWriterBaseT<Writer> {
    int operator()(QelMessageIterator& cursor, const QelAnyData& any) const;
};

} // namespace Qel
