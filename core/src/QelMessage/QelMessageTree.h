#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "QelMessage/QelNameTable.h"
#include "QelMessage/QelTextPool.h"

namespace Qel {

/// What a name names.
enum class QelNameKind { element, nameSpace, type, attribute };

/// The element tree of one message.
///
/// Elements stand in one array and refer to each other by index.  Names, namespaces and types are symbols: a positive
/// symbol is an ID, a negative one a name of this message that has no ID, 0 is none.  A value is a view into the buffer
/// that the message was parsed from, or lies in a pool.  What is deleted or replaced is used again, so that a tree that
/// is edited for ever doesn't grow for ever.
///
/// Symbols are counted.  intern() and share() give one with a reference, and whoever is handed a symbol to keep takes
/// that reference over.
class QelMessageTree {
public:
    using Index = std::uint32_t;
    using Symbol = int;

    static constexpr Index root = 0;
    /// No such child, sibling or attribute.  The root is never one, so that it doesn't need a number of its own.
    static constexpr Index none = 0;
    /// Name of a root that becomes a child of another element: that of the root in the text form.
    static constexpr std::string_view rootAsChild = "message";

    /// A text that the tree keeps.
    struct Text {
        const char* data = nullptr;
        std::uint32_t size = 0;
        std::uint32_t capacity = 0; ///< bytes in the pool; 0 for a view

        [[nodiscard]] std::string_view view() const noexcept { return {data, size}; }
        [[nodiscard]] bool empty() const noexcept { return size == 0; }
    };
    struct Node {
        Symbol name = 0;
        Symbol nameSpace = 0;
        Symbol type = 0;
        Symbol typeNameSpace = 0; ///< none where `type` is none
        Index parent = none;
        Index firstChild = none;
        Index lastChild = none;
        Index next = none;
        Index previous = none;
        Index firstAttribute = none;
        std::uint32_t generation = 0; ///< tells this element from others that had or will have its index
        Text value;
    };
    struct Attribute {
        Symbol name = 0;
        Index next = none;
        Text value;
    };

    /// A tree with nothing but its root.  One that replaces another continues its generations, so that no cursor takes
    /// an element of the new tree for one of the old; only the roots are the same.
    QelMessageTree() : QelMessageTree(firstGeneration) {}
    [[nodiscard]] QelMessageTree successor() const { return QelMessageTree(m_nextGeneration); }

    [[nodiscard]] const Node& node(Index index) const { return m_nodes[index]; }
    [[nodiscard]] const Attribute& attribute(Index index) const { return m_attributes[index]; }
    /// True while `index` is the element that had this generation when it was taken.
    [[nodiscard]] bool isAlive(Index index, std::uint32_t generation) const noexcept {
        return index < m_nodes.size() && m_nodes[index].generation == generation;
    }

    /// The symbol of a name, with a reference.  An empty namespace or type is none.
    [[nodiscard]] Symbol intern(QelNameKind kind, std::string_view name);
    /// The symbol of a name if the tree could hold an element with it, else 0; without a reference.
    [[nodiscard]] Symbol find(QelNameKind kind, std::string_view name) const;
    /// The same symbol with one more reference.
    [[nodiscard]] Symbol share(Symbol symbol);
    /// Gives up a symbol's reference.
    void release(Symbol symbol);
    /// The name that a symbol stands for; "/" is the name of the root element.
    [[nodiscard]] std::string name(QelNameKind kind, Symbol symbol) const;
    [[nodiscard]] const QelNameTable& names() const noexcept { return m_names; }

    /// The first child, or the next sibling, that has this name.
    [[nodiscard]] Index findChild(Index parent, Symbol name) const;
    [[nodiscard]] Index findNext(Index node, Symbol name) const;
    [[nodiscard]] Index findAttribute(Index node, Symbol name) const;

    /// Moves `node` on to the element that follows it in the subtree of `top`, parents before children.  False at the
    /// end.
    [[nodiscard]] bool advance(Index& node, Index top) const;

    /// An element that is to become a child of `parent` and isn't seen there until attach().
    [[nodiscard]] Index createDetached(Index parent, Symbol name, Symbol nameSpace);
    /// Puts a detached element behind its parent's other children.
    void attach(Index node);
    /// createDetached() and attach().
    Index appendChild(Index parent, Symbol name, Symbol nameSpace);
    /// Removes an element, attached or detached, with all that lies below it.  Not the root.
    void remove(Index node);

    void setNameSpace(Index node, Symbol nameSpace);
    void setType(Index node, Symbol nameSpace, Symbol type);
    void setValue(Index node, std::string_view value);
    /// Sets the attribute, in place of an earlier one of this name.  False, and nothing changed, if the element has as
    /// many as it may have.
    [[nodiscard]] bool setAttribute(Index node, Symbol name, std::string_view value);

    /// Gives `node` the namespace, type, value, attributes and children of an element of this or of another tree.
    /// `node` has none of them yet.  It may be detached below the source: it isn't copied into itself.
    void copyContent(Index node, const QelMessageTree& from, Index source);
    /// Replaces value and children of an element by those of a detached one, which loses them.
    void takeContent(Index node, Index detached);
    /// Adds a copy of an element behind the children of `parent`.  The root becomes an element named "message".
    Index copyToChild(Index parent, const QelMessageTree& from, Index source);

    /// Makes room for so many elements and attributes more.
    void reserve(std::size_t nodes, std::size_t attributes);
    /// Memory for a buffer that values are to be views into.  At most one a tree; it lives as long as the tree.
    [[nodiscard]] char* createBuffer(std::size_t size);
    /// As setValue() and setAttribute(), for a text that lies in the tree's buffer and isn't copied.
    void viewValue(Index node, std::string_view value);
    [[nodiscard]] bool viewAttribute(Index node, Symbol name, std::string_view value);

    /// Elements that the tree has room for, in use or not.
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
    std::vector<Attribute> m_attributes; // element 0 is unused: 0 is `none`
    Index m_freeNode = none;             // linked by `next`
    Index m_freeAttribute = none;        // linked by `next`
    std::uint32_t m_nextGeneration;
    QelNameTable m_names;
    std::unique_ptr<char[]> m_buffer;
    // Made when the first value is stored: a message that is only parsed and read needs none.
    std::unique_ptr<QelTextPool> m_pool;
};

} // namespace Qel
