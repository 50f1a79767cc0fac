#include <algorithm>
#include <cstring>
#include <limits>
#include <optional>
#include <vector>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinaryCodec.h"
#include "QelMessage/QelBinaryFormat.h"
#include "QelMessage/QelDetachedElement.h"
#include "QelMessage/QelLimits.h"
#include "QelMessage/QelNames.h"

namespace Qel::QelBinaryCodec {

using namespace QelBinaryFormat;

namespace {

using Index = QelMessageTree::Index;
using Symbol = QelMessageTree::Symbol;

/// A name in the buffer.
struct WireName {
    std::uint32_t value = 0; ///< an ID, or the name's number in the buffer
    bool isNumber = false;
    std::string_view text; ///< only for a name with a number

    [[nodiscard]] bool isNone() const noexcept { return !isNumber && value == 0; }
};

/// Extracts the parts of a buffer in order.
class Input {
public:
    Input(std::string_view bytes, std::size_t start) noexcept : m_bytes(bytes), m_offset(start), m_item(start) {}

    /// Reports an error in the part that was extracted last. Always returns false.
    [[nodiscard]] bool fail(const char* what) const {
        setErrorMessage("byte %zu: %s", m_item, what);
        return false;
    }

    [[nodiscard]] bool end() {
        m_item = m_offset;
        return m_offset == m_bytes.size() || fail("trailing bytes after the message");
    }

    [[nodiscard]] bool byte(Byte& value) {
        m_item = m_offset;
        if (m_offset == m_bytes.size())
            return fail("unexpected end of the message");
        value = static_cast<Byte>(m_bytes[m_offset++]);
        return true;
    }

    [[nodiscard]] bool varint(std::uint32_t& number) {
        const std::size_t start = m_offset;
        std::uint64_t result = 0;
        Byte part = varintContinues;
        for (unsigned shift = 0; part & varintContinues; shift += varintBits) {
            if (!byte(part))
                return false;
            result |= std::uint64_t{part & (varintContinues - 1u)} << shift;
            const bool isPadded = part == 0 && shift != 0;
            if (isPadded || result > std::numeric_limits<std::uint32_t>::max() || shift > 4 * varintBits)
                return fail("malformed number");
        }
        number = static_cast<std::uint32_t>(result);
        m_item = start;
        return true;
    }

    [[nodiscard]] bool text(std::string_view& text) {
        std::uint32_t size = 0;
        if (!varint(size))
            return false;
        if (size > m_bytes.size() - m_offset)
            return fail("a string extends past the end of the message");
        text = m_bytes.substr(m_offset, size);
        m_offset += size;
        return true;
    }

    [[nodiscard]] bool name(WireName& name) {
        std::uint32_t coded = 0;
        if (!varint(coded))
            return false;
        name = WireName{coded >> 1, (coded & QelBinaryFormat::isNumber) != 0, {}};
        if (!name.isNumber)
            return true;
        if (name.value > m_names.size())
            return fail("undefined name number");
        if (name.value == m_names.size()) {
            std::string_view added;
            if (!text(added))
                return false;
            m_names.push_back(added);
        }
        name.text = m_names[name.value];
        return true;
    }

private:
    std::string_view m_bytes;
    std::size_t m_offset;
    std::size_t m_item;                    // start of the part that was extracted last
    std::vector<std::string_view> m_names; // indexed by number
};

/// Decodes a buffer and passes its elements to a handler.
template <class Handler> class Decoder {
public:
    Decoder(Input& input, Handler& handler) : m_input(input), m_handler(handler) {}

    [[nodiscard]] bool envelope(QelEnvelope& envelope) {
        Byte head = 0;
        if (!m_input.byte(head))
            return false;
        if (head & ~Envelope::known)
            return m_input.fail("invalid envelope head");
        return (!(head & Envelope::hasTime) || time(envelope)) &&
               (!(head & Envelope::hasRequestId) || field(envelope.requestId)) &&
               (!(head & Envelope::hasSender) || field(envelope.sender)) &&
               (!(head & Envelope::hasSession) || field(envelope.session)) &&
               (!(head & Envelope::hasOrigin) || field(envelope.origin)) &&
               (!(head & Envelope::hasSubscriptions) || subscriptions(envelope));
    }

    [[nodiscard]] bool subtree(bool isRoot) {
        unsigned depth = isRoot ? 0 : 1;
        Byte head = 0;
        if (!m_input.byte(head) || !element(head, !isRoot))
            return false;
        unsigned open = 0; // number of elements whose children are being read
        for (;;) {
            if (head & Element::hasChildren) {
                if (++depth > QelLimits::depth)
                    return m_input.fail("elements are nested too deeply");
                ++open;
            } else {
                m_handler.close();
                if (open == 0)
                    return true;
            }
            const bool isFirst = (head & Element::hasChildren) != 0;
            if (!m_input.byte(head))
                return false;
            if (head == Element::endOfChildren && isFirst)
                return m_input.fail("an element flagged as having children has none");
            while (head == Element::endOfChildren) {
                m_handler.close();
                --depth;
                if (--open == 0)
                    return true;
                if (!m_input.byte(head))
                    return false;
            }
            if (!element(head, true))
                return false;
        }
    }

private:
    [[nodiscard]] bool time(QelEnvelope& envelope) {
        std::uint64_t coded = 0;
        for (unsigned i = 0; i < timeSize; ++i) {
            Byte part = 0;
            if (!m_input.byte(part))
                return false;
            coded |= std::uint64_t{part} << (8 * i);
        }
        const auto seconds = static_cast<std::int64_t>(coded);
        if (seconds < std::numeric_limits<long>::min() || seconds > std::numeric_limits<long>::max())
            return m_input.fail("time out of range");
        envelope.time = static_cast<long>(seconds);
        return true;
    }

    [[nodiscard]] bool field(std::string& value) {
        std::string_view text;
        if (!m_input.text(text))
            return false;
        value = text;
        return true;
    }

    [[nodiscard]] bool subscriptions(QelEnvelope& envelope) {
        std::uint32_t count = 0;
        if (!m_input.varint(count))
            return false;
        for (; count != 0; --count) {
            std::string_view name;
            if (!m_input.text(name))
                return false;
            if (!QelEnvelope::isSubscription(name))
                return m_input.fail("invalid subscription name");
            envelope.subscriptions.emplace_back(name);
        }
        return true;
    }

    [[nodiscard]] bool element(Byte head, bool isNamed) {
        if (!(head & Element::isElement) || (head & ~Element::known))
            return m_input.fail("invalid element head");
        if (++m_elements > QelLimits::elements)
            return m_input.fail("too many elements");
        WireName elementName;
        if (isNamed && !name(elementName, "an element without a name"))
            return false;
        m_handler.open(elementName);
        if (head & Element::changesNameSpace) {
            WireName nameSpace;
            if (!m_input.name(nameSpace))
                return false;
            m_handler.nameSpace(nameSpace);
        }
        if (head & Element::hasType) {
            WireName nameSpace;
            WireName type;
            if (!m_input.name(nameSpace) || !name(type, "a type without a name"))
                return false;
            m_handler.type(nameSpace, type);
        }
        if ((head & Element::hasAttributes) && !attributes())
            return false;
        if (head & Element::hasValue) {
            std::string_view value;
            if (!m_input.text(value))
                return false;
            m_handler.value(value);
        }
        return true;
    }

    [[nodiscard]] bool attributes() {
        std::uint32_t count = 0;
        if (!m_input.varint(count))
            return false;
        if (count > QelLimits::attributes)
            return m_input.fail("too many attributes");
        for (; count != 0; --count) {
            WireName attributeName;
            std::string_view value;
            if (!name(attributeName, "an attribute without a name"))
                return false;
            if (!m_handler.attribute(attributeName))
                return m_input.fail("duplicate attribute");
            if (!m_input.text(value))
                return false;
            m_handler.attributeValue(value);
        }
        return true;
    }

    [[nodiscard]] bool name(WireName& name, const char* failure) {
        return m_input.name(name) && (!name.isNone() || m_input.fail(failure));
    }

    Input& m_input;
    Handler& m_handler;
    std::size_t m_elements = 0;
};

/// Counts the elements and attributes of a buffer and rejects duplicate attributes.
class Counter {
public:
    void open(const WireName&) noexcept {
        ++elements;
        m_attributes.clear();
    }
    void nameSpace(const WireName&) noexcept {}
    void type(const WireName&, const WireName&) noexcept {}
    /// Returns false if the element already has an attribute with this name.
    [[nodiscard]] bool attribute(const WireName& name) {
        ++attributes;
        // A name that has an ID denotes the same attribute as the ID.
        const int id = name.isNumber ? QelNames::attributeID(name.text) : static_cast<int>(name.value);
        const AttributeName added{id, id == 0 ? name.text : std::string_view()};
        if (std::ranges::find(m_attributes, added) != m_attributes.end())
            return false;
        m_attributes.push_back(added);
        return true;
    }
    void attributeValue(std::string_view) noexcept {}
    void value(std::string_view) noexcept {}
    void close() noexcept {}

    std::size_t elements = 0;
    std::size_t attributes = 0;

private:
    struct AttributeName {
        int id;
        std::string_view text; // only for a name without an ID

        bool operator==(const AttributeName&) const = default;
    };

    std::vector<AttributeName> m_attributes; // of the current element
};

/// Builds the elements of a validated buffer. If memory runs out, all of them are removed again. With `AsViews`, values
/// are views into the buffer instead of copies.
template <bool AsViews> class Builder {
public:
    /// The first element becomes a child of `parent`, attached when it is complete, unless reuse() selects an existing
    /// element.
    Builder(QelMessageTree& tree, Index parent) : m_tree(tree), m_current(parent), m_top(tree) {}

    /// Decodes the first element into the existing `element`, which keeps its name.
    void reuse(Index element) noexcept { m_reused = element; }

    void open(const WireName& name) {
        if (m_depth++ == 0) {
            m_current = m_reused ? *m_reused : m_top.create(m_current, topName(name), 0);
            return;
        }
        m_current = m_tree.appendChild(m_current, symbol(QelNameKind::element, name),
                                       m_tree.share(m_tree.node(m_current).nameSpace));
    }
    void nameSpace(const WireName& name) { m_tree.setNameSpace(m_current, symbol(QelNameKind::nameSpace, name)); }
    void type(const WireName& nameSpace, const WireName& type) {
        const Symbol first = symbol(QelNameKind::nameSpace, nameSpace);
        m_tree.setType(m_current, first, symbol(QelNameKind::type, type));
    }
    [[nodiscard]] bool attribute(const WireName& name) {
        m_attribute = symbol(QelNameKind::attribute, name);
        return true;
    }
    void attributeValue(std::string_view value) {
        static_cast<void>(AsViews ? m_tree.viewAttribute(m_current, m_attribute, value)
                                  : m_tree.setAttribute(m_current, m_attribute, value));
    }
    void value(std::string_view value) {
        if constexpr (AsViews)
            m_tree.viewValue(m_current, value);
        else
            m_tree.setValue(m_current, value);
    }
    void close() {
        if (--m_depth != 0)
            m_current = m_tree.node(m_current).parent;
        else if (!m_reused)
            m_top.attach();
    }

private:
    /// The root of a message has no name; as a child it is named `rootAsChild`.
    Symbol topName(const WireName& name) {
        return name.isNone() ? m_tree.intern(QelNameKind::element, QelMessageTree::rootAsChild)
                             : symbol(QelNameKind::element, name);
    }
    Symbol symbol(QelNameKind kind, const WireName& name) {
        return name.isNumber ? m_tree.intern(kind, name.text) : static_cast<Symbol>(name.value);
    }

    QelMessageTree& m_tree;
    Index m_current;
    QelDetachedElement m_top;
    std::optional<Index> m_reused;
    Symbol m_attribute = 0; // name of the attribute whose value follows
    unsigned m_depth = 0;
};

/// Validates the head of a buffer and returns its content type.
bool readHead(std::string_view bytes, Byte& content) {
    const Input input(bytes, 0);
    if (bytes.size() > QelLimits::messageBytes)
        return input.fail("the message is too long");
    if (!looksBinary(bytes))
        return input.fail("not a message in binary form");
    if (bytes.size() < headSize)
        return Input(bytes, bytes.size()).fail("unexpected end of the message");
    if (static_cast<Byte>(bytes[versionOffset]) != version)
        return Input(bytes, versionOffset).fail("unsupported version of the binary form");
    const auto found = static_cast<Byte>(bytes[contentOffset]);
    if ((found != oneElement && found != wholeMessage) || bytes[contentOffset + 1] != 0 ||
        bytes[contentOffset + 2] != 0)
        return Input(bytes, contentOffset).fail("neither an element nor a message");
    content = found;
    return true;
}

/// Reads the part of a buffer that follows its head.
template <class Handler>
bool readBody(std::string_view bytes, bool isMessage, QelEnvelope& envelope, Handler& handler) {
    Input input(bytes, headSize);
    Decoder<Handler> decoder(input, handler);
    if ((isMessage && !decoder.envelope(envelope)) || !decoder.subtree(isMessage))
        return false;
    return input.end();
}

/// Validates a whole buffer and counts its elements.
bool check(std::string_view bytes, Byte& content, Counter& counter) {
    QelEnvelope ignored;
    if (!readHead(bytes, content) || !readBody(bytes, content == wholeMessage, ignored, counter))
        return false;
    if (loadWord(bytes.data() + checksumOffset) != checksum(bytes))
        return Input(bytes, checksumOffset).fail("checksum mismatch: the message is corrupted");
    return true;
}

} // namespace

int readMessage(std::string_view bytes, QelMessageTree& tree, QelEnvelope& envelope) {
    Byte content = 0;
    Counter counter;
    if (!check(bytes, content, counter))
        return -1;
    tree.reserve(counter.elements, counter.attributes);
    char* const buffer = tree.createBuffer(bytes.size());
    std::memcpy(buffer, bytes.data(), bytes.size());
    Builder<true> builder(tree, QelMessageTree::root);
    if (content == wholeMessage) {
        builder.reuse(QelMessageTree::root);
        envelope = QelEnvelope{};
    }
    return readBody({buffer, bytes.size()}, content == wholeMessage, envelope, builder) ? 0 : -1;
}

int readChild(std::string_view bytes, QelMessageTree& tree, Index parent) {
    Byte content = 0;
    Counter counter;
    if (!check(bytes, content, counter))
        return -1;
    tree.reserve(counter.elements, counter.attributes);
    QelEnvelope ignored;
    Builder<false> builder(tree, parent);
    return readBody(bytes, content == wholeMessage, ignored, builder) ? 0 : -1;
}

} // namespace Qel::QelBinaryCodec
