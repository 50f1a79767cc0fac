#pragma once

#include "QelMessage/QelMessageTree.h"

namespace Qel {

/// Owns an element that is not yet attached to its parent. The destructor removes the element and its subtree unless it
/// has been attached.
class QelDetachedElement {
public:
    using Index = QelMessageTree::Index;
    using Symbol = QelMessageTree::Symbol;

    explicit QelDetachedElement(QelMessageTree& tree) noexcept : m_tree(tree) {}
    QelDetachedElement(const QelDetachedElement&) = delete;
    QelDetachedElement& operator=(const QelDetachedElement&) = delete;
    ~QelDetachedElement() {
        if (m_element != QelMessageTree::none)
            m_tree.remove(m_element);
    }

    /// Like QelMessageTree::createDetached(). Call at most once.
    Index create(Index parent, Symbol name, Symbol nameSpace) {
        m_element = m_tree.createDetached(parent, name, nameSpace);
        return m_element;
    }
    Index attach() {
        const Index element = m_element;
        m_tree.attach(element);
        m_element = QelMessageTree::none;
        return element;
    }
    [[nodiscard]] Index get() const noexcept { return m_element; }

private:
    QelMessageTree& m_tree;
    Index m_element = QelMessageTree::none;
};

} // namespace Qel
