#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "QelMessage/QelNameTable.h"
#include "QelMessage/QelTextPool.h"

namespace Qel {

/// What a name is used for.
enum class QelNameKind { element, nameSpace, type, attribute };

/// The element tree of one message.
///
/// Elements are stored in an array and refer to each other by index. Names, namespaces and types are symbols: a
/// positive symbol is an ID, a negative symbol is a handle for a name of this message that has no ID, 0 means none. A
/// value is a view into the tree's copy of the decoded buffer, or is stored in a pool. Nodes, attributes, names
/// and pool blocks are recycled, so the memory of a tree that is edited repeatedly stays bounded.
///
/// Symbols are reference-counted. intern() and share() return a symbol with a new reference. A function that stores a
/// symbol takes over the caller's reference.
class QelMessageTree {
public:
    using Index = std::uint32_t;
    using Symbol = int;

    static constexpr Index root = 0;
    /// No such child, sibling or attribute. It shares the value 0 with the root, which is never any of these.
    static constexpr Index none = 0;
    /// Name given to a root when it is copied below another element: the name of the root in the text form.
    static constexpr std::string_view rootAsChild = "message";

    /// A string stored in the tree.
    struct Text {
        const char* data = nullptr;
        std::uint32_t size = 0;
        std::uint32_t capacity = 0; ///< bytes allocated from the pool; 0 for a view

        [[nodiscard]] std::string_view view() const noexcept { return {data, size}; }
        [[nodiscard]] bool empty() const noexcept { return size == 0; }
    };
    struct Node {
        Symbol name = 0;
        Symbol nameSpace = 0;
        Symbol type = 0;
        Symbol typeNameSpace = 0; ///< 0 if `type` is 0
        Index parent = none;
        Index firstChild = none;
        Index lastChild = none;
        Index next = none;
        Index previous = none;
        Index firstAttribute = none;
        std::uint32_t generation = 0; ///< distinguishes this element from earlier and later users of its index
        Text value;
    };
    struct Attribute {
        Symbol name = 0;
        Index next = none;
        Text value;
    };

    /// A tree with only a root. successor() creates a tree that replaces this one. It continues the generations, so
    /// that a cursor cannot mistake an element of the new tree for one of the old tree; only the roots have the same
    /// generation.
    QelMessageTree() : QelMessageTree(firstGeneration) {}
    [[nodiscard]] QelMessageTree successor() const { return QelMessageTree(m_nextGeneration); }

    [[nodiscard]] const Node& node(Index index) const { return m_nodes[index]; }
    [[nodiscard]] const Attribute& attribute(Index index) const { return m_attributes[index]; }
    /// True while `index` still refers to the element with this generation.
    [[nodiscard]] bool isAlive(Index index, std::uint32_t generation) const noexcept {
        return index < m_nodes.size() && m_nodes[index].generation == generation;
    }

    /// The symbol of a name, with a new reference. 0 for an empty namespace or type.
    [[nodiscard]] Symbol intern(QelNameKind kind, std::string_view name);
    /// The symbol of a name, without a new reference; 0 if no element of the tree can have it.
    [[nodiscard]] Symbol find(QelNameKind kind, std::string_view name) const;
    /// Adds a reference to a symbol and returns it.
    [[nodiscard]] Symbol share(Symbol symbol);
    /// Releases a reference to a symbol.
    void release(Symbol symbol);
    /// The name of a symbol; "/" for the root element.
    [[nodiscard]] std::string name(QelNameKind kind, Symbol symbol) const;
    [[nodiscard]] const QelNameTable& names() const noexcept { return m_names; }

    /// The first child, or the next sibling, with this name.
    [[nodiscard]] Index findChild(Index parent, Symbol name) const;
    [[nodiscard]] Index findNext(Index node, Symbol name) const;
    [[nodiscard]] Index findAttribute(Index node, Symbol name) const;

    /// Advances `node` to its successor in a pre-order traversal of the subtree of `top`. Returns false at the end.
    [[nodiscard]] bool advance(Index& node, Index top) const;

    /// Creates an element that becomes a child of `parent` on attach(). Until then it is not linked from the parent.
    [[nodiscard]] Index createDetached(Index parent, Symbol name, Symbol nameSpace);
    /// Appends a detached element to its parent's children.
    void attach(Index node);
    /// createDetached() and attach().
    Index appendChild(Index parent, Symbol name, Symbol nameSpace);
    /// Removes an element, attached or detached, with its subtree. The root cannot be removed.
    void remove(Index node);

    void setNameSpace(Index node, Symbol nameSpace);
    void setType(Index node, Symbol nameSpace, Symbol type);
    void setValue(Index node, std::string_view value);
    /// Sets an attribute, replacing an existing value. Returns false, without a change, if the element already has
    /// QelLimits::attributes attributes.
    [[nodiscard]] bool setAttribute(Index node, Symbol name, std::string_view value);

    /// Copies the namespace, type, value, attributes and children of an element of this or another tree to `node`,
    /// which must not have any of them. `node` may be detached and have a descendant of `source`, or `source` itself,
    /// as its parent: it is not copied into itself.
    void copyContent(Index node, const QelMessageTree& from, Index source);
    /// Replaces the value and children of an element with those of a detached element, which is left without them.
    void takeContent(Index node, Index detached);
    /// Appends a copy of an element to the children of `parent`. A copied root is named "message".
    Index copyToChild(Index parent, const QelMessageTree& from, Index source);

    /// Reserves capacity for this many additional elements and attributes.
    void reserve(std::size_t nodes, std::size_t attributes);
    /// Allocates the buffer that values can be views into. Call it at most once per tree; the tree owns the buffer.
    [[nodiscard]] char* createBuffer(std::size_t size);
    /// Like setValue() and setAttribute(), for a value in the tree's buffer. It is not copied.
    void viewValue(Index node, std::string_view value);
    [[nodiscard]] bool viewAttribute(Index node, Symbol name, std::string_view value);

    /// Number of element slots, used and free.
    [[nodiscard]] std::size_t capacity() const noexcept { return m_nodes.size(); }

private:
    static constexpr std::uint32_t deadGeneration = 0;
    static constexpr std::uint32_t rootGeneration = 1;
    static constexpr std::uint32_t firstGeneration = 2;

    explicit QelMessageTree(std::uint32_t nextGeneration);

    void detach(Index node);
    void clear(Index index);
    void copyOwn(Index node, const QelMessageTree& from, Index source);
    Symbol translate(const QelMessageTree& from, Symbol symbol);
    Index addAttribute(Index node, Symbol name);
    void store(Text& text, std::string_view value);
    void discard(Text& text);

    std::vector<Node> m_nodes;
    std::vector<Attribute> m_attributes; // index 0 is unused: it is `none`
    Index m_freeNode = none;             // linked by `next`
    Index m_freeAttribute = none;        // linked by `next`
    std::uint32_t m_nextGeneration;
    QelNameTable m_names;
    std::unique_ptr<char[]> m_buffer;
    // Created when the first value is stored: a message that is only decoded from binary form and read needs no pool.
    std::unique_ptr<QelTextPool> m_pool;
};

} // namespace Qel
