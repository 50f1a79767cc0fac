#include "QelMessage/QelMessageTree.h"

#include <algorithm>
#include <cstring>

#include "QelMessage/QelLimits.h"
#include "QelMessage/QelNames.h"

namespace Qel {

namespace {

int idOf(QelNameKind kind, std::string_view name) {
    switch (kind) {
    case QelNameKind::element:
        return QelNames::elementID(name);
    case QelNameKind::nameSpace:
        return QelNames::namespaceID(name);
    case QelNameKind::type:
        return QelNames::typeID(name);
    case QelNameKind::attribute:
        return QelNames::attributeID(name);
    }
    return 0;
}

std::string nameOf(QelNameKind kind, int id) {
    switch (kind) {
    case QelNameKind::element:
        return QelNames::elementName(id);
    case QelNameKind::nameSpace:
        return QelNames::namespaceName(id);
    case QelNameKind::type:
        return QelNames::typeName(id);
    case QelNameKind::attribute:
        return QelNames::attributeName(id);
    }
    return {};
}

/// Reserves room for `count` more items but keeps the vector's geometric growth when called repeatedly.
template <class T> void makeRoom(std::vector<T>& vector, std::size_t count) {
    const std::size_t needed = vector.size() + count;
    if (needed > vector.capacity())
        vector.reserve(std::max(needed, 2 * vector.size()));
}

/// An empty string means no namespace, or no type.
bool isNone(QelNameKind kind, std::string_view name) {
    return name.empty() && (kind == QelNameKind::nameSpace || kind == QelNameKind::type);
}

} // namespace

QelMessageTree::QelMessageTree(std::uint32_t nextGeneration) : m_nextGeneration(nextGeneration) {
    m_nodes.emplace_back().generation = rootGeneration;
}

QelMessageTree::Symbol QelMessageTree::intern(QelNameKind kind, std::string_view name) {
    if (isNone(kind, name))
        return 0;
    const int id = idOf(kind, name);
    return id != 0 ? id : m_names.acquire(name);
}

QelMessageTree::Symbol QelMessageTree::find(QelNameKind kind, std::string_view name) const {
    if (isNone(kind, name))
        return 0;
    const int id = idOf(kind, name);
    return id != 0 ? id : m_names.find(name);
}

QelMessageTree::Symbol QelMessageTree::share(Symbol symbol) {
    if (symbol < 0)
        m_names.addReference(symbol);
    return symbol;
}

void QelMessageTree::release(Symbol symbol) {
    if (symbol < 0)
        m_names.release(symbol);
}

std::string QelMessageTree::name(QelNameKind kind, Symbol symbol) const {
    if (symbol > 0)
        return nameOf(kind, symbol);
    if (symbol < 0)
        return std::string(m_names.text(symbol));
    return kind == QelNameKind::element ? "/" : "";
}

QelMessageTree::Index QelMessageTree::findChild(Index parent, Symbol name) const {
    Index child = m_nodes[parent].firstChild;
    while (child != none && m_nodes[child].name != name)
        child = m_nodes[child].next;
    return child;
}

QelMessageTree::Index QelMessageTree::findNext(Index node, Symbol name) const {
    Index sibling = m_nodes[node].next;
    while (sibling != none && m_nodes[sibling].name != name)
        sibling = m_nodes[sibling].next;
    return sibling;
}

QelMessageTree::Index QelMessageTree::findAttribute(Index node, Symbol name) const {
    Index attribute = m_nodes[node].firstAttribute;
    while (attribute != none && m_attributes[attribute].name != name)
        attribute = m_attributes[attribute].next;
    return attribute;
}

bool QelMessageTree::advance(Index& node, Index top) const {
    if (m_nodes[node].firstChild != none) {
        node = m_nodes[node].firstChild;
        return true;
    }
    Index up = node;
    while (up != top && m_nodes[up].next == none)
        up = m_nodes[up].parent;
    if (up == top)
        return false;
    node = m_nodes[up].next;
    return true;
}

QelMessageTree::Index QelMessageTree::createDetached(Index parent, Symbol name, Symbol nameSpace) {
    Index index = m_freeNode;
    if (index != none)
        m_freeNode = m_nodes[index].next;
    else {
        index = static_cast<Index>(m_nodes.size());
        m_nodes.emplace_back();
    }
    Node& node = m_nodes[index];
    node = Node{};
    node.name = name;
    node.nameSpace = nameSpace;
    node.parent = parent;
    node.generation = m_nextGeneration;
    if (++m_nextGeneration == deadGeneration)
        m_nextGeneration = firstGeneration;
    return index;
}

void QelMessageTree::attach(Index node) {
    Node& attached = m_nodes[node];
    Node& parent = m_nodes[attached.parent];
    attached.previous = parent.lastChild;
    if (parent.lastChild != none)
        m_nodes[parent.lastChild].next = node;
    else
        parent.firstChild = node;
    parent.lastChild = node;
}

QelMessageTree::Index QelMessageTree::appendChild(Index parent, Symbol name, Symbol nameSpace) {
    const Index child = createDetached(parent, name, nameSpace);
    attach(child);
    return child;
}

void QelMessageTree::detach(Index node) {
    const Node& detached = m_nodes[node];
    Node& parent = m_nodes[detached.parent];
    if (detached.previous != none)
        m_nodes[detached.previous].next = detached.next;
    else if (parent.firstChild == node)
        parent.firstChild = detached.next;
    if (detached.next != none)
        m_nodes[detached.next].previous = detached.previous;
    else if (parent.lastChild == node)
        parent.lastChild = detached.previous;
}

void QelMessageTree::remove(Index node) {
    detach(node);
    m_nodes[node].next = none;
    // Iterative post-order removal, so a deep tree cannot overflow the stack: descend to a leaf, free it, continue with
    // its sibling or parent.
    Index current = node;
    for (;;) {
        while (m_nodes[current].firstChild != none)
            current = m_nodes[current].firstChild;
        const Index next = m_nodes[current].next;
        const Index parent = m_nodes[current].parent;
        const bool wasLast = current == node;
        clear(current);
        if (wasLast)
            return;
        m_nodes[parent].firstChild = next;
        current = next != none ? next : parent;
    }
}

void QelMessageTree::clear(Index index) {
    Node& node = m_nodes[index];
    release(node.name);
    release(node.nameSpace);
    release(node.typeNameSpace);
    release(node.type);
    discard(node.value);
    while (node.firstAttribute != none) {
        const Index freed = node.firstAttribute;
        Attribute& attribute = m_attributes[freed];
        node.firstAttribute = attribute.next;
        release(attribute.name);
        discard(attribute.value);
        attribute = Attribute{};
        attribute.next = m_freeAttribute;
        m_freeAttribute = freed;
    }
    node = Node{};
    node.generation = deadGeneration;
    node.next = m_freeNode;
    m_freeNode = index;
}

void QelMessageTree::setNameSpace(Index node, Symbol nameSpace) {
    release(m_nodes[node].nameSpace);
    m_nodes[node].nameSpace = nameSpace;
}

void QelMessageTree::setType(Index node, Symbol nameSpace, Symbol type) {
    if (type == 0) {
        release(nameSpace);
        nameSpace = 0;
    }
    release(m_nodes[node].typeNameSpace);
    release(m_nodes[node].type);
    m_nodes[node].typeNameSpace = nameSpace;
    m_nodes[node].type = type;
}

void QelMessageTree::setValue(Index node, std::string_view value) {
    store(m_nodes[node].value, value);
}

bool QelMessageTree::setAttribute(Index node, Symbol name, std::string_view value) {
    const Index attribute = addAttribute(node, name);
    if (attribute == none)
        return false;
    store(m_attributes[attribute].value, value);
    return true;
}

void QelMessageTree::viewValue(Index node, std::string_view value) {
    discard(m_nodes[node].value);
    m_nodes[node].value = Text{value.data(), static_cast<std::uint32_t>(value.size()), 0};
}

bool QelMessageTree::viewAttribute(Index node, Symbol name, std::string_view value) {
    const Index attribute = addAttribute(node, name);
    if (attribute == none)
        return false;
    discard(m_attributes[attribute].value);
    m_attributes[attribute].value = Text{value.data(), static_cast<std::uint32_t>(value.size()), 0};
    return true;
}

/// The attribute with this name, appended if it does not exist; `none` if the element has too many.
QelMessageTree::Index QelMessageTree::addAttribute(Index node, Symbol name) {
    unsigned count = 0;
    Index last = none;
    for (Index each = m_nodes[node].firstAttribute; each != none; each = m_attributes[each].next) {
        if (m_attributes[each].name == name) {
            release(name);
            return each;
        }
        last = each;
        ++count;
    }
    if (count == QelLimits::attributes) {
        release(name);
        return none;
    }
    Index added = m_freeAttribute;
    if (added != none)
        m_freeAttribute = m_attributes[added].next;
    else {
        if (m_attributes.empty())
            m_attributes.emplace_back();
        added = static_cast<Index>(m_attributes.size());
        m_attributes.emplace_back();
    }
    m_attributes[added] = Attribute{};
    m_attributes[added].name = name;
    if (last != none)
        m_attributes[last].next = added;
    else
        m_nodes[node].firstAttribute = added;
    return added;
}

QelMessageTree::Symbol QelMessageTree::translate(const QelMessageTree& from, Symbol symbol) {
    if (symbol >= 0)
        return symbol;
    return &from == this ? share(symbol) : m_names.acquire(from.m_names.text(symbol));
}

void QelMessageTree::copyOwn(Index node, const QelMessageTree& from, Index source) {
    setNameSpace(node, translate(from, from.m_nodes[source].nameSpace));
    setType(node, translate(from, from.m_nodes[source].typeNameSpace), translate(from, from.m_nodes[source].type));
    setValue(node, from.m_nodes[source].value.view());
    for (Index each = from.m_nodes[source].firstAttribute; each != none; each = from.m_attributes[each].next) {
        const Index copy = addAttribute(node, translate(from, from.m_attributes[each].name));
        store(m_attributes[copy].value, from.m_attributes[each].value.view());
    }
}

void QelMessageTree::copyContent(Index node, const QelMessageTree& from, Index source) {
    copyOwn(node, from, source);
    Index original = source;
    Index copy = node;
    for (;;) {
        if (const Index child = from.m_nodes[original].firstChild; child != none) {
            original = child;
        } else {
            while (original != source && from.m_nodes[original].next == none) {
                original = from.m_nodes[original].parent;
                copy = m_nodes[copy].parent;
            }
            if (original == source)
                return;
            original = from.m_nodes[original].next;
            copy = m_nodes[copy].parent;
        }
        copy = appendChild(copy, translate(from, from.m_nodes[original].name), 0);
        copyOwn(copy, from, original);
    }
}

void QelMessageTree::takeContent(Index node, Index detached) {
    while (m_nodes[node].firstChild != none)
        remove(m_nodes[node].firstChild);
    std::swap(m_nodes[node].value, m_nodes[detached].value);
    std::swap(m_nodes[node].firstChild, m_nodes[detached].firstChild);
    std::swap(m_nodes[node].lastChild, m_nodes[detached].lastChild);
    for (Index child = m_nodes[node].firstChild; child != none; child = m_nodes[child].next)
        m_nodes[child].parent = node;
}

QelMessageTree::Index QelMessageTree::copyToChild(Index parent, const QelMessageTree& from, Index source) {
    const Symbol name =
        source == root ? intern(QelNameKind::element, rootAsChild) : translate(from, from.m_nodes[source].name);
    const Index copy = createDetached(parent, name, 0);
    copyContent(copy, from, source);
    attach(copy);
    return copy;
}

void QelMessageTree::reserve(std::size_t nodes, std::size_t attributes) {
    makeRoom(m_nodes, nodes);
    if (attributes != 0)
        makeRoom(m_attributes, attributes + 1);
}

char* QelMessageTree::createBuffer(std::size_t size) {
    m_buffer.reset(new char[size]);
    return m_buffer.get();
}

void QelMessageTree::store(Text& text, std::string_view value) {
    if (value.size() > text.capacity) {
        if (!m_pool)
            m_pool = std::make_unique<QelTextPool>();
        const std::size_t capacity = QelTextPool::capacityFor(value.size());
        char* const memory = m_pool->allocate(capacity);
        discard(text);
        text.data = memory;
        text.capacity = static_cast<std::uint32_t>(capacity);
    }
    if (!value.empty())
        std::memcpy(const_cast<char*>(text.data), value.data(), value.size());
    text.size = static_cast<std::uint32_t>(value.size());
}

void QelMessageTree::discard(Text& text) {
    if (text.capacity != 0)
        m_pool->release(const_cast<char*>(text.data), text.capacity);
    text = Text{};
}

} // namespace Qel
