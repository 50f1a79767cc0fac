#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelEnvelope.h"
#include "QelMessage/QelMessageTree.h"

namespace Qel::TestSupport {

/// A description of a tree, one line per element, that does not depend on indices and symbols.
[[nodiscard]] inline std::vector<std::string> describe(const QelMessageTree& tree,
                                                       QelMessageTree::Index top = QelMessageTree::root) {
    std::vector<std::string> lines;
    QelMessageTree::Index node = top;
    do {
        std::size_t depth = 0;
        for (QelMessageTree::Index up = node; up != top; up = tree.node(up).parent)
            ++depth;
        const QelMessageTree::Node& each = tree.node(node);
        std::string line(2 * depth, ' ');
        line += tree.name(QelNameKind::element, each.name) + " {" + tree.name(QelNameKind::nameSpace, each.nameSpace) +
                "} <" + tree.name(QelNameKind::nameSpace, each.typeNameSpace) + ':' +
                tree.name(QelNameKind::type, each.type) + '>';
        for (auto attribute = each.firstAttribute; attribute != QelMessageTree::none;
             attribute = tree.attribute(attribute).next)
            line += " @" + tree.name(QelNameKind::attribute, tree.attribute(attribute).name) + "='" +
                    std::string(tree.attribute(attribute).value.view()) + '\'';
        lines.push_back(line + " = '" + std::string(each.value.view()) + '\'');
    } while (tree.advance(node, top));
    return lines;
}

[[nodiscard]] inline std::vector<std::string> describe(QelMessage& message) {
    return describe(dynamic_cast<QelBinary&>(message).tree());
}

} // namespace Qel::TestSupport
