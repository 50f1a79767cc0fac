#pragma once

#include <array>
#include <random>
#include <string>
#include <string_view>

#include "QelMessage/QelMessageTree.h"

namespace Qel::TestSupport {

/// Fills trees with random legal content: names with and without IDs, namespaces, types, attributes, and values of
/// arbitrary bytes.
class RandomTree {
public:
    explicit RandomTree(unsigned seed) : m_random(seed) {}

    void fill(QelMessageTree& tree, int elements) {
        decorate(tree, QelMessageTree::root);
        QelMessageTree::Index current = QelMessageTree::root;
        for (int i = 0; i < elements; ++i) {
            while (current != QelMessageTree::root && below(3) == 0)
                current = tree.node(current).parent;
            const auto child = tree.appendChild(current, tree.intern(QelNameKind::element, name()),
                                                tree.share(tree.node(current).nameSpace));
            decorate(tree, child);
            if (below(2) == 0)
                current = child;
        }
    }

    [[nodiscard]] unsigned below(unsigned limit) {
        return std::uniform_int_distribution<unsigned>(0, limit - 1)(m_random);
    }

    [[nodiscard]] std::string bytes(unsigned longest) {
        std::string text;
        for (unsigned left = below(longest + 1); left > 0; --left)
            text += static_cast<char>(below(256));
        return text;
    }

    [[nodiscard]] std::string name() {
        static constexpr std::array<std::string_view, 12> odd{"log_level",
                                                              "",
                                                              "/",
                                                              "a:b",
                                                              "1st",
                                                              "x y",
                                                              "_x41_",
                                                              "_x_",
                                                              "xmlns",
                                                              "encoding",
                                                              "gr\xC3\xB6\xC3\x9F"
                                                              "e",
                                                              "time"};
        switch (below(5)) {
        case 0:
            return std::string(odd[below(odd.size())]);
        case 1:
            return bytes(6);
        default:
            return "e" + std::to_string(1 + below(2200));
        }
    }

    [[nodiscard]] std::string value() {
        static constexpr std::array<std::string_view, 14> odd{"",
                                                              " ",
                                                              "\n\t ",
                                                              "plain",
                                                              " a b ",
                                                              "<&>\"'",
                                                              "]]>",
                                                              "line\r\n",
                                                              "\r",
                                                              std::string_view("\0", 1),
                                                              "\xFF\xFE",
                                                              "\xEF\xBF\xBF",
                                                              "\xF0\x9F\x8C\x8D",
                                                              "true"};
        return below(4) == 0 ? bytes(20) : std::string(odd[below(odd.size())]);
    }

private:
    void decorate(QelMessageTree& tree, QelMessageTree::Index node) {
        if (below(3) == 0)
            tree.setNameSpace(node, nameSpace(tree));
        if (below(3) == 0) {
            const int typeNameSpace = nameSpace(tree);
            tree.setType(node, typeNameSpace,
                         below(2) == 0 ? tree.intern(QelNameKind::type, name()) : static_cast<int>(101 + below(300)));
        }
        for (unsigned left = below(6) == 0 ? below(4) : 0; left > 0; --left)
            if (!tree.setAttribute(node, attribute(tree), value()))
                return;
        tree.setValue(node, value());
    }

    int nameSpace(QelMessageTree& tree) {
        switch (below(4)) {
        case 0:
            return 0;
        case 1:
            return tree.intern(QelNameKind::nameSpace, name());
        default:
            return static_cast<int>(278 + below(20));
        }
    }

    int attribute(QelMessageTree& tree) {
        return below(2) == 0 ? tree.intern(QelNameKind::attribute, name()) : static_cast<int>(1 + below(5));
    }

    std::mt19937 m_random;
};

} // namespace Qel::TestSupport
