#include "QelMessage/QelBinaryIterator.h"

#include <cstdlib>
#include <memory>

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelBinaryCodec.h"
#include "QelMessage/QelDefaultMap.h"
#include "QelMessage/QelMallocText.h"
#include "QelMessage/QelMessageTree.h"
#include "QelMessage/QelParseGuard.h"
#include "QelMessage/QelTextCodec.h"

namespace Qel {

namespace {

constexpr const char* sourceName = "core/src/QelMessage/QelBinaryIterator";
constexpr auto none = QelMessageTree::none;
constexpr auto root = QelMessageTree::root;

/// A namespace or type as part of the key of a derived factory. An ID without a name contributes an empty string.
std::string keyPart(const QelMessageTree& tree, int symbol, Internal::CharArray (*nameOf)(int)) {
    return std::string(symbol > 0 ? nameOf(symbol).view() : symbol < 0 ? tree.names().text(symbol) : "");
}

} // namespace

QelBinaryIterator::QelBinaryIterator(QelBinary* message) : m_message(message), m_node(root), m_generation(0) {
    moveTo(root);
}

QelBinaryIterator::QelBinaryIterator(const QelBinaryIterator* other)
    : m_message(nullptr), m_node(root), m_generation(0) {
    takePlaceOf(*other);
}

QelBinaryIterator& QelBinaryIterator::operator=(const QelBinaryIterator& other) {
    if (this != &other)
        takePlaceOf(other);
    return *this;
}

void QelBinaryIterator::takePlaceOf(const QelBinaryIterator& other) const {
    const Index node = other.current();
    m_message = other.m_message;
    moveTo(node);
}

QelMessageTree& QelBinaryIterator::tree() const {
    QEL_CHECK(m_message, sourceName);
    return m_message->tree();
}

/// The current element; ends the process if it has been deleted.
QelBinaryIterator::Index QelBinaryIterator::current() const {
    QEL_CHECK(tree().isAlive(m_node, m_generation), sourceName);
    return m_node;
}

int QelBinaryIterator::moveTo(Index node) const {
    m_node = node;
    m_generation = tree().node(node).generation;
    return 0;
}

/// Moves to the result of a search; -1 if it is `none`.
int QelBinaryIterator::enter(Index child) const {
    return child == none ? -1 : moveTo(child);
}

QelMessage* QelBinaryIterator::getMessage() const {
    QEL_CHECK(m_message, sourceName);
    return m_message;
}

QelMessageIterator* QelBinaryIterator::newIterator(bool copy) const {
    if (!copy)
        return new QelBinaryIterator(this);
    const Index original = current();
    auto_destroy<QelBinary> message(new QelBinary);
    auto cursor = std::make_unique<QelBinaryIterator>(message.get());
    if (original == root)
        message->tree().copyContent(root, tree(), root);
    else
        cursor->moveTo(message->tree().copyToChild(root, tree(), original));
    static_cast<void>(message.release());
    return cursor.release();
}

void QelBinaryIterator::invalidate() const {
    m_message = nullptr;
}

// ---------------------------------------------------------------------------------------------------- navigation

int QelBinaryIterator::seekRoot() const {
    return moveTo(root);
}

int QelBinaryIterator::seekUp() const {
    const Index node = current();
    QEL_CHECK(node != root, sourceName);
    return moveTo(tree().node(node).parent);
}

int QelBinaryIterator::seek(const std::string& name) const {
    if (!name.starts_with('/'))
        return firstChild(name);
    current();
    Index node = root;
    for (std::string_view path = std::string_view(name).substr(1); !path.empty() || node != root;) {
        const auto slash = path.find('/');
        const std::string_view level = path.substr(0, slash);
        const int symbol = tree().find(QelNameKind::element, level);
        node = symbol == 0 ? none : tree().findChild(node, symbol);
        if (node == none)
            return -1;
        if (slash == std::string_view::npos)
            break;
        path.remove_prefix(slash + 1);
    }
    return moveTo(node);
}

int QelBinaryIterator::seek(int id) const {
    return isIdEmpty(id) ? moveTo(current()) : firstChild(id);
}

int QelBinaryIterator::seekPresence(const std::string& name) const {
    return child(name) == none ? -1 : 0;
}

int QelBinaryIterator::seekPresence(int id) const {
    return child(id) == none && !isIdEmpty(id) ? -1 : 0;
}

int QelBinaryIterator::firstChild() const {
    return enter(tree().node(current()).firstChild);
}

int QelBinaryIterator::firstChild(const std::string& name) const {
    return enter(child(name));
}

int QelBinaryIterator::firstChild(int id) const {
    return enter(child(id));
}

int QelBinaryIterator::nextSibling() const {
    return enter(tree().node(current()).next);
}

int QelBinaryIterator::nextSibling(const std::string& name) const {
    const int symbol = tree().find(QelNameKind::element, name);
    return symbol == 0 ? -1 : enter(tree().findNext(current(), symbol));
}

int QelBinaryIterator::nextSibling(int id) const {
    return id <= 0 ? -1 : enter(tree().findNext(current(), id));
}

int QelBinaryIterator::seekChildByValue(int element, int id, std::string_view value) const {
    const QelMessageTree& all = tree();
    for (Index each = child(element); each != none; each = all.findNext(each, element)) {
        const Index key = all.findChild(each, id);
        if (key != none && all.node(key).value.view() == value)
            return moveTo(each);
    }
    return -1;
}

/// The first child with this ID.
QelBinaryIterator::Index QelBinaryIterator::child(int id) const {
    const Index parent = current();
    return id <= 0 ? none : tree().findChild(parent, id);
}

QelBinaryIterator::Index QelBinaryIterator::child(const std::string& name) const {
    const Index parent = current();
    const int symbol = tree().find(QelNameKind::element, name);
    return symbol == 0 ? none : tree().findChild(parent, symbol);
}

/// Finds the element that a value operation refers to: the current one for the empty ID, else the first child with the
/// ID.
bool QelBinaryIterator::find(int id, Index& node) const {
    node = isIdEmpty(id) ? current() : child(id);
    return isIdEmpty(id) || node != none;
}

bool QelBinaryIterator::find(const std::string& name, Index& node) const {
    node = child(name);
    return node != none;
}

// ---------------------------------------------------------------------------------------------- names and types

std::string QelBinaryIterator::curName() const {
    return tree().name(QelNameKind::element, tree().node(current()).name);
}

int QelBinaryIterator::curID() const {
    const int symbol = tree().node(current()).name;
    return symbol > 0 ? symbol : 0;
}

int QelBinaryIterator::curNamespaceID() const {
    const int symbol = tree().node(current()).nameSpace;
    return symbol > 0 ? symbol : 0;
}

std::string QelBinaryIterator::curType() const {
    const QelMessageTree::Node& node = tree().node(current());
    if (node.type == 0)
        return {};
    const std::string nameSpace = keyPart(tree(), node.typeNameSpace, QelDefaultMap::findNSID);
    const std::string type = keyPart(tree(), node.type, QelDefaultMap::findTypeID);
    return nameSpace.empty() ? type : nameSpace + ':' + type;
}

int QelBinaryIterator::setNamespace(const std::string& ns) {
    const Index node = current();
    tree().setNameSpace(node, tree().intern(QelNameKind::nameSpace, ns));
    return 0;
}

int QelBinaryIterator::setNamespace(int ns) {
    const Index node = current();
    if (ns < 0)
        return -1;
    tree().setNameSpace(node, ns);
    return 0;
}

int QelBinaryIterator::saveNamespace(const std::string& ns) {
    current();
    m_savedNamespace = {0, ns};
    return 0;
}

int QelBinaryIterator::saveNamespace(int ns) {
    current();
    if (ns < 0)
        return -1;
    m_savedNamespace = {ns, {}};
    return 0;
}

int QelBinaryIterator::setComplexType(const std::string& ns, const std::string& type) {
    const Index node = current();
    const int nameSpace = tree().intern(QelNameKind::nameSpace, ns);
    tree().setType(node, nameSpace, tree().intern(QelNameKind::type, type));
    return 0;
}

int QelBinaryIterator::setComplexType(int ns, int type) {
    const Index node = current();
    if (ns < 0 || type < 0)
        return -1;
    tree().setType(node, ns, type);
    return 0;
}

// ------------------------------------------------------------------------------------------------------ children

/// Appends a child with this name. Its namespace is the saved one, if any.
QelBinaryIterator::Index QelBinaryIterator::append(int symbol) {
    const Index parent = current();
    const int nameSpace =
        m_savedNamespace.id != 0 ? m_savedNamespace.id : tree().intern(QelNameKind::nameSpace, m_savedNamespace.name);
    return tree().appendChild(parent, symbol, nameSpace);
}

QelBinaryIterator::Index QelBinaryIterator::append(const std::string& name) {
    current();
    return append(tree().intern(QelNameKind::element, name));
}

int QelBinaryIterator::newChild(const std::string& name) {
    return moveTo(append(name));
}

int QelBinaryIterator::newChild(int id) {
    QEL_CHECK(id > 0, sourceName);
    return moveTo(append(id));
}

int QelBinaryIterator::putChild(const std::string& name) {
    append(name);
    return 0;
}

int QelBinaryIterator::putChild(int id) {
    if (id <= 0)
        return -1;
    append(id);
    return 0;
}

int QelBinaryIterator::deleteFromChild() {
    const Index node = current();
    if (node == root)
        return -1;
    seekUp();
    tree().remove(node);
    return 0;
}

int QelBinaryIterator::deleteChild(int id) {
    const Index node = child(id);
    if (node == none)
        return -1;
    tree().remove(node);
    return 0;
}

int QelBinaryIterator::copyToChild(const QelMessageIterator* from) {
    const auto* const source = dynamic_cast<const QelBinaryIterator*>(from);
    if (!source)
        return -1;
    tree().copyToChild(current(), source->tree(), source->current());
    return 0;
}

// ---------------------------------------------------------------------------------------------------------- forms

int QelBinaryIterator::flatten(char* buf, int& len) const {
    const Index node = current();
    const QelEnvelope* const envelope = node == root ? &m_message->envelope() : nullptr;
    std::size_t size = 0;
    const int result = buf ? QelBinaryCodec::write(tree(), node, envelope, buf, size)
                           : QelBinaryCodec::measure(tree(), node, envelope, size);
    if (result != 0)
        return -1;
    len = static_cast<int>(size);
    return buf ? 0 : -2;
}

int QelBinaryIterator::serializeFromChild(char** buf, int* len) const {
    int size = 0;
    if (!buf || !len || flatten(nullptr, size) != -2)
        return -1;
    auto* const memory = static_cast<char*>(std::malloc(static_cast<std::size_t>(size)));
    if (!memory)
        return -1;
    *buf = memory;
    return flatten(memory, *len);
}

int QelBinaryIterator::serialize(char** buf, int* len, int format) const {
    current();
    return format == 0 ? QelBinaryIterator(m_message).serializeFromChild(buf, len) : -1;
}

int QelBinaryIterator::deserializeToChild(const char* buf, int len) {
    const Index parent = current();
    if (!buf || len < 0)
        return -1;
    return guardParse([&] { return QelBinaryCodec::readChild({buf, static_cast<std::size_t>(len)}, tree(), parent); });
}

char* QelBinaryIterator::toTextFromChild() const {
    std::string text;
    return QelTextCodec::writeElement(tree(), current(), text) == 0 ? mallocText(text) : nullptr;
}

int QelBinaryIterator::fromTextToChild(const char* text) {
    const Index parent = current();
    return text ? guardParse([&] { return QelTextCodec::readChild(text, tree(), parent); }) : -1;
}

char* QelBinaryIterator::toText() const {
    current();
    return m_message->toTextEx(0, {}, 0);
}

int QelBinaryIterator::getValueXML(std::string& markup, int id) const {
    Index node = none;
    return find(id, node) ? QelTextCodec::writeContent(tree(), node, markup) : -1;
}

int QelBinaryIterator::putValueXML(const std::string& markup, int id) {
    const Index parent = current();
    if (id < 0)
        return -1;
    const auto replaceContent = [&](Index node) {
        return guardParse([&] { return QelTextCodec::replaceContent(markup, tree(), node); });
    };
    if (isIdEmpty(id))
        return replaceContent(parent);
    const Index node = append(id);
    const int result = replaceContent(node);
    if (result != 0)
        tree().remove(node);
    return result;
}

} // namespace Qel
