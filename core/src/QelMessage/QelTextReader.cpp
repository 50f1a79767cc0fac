#include <algorithm>
#include <string>
#include <vector>

#include "QelMessage/QelBase64.h"
#include "QelMessage/QelDetachedElement.h"
#include "QelMessage/QelLimits.h"
#include "QelMessage/QelTextCodec.h"
#include "QelMessage/QelValueText.h"
#include "QelMessage/QelXmlDocument.h"
#include "QelMessage/QelXmlNames.h"
#include "QelMessage/QelXmlText.h"

namespace Qel::QelTextCodec {

namespace {

using Index = QelMessageTree::Index;
using Symbol = QelMessageTree::Symbol;

/// A name with an optional prefix.
struct QualifiedName {
    explicit QualifiedName(std::string_view text) {
        const auto colon = text.find(':');
        hasPrefix = colon != std::string_view::npos;
        prefix = hasPrefix ? text.substr(0, colon) : std::string_view();
        local = hasPrefix ? text.substr(colon + 1) : text;
    }
    /// False for "a:b:c", ":a" and "a:", and if a part is not a valid name.
    [[nodiscard]] bool isValid() const {
        return QelXmlText::isName(local) && (!hasPrefix || QelXmlText::isName(prefix));
    }

    bool hasPrefix;
    std::string_view prefix;
    std::string_view local;
};

std::vector<std::string_view> words(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    std::vector<std::string_view> found;
    for (std::size_t start = text.find_first_not_of(blanks); start != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_of(blanks, start), text.size());
        found.push_back(text.substr(start, end - start));
        start = text.find_first_not_of(blanks, end);
    }
    return found;
}

/// Builds elements from a parsed document.
class Reader {
public:
    Reader(const QelXmlDocument& document, QelMessageTree& tree) : m_document(document), m_tree(tree) {
        m_scope.enter();
        m_scope.declare(QelXmlNames::reserved, QelXmlNames::reservedNamespace);
    }

    /// Reads `xml` into the root and the envelope.
    bool message(pugi::xml_node xml, QelEnvelope& envelope) {
        m_scope.enter();
        m_envelope = &envelope;
        if (!declareNamespaces(xml))
            return false;
        if (QualifiedName(xml.name()).local != QelXmlNames::message)
            return fail(xml,
                        "the root element is '" + std::string(xml.name()) + "', not '" + QelXmlNames::message + "'");
        std::string nameSpace;
        if (!elementNameSpace(xml, nameSpace))
            return false;
        m_tree.setNameSpace(QelMessageTree::root, m_tree.intern(QelNameKind::nameSpace, nameSpace));
        if (!fill(xml, QelMessageTree::root))
            return false;
        m_envelope = nullptr;
        return children(xml, QelMessageTree::root, 0);
    }

    /// Reads `xml` as a new child of `parent`. On failure nothing is added.
    bool child(pugi::xml_node xml, Index parent) {
        QelDetachedElement top(m_tree);
        if (!open(xml, parent, top) || !children(xml, top.get(), 1))
            return false;
        top.attach();
        return true;
    }

    /// Replaces the value and children of `element` with the content of `xml`.
    bool content(pugi::xml_node xml, Index element) {
        m_scope.enter();
        if (const Symbol nameSpace = m_tree.node(element).nameSpace; nameSpace != 0)
            m_scope.declare({}, QelXmlText::encodeNamespace(m_tree.name(QelNameKind::nameSpace, nameSpace)));
        // Read into a detached element first, since an error may occur halfway through the text.
        QelDetachedElement replacement(m_tree);
        replacement.create(element, 0, m_tree.share(m_tree.node(element).nameSpace));
        if (!value(xml, replacement.get(), false) || !children(xml, replacement.get(), 0))
            return false;
        m_tree.takeContent(element, replacement.get());
        return true;
    }

private:
    bool fail(pugi::xml_node place, const std::string& what) const { return m_document.fail(place, what); }

    /// Reads all descendants of `xml`, which has depth `depth`, into `node`.
    bool children(pugi::xml_node xml, Index node, unsigned depth) {
        const pugi::xml_node top = xml;
        for (;;) {
            pugi::xml_node next = elementFrom(xml.first_child());
            if (next) {
                if (++depth > QelLimits::depth)
                    return fail(next, "elements are nested deeper than " + std::to_string(QelLimits::depth));
            } else {
                while (xml != top && !(next = elementFrom(xml.next_sibling()))) {
                    xml = xml.parent();
                    node = m_tree.node(node).parent;
                    m_scope.leave();
                    --depth;
                }
                if (xml == top)
                    return true;
                node = m_tree.node(node).parent;
                m_scope.leave();
            }
            QelDetachedElement opened(m_tree);
            if (!open(next, node, opened))
                return false;
            xml = next;
            node = opened.attach();
        }
    }

    /// Returns `xml` if it is an element, else its next sibling that is one; null if there is none.
    static pugi::xml_node elementFrom(pugi::xml_node xml) {
        while (xml && xml.type() != pugi::node_element)
            xml = xml.next_sibling();
        return xml;
    }

    /// Creates a detached element for `xml`, without its children, and enters its scope.
    bool open(pugi::xml_node xml, Index parent, QelDetachedElement& opened) {
        m_scope.enter();
        std::string nameSpace;
        if (!declareNamespaces(xml) || !elementNameSpace(xml, nameSpace))
            return false;
        const std::string name = QelXmlText::decodeName(QualifiedName(xml.name()).local);
        const Symbol nameSymbol = m_tree.intern(QelNameKind::element, name);
        return fill(xml, opened.create(parent, nameSymbol, m_tree.intern(QelNameKind::nameSpace, nameSpace)));
    }

    bool declareNamespaces(pugi::xml_node xml) {
        if (!checkAttributes(xml))
            return false;
        for (const pugi::xml_attribute attribute : xml.attributes()) {
            const QualifiedName name(attribute.name());
            if (name.hasPrefix ? name.prefix != QelXmlNames::declaration : name.local != QelXmlNames::declaration)
                continue;
            std::string uri;
            if (!text(xml, attribute.value(), uri))
                return false;
            const std::string_view prefix = name.hasPrefix ? name.local : std::string_view();
            if (!mayDeclare(prefix, uri))
                return fail(xml, "invalid declaration of prefix: " + std::string(prefix));
            m_scope.declare(prefix, std::move(uri));
        }
        return true;
    }

    /// The reserved prefixes must not be rebound, and their namespaces must not be bound to other prefixes.
    static bool mayDeclare(std::string_view prefix, const std::string& uri) {
        if (prefix == QelXmlNames::declaration || uri == QelXmlNames::declarationNamespace)
            return false;
        return (prefix == QelXmlNames::reserved) == (uri == QelXmlNames::reservedNamespace) &&
               (prefix.empty() || !uri.empty());
    }

    /// Checks what the parser does not: attribute names are valid and distinct, values contain no bare "<".
    bool checkAttributes(pugi::xml_node xml) {
        m_attributeNames.clear();
        for (const pugi::xml_attribute attribute : xml.attributes()) {
            if (!QualifiedName(attribute.name()).isValid())
                return fail(xml, "invalid name: " + std::string(attribute.name()));
            if (std::string_view(attribute.value()).find('<') != std::string_view::npos)
                return fail(xml, "'<' in the value of attribute " + std::string(attribute.name()));
            m_attributeNames.emplace_back(attribute.name());
        }
        std::ranges::sort(m_attributeNames);
        const auto twice = std::ranges::adjacent_find(m_attributeNames);
        return twice == m_attributeNames.end() || fail(xml, "duplicate attribute " + std::string(*twice));
    }

    bool elementNameSpace(pugi::xml_node xml, std::string& nameSpace) const {
        const QualifiedName name(xml.name());
        return name.isValid() ? resolve(xml, name, nameSpace) : fail(xml, "invalid name: " + std::string(xml.name()));
    }

    /// Resolves the namespace of a name; empty if it has none.
    bool resolve(pugi::xml_node place, const QualifiedName& name, std::string& nameSpace) const {
        const std::string* const uri = m_scope.find(name.prefix);
        if (!uri && name.hasPrefix)
            return fail(place, "undeclared prefix: " + std::string(name.prefix));
        if (!uri || uri->empty()) {
            nameSpace.clear();
            return true;
        }
        return QelXmlText::decodeNamespace(*uri, nameSpace) || fail(place, "unknown namespace: " + *uri);
    }

    /// Reads the type, attributes and value of an element.
    bool fill(pugi::xml_node xml, Index node) {
        std::string list;
        if (!text(xml, xml.attribute(QelXmlNames::base64Attributes).value(), list))
            return false;
        std::vector<std::string_view> encoded = words(list);
        std::ranges::sort(encoded);
        bool isEncoded = false;
        for (const pugi::xml_attribute attribute : xml.attributes()) {
            const std::string_view name = attribute.name();
            std::string content;
            if (!text(xml, attribute.value(), content))
                return false;
            if (std::ranges::binary_search(encoded, name) && !QelBase64::decode(content, content))
                return fail(xml, "malformed base64 in attribute " + std::string(name));
            if (name == QelXmlNames::encoding) {
                isEncoded = content == QelXmlNames::base64;
                if (!isEncoded)
                    return fail(xml, "unknown encoding: " + content);
            } else if (!this->attribute(xml, node, name, content)) {
                return false;
            }
        }
        return value(xml, node, isEncoded);
    }

    bool attribute(pugi::xml_node xml, Index node, std::string_view fullName, const std::string& content) {
        const QualifiedName name(fullName);
        if (name.hasPrefix)
            return name.prefix == QelXmlNames::declaration || prefixedAttribute(xml, node, name, content);
        if (m_envelope && QelXmlNames::isReservedAttribute(name.local, true) &&
            !QelXmlNames::isReservedAttribute(name.local, false))
            return envelopeField(xml, name.local, content);
        if (QelXmlNames::isReservedAttribute(name.local, false))
            return true;
        const Symbol symbol = m_tree.intern(QelNameKind::attribute, QelXmlText::decodeName(name.local));
        if (m_tree.findAttribute(node, symbol) != QelMessageTree::none) {
            m_tree.release(symbol);
            return fail(xml, "duplicate attribute " + std::string(name.local));
        }
        return m_tree.setAttribute(node, symbol, content) ||
               fail(xml, "more than " + std::to_string(QelLimits::attributes) + " attributes");
    }

    /// Reads the complex type. Schema location hints and attributes defined by XML itself, such as the language, are
    /// ignored.
    bool prefixedAttribute(pugi::xml_node xml, Index node, const QualifiedName& name, const std::string& content) {
        const std::string* const uri = m_scope.find(name.prefix);
        if (!uri)
            return fail(xml, "undeclared prefix: " + std::string(name.prefix));
        if (*uri == QelXmlNames::reservedNamespace)
            return true;
        if (*uri == QelXmlNames::schemaInstance) {
            if (name.local == QelXmlNames::type)
                return m_tree.node(node).type == 0 ? type(xml, node, content)
                                                   : fail(xml, "duplicate attribute " + std::string(name.local));
            if (name.local == "schemaLocation" || name.local == "noNamespaceSchemaLocation")
                return true;
        }
        return fail(xml, "unknown attribute: " + std::string(name.local));
    }

    bool type(pugi::xml_node xml, Index node, const std::string& content) {
        const std::vector<std::string_view> word = words(content);
        if (word.size() != 1 || !QualifiedName(word.front()).isValid())
            return fail(xml, "invalid type name: " + content);
        const QualifiedName name(word.front());
        std::string nameSpace;
        if (name.hasPrefix && !resolve(xml, name, nameSpace))
            return false;
        const std::string local = QelXmlText::decodeName(name.local);
        const Symbol nameSpaceSymbol = m_tree.intern(QelNameKind::nameSpace, nameSpace);
        m_tree.setType(node, nameSpaceSymbol, m_tree.intern(QelNameKind::type, local));
        return true;
    }

    bool envelopeField(pugi::xml_node xml, std::string_view name, const std::string& content) {
        if (name == QelXmlNames::time) {
            long seconds = 0;
            if (content.empty())
                return true;
            if (!QelValueText::toTime(content, seconds))
                return fail(xml, "invalid time: " + content);
            m_envelope->time = seconds;
        } else if (name == QelXmlNames::subscriptions) {
            const std::vector<std::string_view> names = words(content);
            m_envelope->subscriptions.assign(names.begin(), names.end());
        } else {
            std::string& field = name == QelXmlNames::requestId ? m_envelope->requestId
                                 : name == QelXmlNames::sender  ? m_envelope->sender
                                 : name == QelXmlNames::session ? m_envelope->session
                                                                : m_envelope->origin;
            field = content;
        }
        return true;
    }

    /// Reads the value of an element, its character data. If there are children, white-space-only data is layout and is
    /// ignored.
    bool value(pugi::xml_node xml, Index node, bool isEncoded) {
        const bool hasChildren = static_cast<bool>(elementFrom(xml.first_child()));
        std::string all;
        for (const pugi::xml_node part : xml) {
            const std::string_view raw = part.value();
            if (part.type() == pugi::node_cdata)
                all += raw;
            if (part.type() != pugi::node_pcdata || (hasChildren && QelXmlText::isBlank(raw)))
                continue;
            if (raw.find("]]>") != std::string_view::npos)
                return fail(part, "']]>' in character data");
            std::string decoded;
            if (!text(part, raw, decoded))
                return false;
            all += decoded;
        }
        if (isEncoded && !QelBase64::decode(all, all))
            return fail(xml, "malformed base64");
        if (!all.empty())
            m_tree.setValue(node, all);
        return true;
    }

    /// Decodes the references in a string.
    bool text(pugi::xml_node place, std::string_view raw, std::string& decoded) const {
        std::size_t at = 0;
        decoded.clear();
        if (QelXmlText::decodeReferences(raw, decoded, at))
            return true;
        const std::string what = "unknown or malformed reference";
        return place.type() == pugi::node_pcdata
                   ? m_document.fail(static_cast<std::size_t>(place.offset_debug()) + at, what)
                   : fail(place, what);
    }

    const QelXmlDocument& m_document;
    QelMessageTree& m_tree;
    QelEnvelope* m_envelope = nullptr; // set while the attributes of `message` are read
    QelXmlScope m_scope;
    std::vector<std::string_view> m_attributeNames;
};

} // namespace

int readMessage(std::string_view text, QelMessageTree& tree, QelEnvelope& envelope) {
    QelXmlDocument document(text);
    if (!document.parseDocument())
        return -1;
    return Reader(document, tree).message(document.element(), envelope) ? 0 : -1;
}

int readChild(std::string_view text, QelMessageTree& tree, Index parent) {
    QelXmlDocument document(text);
    if (!document.parseDocument())
        return -1;
    return Reader(document, tree).child(document.element(), parent) ? 0 : -1;
}

int replaceContent(std::string_view text, QelMessageTree& tree, Index element) {
    QelXmlDocument document(text);
    if (!document.parseContent())
        return -1;
    return Reader(document, tree).content(document.node(), element) ? 0 : -1;
}

} // namespace Qel::QelTextCodec
