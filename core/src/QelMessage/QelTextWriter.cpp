#include <new>
#include <string>
#include <unordered_set>
#include <vector>

#include <pugixml.hpp>

#include "QelCommon/ErrorMessage.h"
#include "QelCommon/Strings.h"
#include "QelMessage/QelBase64.h"
#include "QelMessage/QelLimits.h"
#include "QelMessage/QelTextCodec.h"
#include "QelMessage/QelValueText.h"
#include "QelMessage/QelXmlNames.h"
#include "QelMessage/QelXmlText.h"

namespace Qel::QelTextCodec {

namespace {

using Index = QelMessageTree::Index;
using Symbol = QelMessageTree::Symbol;

constexpr const char* indent = "  ";

/// The prefix of a namespace: its name, escaped if XML reserves it.
std::string prefixOf(const std::string& nameSpace) {
    constexpr int reservedStart = 3;
    const bool isReserved =
        compareNoCase(nameSpace, "xml", reservedStart) == 0 || nameSpace == QelXmlNames::schemaInstancePrefix;
    return isReserved ? QelXmlText::encodeReservedName(nameSpace) : QelXmlText::encodeName(nameSpace);
}

/// Throws std::bad_alloc if `isDone` is false. When it runs out of memory, pugixml omits the node and returns false.
void expect(bool isDone) {
    if (!isDone)
        throw std::bad_alloc();
}

pugi::xml_node append(pugi::xml_node parent, const std::string& name) {
    pugi::xml_node child = parent.append_child(pugi::node_element);
    expect(child.set_name(name.c_str()));
    return child;
}

void appendText(pugi::xml_node parent, pugi::xml_node_type type, const std::string& text) {
    expect(parent.append_child(type).set_value(text.c_str()));
}

void set(pugi::xml_node xml, const std::string& name, const std::string& value) {
    pugi::xml_attribute attribute = xml.append_attribute("");
    expect(attribute.set_name(name.c_str()) && attribute.set_value(value.c_str()));
}

/// Adds attributes to an element. Values that XML cannot represent are base64-encoded.
class Attributes {
public:
    explicit Attributes(pugi::xml_node xml) : m_xml(xml) {}
    void add(const std::string& name, std::string_view value) {
        const bool isPlain = QelXmlText::isPlain(value);
        set(m_xml, name, isPlain ? std::string(value) : QelBase64::encode(value));
        if (!isPlain)
            m_encoded += (m_encoded.empty() ? "" : " ") + name;
    }
    void addIfSet(const std::string& name, std::string_view value) {
        if (!value.empty())
            add(name, value);
    }
    /// Call this after all attributes have been added.
    void finish() const {
        if (!m_encoded.empty())
            set(m_xml, QelXmlNames::base64Attributes, m_encoded);
    }

private:
    pugi::xml_node m_xml;
    std::string m_encoded;
};

class TextSink : public pugi::xml_writer {
public:
    explicit TextSink(std::string& text) : m_text(text) {}
    void write(const void* data, std::size_t size) override {
        if (m_text.size() <= QelLimits::messageBytes)
            m_text.append(static_cast<const char*>(data), size);
    }

private:
    std::string& m_text;
};

/// Builds a document from a tree.
class Writer {
public:
    explicit Writer(const QelMessageTree& tree) : m_tree(tree) {}

    bool message(const QelEnvelope& envelope) {
        declaration();
        const pugi::xml_node xml = append(m_document.root(), QelXmlNames::message);
        return declarePrefixes(xml, QelMessageTree::root, true) && subtree(xml, QelMessageTree::root, 0, &envelope);
    }

    bool document(Index top) {
        declaration();
        const pugi::xml_node xml = append(m_document.root(), elementName(top));
        return declarePrefixes(xml, top, true) && subtree(xml, top, 0, nullptr);
    }

    bool content(Index parent) {
        const std::string_view text = m_tree.node(parent).value.view();
        const bool hasChildren = m_tree.node(parent).firstChild != QelMessageTree::none;
        if (!QelXmlText::isPlain(text)) {
            setErrorMessage("the value cannot be written as markup without its element");
            return false;
        }
        value(m_document.root(), text, hasChildren);
        for (Index child = m_tree.node(parent).firstChild; child != QelMessageTree::none;
             child = m_tree.node(child).next) {
            const pugi::xml_node xml = append(m_document.root(), elementName(child));
            if (!declarePrefixes(xml, child, false))
                return false;
            // Declared explicitly, so that the markup has the same meaning wherever it is inserted.
            if (m_tree.node(child).nameSpace == 0)
                set(xml, QelXmlNames::declaration, "");
            if (!subtree(xml, child, 0, nullptr))
                return false;
        }
        return true;
    }

    bool save(std::string& text, unsigned flags) const {
        std::string written;
        TextSink sink(written);
        m_document.save(sink, indent, flags, pugi::encoding_utf8);
        if (written.size() > QelLimits::messageBytes) {
            setErrorMessage("the message is longer than %zu bytes", QelLimits::messageBytes);
            return false;
        }
        text = std::move(written);
        return true;
    }

private:
    void declaration() {
        pugi::xml_node xml = m_document.append_child(pugi::node_declaration);
        set(xml, "version", "1.0");
        set(xml, "encoding", "UTF-8");
    }

    [[nodiscard]] std::string elementName(Index node) const {
        return node == QelMessageTree::root
                   ? std::string(QelMessageTree::rootAsChild)
                   : QelXmlText::encodeName(m_tree.name(QelNameKind::element, m_tree.node(node).name));
    }

    [[nodiscard]] std::string nameSpaceName(Symbol symbol) const { return m_tree.name(QelNameKind::nameSpace, symbol); }

    /// Declares the prefixes used by the types of a subtree. False if the document would have too many elements.
    bool declarePrefixes(pugi::xml_node xml, Index top, bool isDocument) {
        bool hasTypes = isDocument;
        std::unordered_set<Symbol> seen;
        std::vector<Symbol> prefixes; // in order of first use, so that equal trees give equal output
        for (Index node = top;;) {
            if (++m_elements > QelLimits::elements) {
                setErrorMessage("the tree has more than %zu elements", QelLimits::elements);
                return false;
            }
            const QelMessageTree::Node& each = m_tree.node(node);
            hasTypes = hasTypes || each.type != 0;
            if (each.typeNameSpace != 0 && seen.insert(each.typeNameSpace).second)
                prefixes.push_back(each.typeNameSpace);
            if (!m_tree.advance(node, top))
                break;
        }
        const std::string colon = std::string(QelXmlNames::declaration) + ':';
        if (hasTypes)
            set(xml, colon + QelXmlNames::schemaInstancePrefix, QelXmlNames::schemaInstance);
        for (const Symbol prefix : prefixes)
            set(xml, colon + prefixOf(nameSpaceName(prefix)), QelXmlText::encodeNamespace(nameSpaceName(prefix)));
        return true;
    }

    /// Writes the subtree of `top` to `xml`. False if it is too deep.
    bool subtree(pugi::xml_node xml, Index top, Symbol inherited, const QelEnvelope* envelope) {
        element(xml, top, inherited, envelope);
        unsigned depth = envelope ? 0 : 1;
        for (Index node = top;;) {
            const Index before = node;
            if (!m_tree.advance(node, top))
                return true;
            // Either down to the first child, or up any number of levels to the next sibling.
            if (m_tree.node(node).parent == before) {
                ++depth;
            } else {
                for (Index up = before; m_tree.node(up).parent != m_tree.node(node).parent;
                     up = m_tree.node(up).parent) {
                    xml = xml.parent();
                    --depth;
                }
                xml = xml.parent();
            }
            if (depth > QelLimits::depth) {
                setErrorMessage("the tree is deeper than %u elements", QelLimits::depth);
                return false;
            }
            xml = append(xml, elementName(node));
            element(xml, node, m_tree.node(m_tree.node(node).parent).nameSpace, nullptr);
        }
    }

    void element(pugi::xml_node xml, Index index, Symbol inherited, const QelEnvelope* envelope) {
        const QelMessageTree::Node& node = m_tree.node(index);
        if (node.nameSpace != inherited)
            set(xml, QelXmlNames::declaration,
                node.nameSpace == 0 ? "" : QelXmlText::encodeNamespace(nameSpaceName(node.nameSpace)));
        if (node.type != 0)
            set(xml, std::string(QelXmlNames::schemaInstancePrefix) + ':' + QelXmlNames::type, typeText(node));
        attributes(xml, node, envelope);
        const bool hasChildren = node.firstChild != QelMessageTree::none;
        if (QelXmlText::isPlain(node.value.view())) {
            value(xml, node.value.view(), hasChildren);
        } else {
            set(xml, QelXmlNames::encoding, QelXmlNames::base64);
            value(xml, QelBase64::encode(node.value.view()), hasChildren);
        }
    }

    [[nodiscard]] std::string typeText(const QelMessageTree::Node& node) const {
        const std::string type = QelXmlText::encodeName(m_tree.name(QelNameKind::type, node.type));
        return node.typeNameSpace == 0 ? type : prefixOf(nameSpaceName(node.typeNameSpace)) + ':' + type;
    }

    void attributes(pugi::xml_node xml, const QelMessageTree::Node& node, const QelEnvelope* envelope) {
        Attributes all(xml);
        if (envelope)
            envelopeAttributes(all, *envelope);
        for (Index each = node.firstAttribute; each != QelMessageTree::none; each = m_tree.attribute(each).next) {
            const std::string name = m_tree.name(QelNameKind::attribute, m_tree.attribute(each).name);
            all.add(QelXmlNames::isReservedAttribute(name, envelope != nullptr) ? QelXmlText::encodeReservedName(name)
                                                                                : QelXmlText::encodeName(name),
                    m_tree.attribute(each).value.view());
        }
        all.finish();
    }

    static void envelopeAttributes(Attributes& all, const QelEnvelope& envelope) {
        if (envelope.time)
            all.add(QelXmlNames::time, QelValueText::ofTime(*envelope.time).view());
        all.addIfSet(QelXmlNames::requestId, envelope.requestId);
        all.addIfSet(QelXmlNames::sender, envelope.sender);
        all.addIfSet(QelXmlNames::session, envelope.session);
        all.addIfSet(QelXmlNames::origin, envelope.origin);
        std::string subscriptions;
        for (const std::string& name : envelope.subscriptions)
            subscriptions += (subscriptions.empty() ? "" : " ") + name;
        all.addIfSet(QelXmlNames::subscriptions, subscriptions);
    }

    /// White space next to children would be read as layout, so it is written as CDATA.
    static void value(pugi::xml_node xml, std::string_view text, bool hasChildren) {
        if (text.empty())
            return;
        const bool looksLikeLayout = hasChildren && QelXmlText::isBlank(text);
        appendText(xml, looksLikeLayout ? pugi::node_cdata : pugi::node_pcdata, std::string(text));
    }

    const QelMessageTree& m_tree;
    pugi::xml_document m_document;
    std::size_t m_elements = 0;
};

} // namespace

int writeMessage(const QelMessageTree& tree, const QelEnvelope& envelope, std::string& text) {
    Writer writer(tree);
    return writer.message(envelope) && writer.save(text, pugi::format_indent) ? 0 : -1;
}

int writeElement(const QelMessageTree& tree, Index element, std::string& text) {
    Writer writer(tree);
    return writer.document(element) && writer.save(text, pugi::format_indent) ? 0 : -1;
}

int writeContent(const QelMessageTree& tree, Index element, std::string& text) {
    Writer writer(tree);
    return writer.content(element) && writer.save(text, pugi::format_raw | pugi::format_no_declaration) ? 0 : -1;
}

} // namespace Qel::QelTextCodec
