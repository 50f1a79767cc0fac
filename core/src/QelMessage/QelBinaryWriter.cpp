#include <bit>
#include <cstring>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinaryCodec.h"
#include "QelMessage/QelBinaryFormat.h"
#include "QelMessage/QelLimits.h"

namespace Qel::QelBinaryCodec {

using namespace QelBinaryFormat;

namespace {

using Index = QelMessageTree::Index;
using Symbol = QelMessageTree::Symbol;

constexpr unsigned bit(bool isSet, Byte value) noexcept {
    return isSet ? value : 0u;
}

class CountingSink {
public:
    void byte(Byte) noexcept { ++m_size; }
    void varint(std::uint32_t number) noexcept {
        m_size += number == 0 ? 1 : (static_cast<unsigned>(std::bit_width(number)) + varintBits - 1) / varintBits;
    }
    void bytes(std::string_view text) noexcept { m_size += text.size(); }
    [[nodiscard]] std::uint64_t size() const noexcept { return m_size; }

private:
    std::uint64_t m_size = 0;
};

class BufferSink {
public:
    explicit BufferSink(char* buffer) noexcept : m_next(buffer) {}
    void byte(Byte value) noexcept { *m_next++ = static_cast<char>(value); }
    void varint(std::uint32_t number) noexcept {
        for (; number >= varintContinues; number >>= varintBits)
            byte(static_cast<Byte>(number | varintContinues));
        byte(static_cast<Byte>(number));
    }
    void bytes(std::string_view text) noexcept {
        if (!text.empty())
            std::memcpy(m_next, text.data(), text.size());
        m_next += text.size();
    }
    [[nodiscard]] char* end() const noexcept { return m_next; }

private:
    char* m_next;
};

/// Result of a pass.
enum class Outcome : Byte { complete, tooDeep, tooManyElements };

/// One pass over a subtree. Measuring and writing share this code, so they cannot disagree.
template <class Sink> class Encoder {
public:
    Encoder(const QelMessageTree& tree, Sink& sink) : m_tree(tree), m_sink(sink) { tree.names().startNumbering(); }

    Outcome subtree(Index top, bool isRoot) {
        Index node = top;
        unsigned depth = isRoot ? 0 : 1;
        std::size_t elements = 1;
        element(node, 0, !isRoot);
        for (;;) {
            if (const Index child = m_tree.node(node).firstChild; child != QelMessageTree::none) {
                if (++depth > QelLimits::depth)
                    return Outcome::tooDeep;
                node = child;
            } else {
                while (node != top && m_tree.node(node).next == QelMessageTree::none) {
                    node = m_tree.node(node).parent;
                    m_sink.byte(Element::endOfChildren);
                    --depth;
                }
                if (node == top)
                    return Outcome::complete;
                node = m_tree.node(node).next;
            }
            if (++elements > QelLimits::elements)
                return Outcome::tooManyElements;
            element(node, m_tree.node(m_tree.node(node).parent).nameSpace, true);
        }
    }

    void envelope(const QelEnvelope& envelope) {
        const unsigned head = bit(envelope.time.has_value(), Envelope::hasTime) |
                              bit(!envelope.requestId.empty(), Envelope::hasRequestId) |
                              bit(!envelope.sender.empty(), Envelope::hasSender) |
                              bit(!envelope.session.empty(), Envelope::hasSession) |
                              bit(!envelope.origin.empty(), Envelope::hasOrigin) |
                              bit(!envelope.subscriptions.empty(), Envelope::hasSubscriptions);
        m_sink.byte(static_cast<Byte>(head));
        if (envelope.time) {
            const auto time = static_cast<std::uint64_t>(std::int64_t{*envelope.time});
            for (unsigned i = 0; i < timeSize; ++i)
                m_sink.byte(static_cast<Byte>(time >> (8 * i)));
        }
        for (const std::string* field : {&envelope.requestId, &envelope.sender, &envelope.session, &envelope.origin})
            if (!field->empty())
                text(*field);
        if (!envelope.subscriptions.empty()) {
            m_sink.varint(static_cast<std::uint32_t>(envelope.subscriptions.size()));
            for (const std::string& subscription : envelope.subscriptions)
                text(subscription);
        }
    }

private:
    void element(Index index, Symbol inherited, bool isNamed) {
        const QelMessageTree::Node& node = m_tree.node(index);
        using namespace Element;
        const unsigned head =
            isElement | bit(node.nameSpace != inherited, changesNameSpace) | bit(node.type != 0, hasType) |
            bit(node.firstAttribute != QelMessageTree::none, hasAttributes) | bit(!node.value.empty(), hasValue) |
            bit(node.firstChild != QelMessageTree::none, hasChildren);
        m_sink.byte(static_cast<Byte>(head));
        if (isNamed)
            name(node.name);
        if (head & changesNameSpace)
            name(node.nameSpace);
        if (head & hasType) {
            name(node.typeNameSpace);
            name(node.type);
        }
        if (head & hasAttributes)
            attributes(node.firstAttribute);
        if (head & hasValue)
            text(node.value.view());
    }

    void attributes(Index first) {
        std::uint32_t count = 0;
        for (Index each = first; each != QelMessageTree::none; each = m_tree.attribute(each).next)
            ++count;
        m_sink.varint(count);
        for (Index each = first; each != QelMessageTree::none; each = m_tree.attribute(each).next) {
            name(m_tree.attribute(each).name);
            text(m_tree.attribute(each).value.view());
        }
    }

    void name(Symbol symbol) {
        if (symbol >= 0)
            return m_sink.varint(static_cast<std::uint32_t>(symbol) << 1);
        const QelNameTable::Number number = m_tree.names().number(symbol);
        m_sink.varint(number.value << 1 | isNumber);
        if (number.isNew)
            text(m_tree.names().text(symbol));
    }

    void text(std::string_view bytes) {
        m_sink.varint(static_cast<std::uint32_t>(bytes.size()));
        m_sink.bytes(bytes);
    }

    const QelMessageTree& m_tree;
    Sink& m_sink;
};

template <class Sink>
Outcome encode(const QelMessageTree& tree, Index element, const QelEnvelope* envelope, Sink& sink) {
    Encoder<Sink> encoder(tree, sink);
    if (envelope)
        encoder.envelope(*envelope);
    return encoder.subtree(element, envelope != nullptr);
}

/// Checks the outcome of a pass whose body has `bodySize` bytes, and stores the size of the whole buffer.
int finish(Outcome outcome, std::uint64_t bodySize, std::size_t& size) {
    if (outcome == Outcome::tooDeep) {
        setErrorMessage("the tree is deeper than %u elements", QelLimits::depth);
        return -1;
    }
    if (outcome == Outcome::tooManyElements) {
        setErrorMessage("the tree has more than %zu elements", QelLimits::elements);
        return -1;
    }
    if (bodySize > QelLimits::messageBytes - headSize) {
        setErrorMessage("the message is longer than %zu bytes", QelLimits::messageBytes);
        return -1;
    }
    size = headSize + static_cast<std::size_t>(bodySize);
    return 0;
}

} // namespace

int measure(const QelMessageTree& tree, Index element, const QelEnvelope* envelope, std::size_t& size) {
    CountingSink sink;
    const Outcome outcome = encode(tree, element, envelope, sink);
    return finish(outcome, sink.size(), size);
}

int write(const QelMessageTree& tree, Index element, const QelEnvelope* envelope, char* buffer, std::size_t& size) {
    std::memcpy(buffer, magic.data(), magic.size());
    buffer[versionOffset] = static_cast<char>(version);
    buffer[contentOffset] = static_cast<char>(envelope ? wholeMessage : oneElement);
    buffer[contentOffset + 1] = buffer[contentOffset + 2] = 0;
    char* const body = buffer + headSize;
    BufferSink sink(body);
    const Outcome outcome = encode(tree, element, envelope, sink);
    if (finish(outcome, static_cast<std::uint64_t>(sink.end() - body), size) != 0)
        return -1;
    storeWord(buffer + checksumOffset, checksum({buffer, size}));
    return 0;
}

} // namespace Qel::QelBinaryCodec
