#include "QelMessage/QelLimits.h"

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinaryCodec.h"
#include "QelMessage/QelTextCodec.h"
#include "QelMessage/QelXmlMarkup.h"
#include "support/BinaryBuffer.h"

namespace Qel {
namespace {

using testing::HasSubstr;
using TestSupport::sealedBuffer;

constexpr auto root = QelMessageTree::root;
constexpr int name = 1026;

std::string repeated(std::string_view part, std::size_t times) {
    std::string all;
    all.reserve(part.size() * times);
    for (; times > 0; --times)
        all += part;
    return all;
}

int writeText(const QelMessageTree& tree) {
    std::string text;
    return QelTextCodec::writeMessage(tree, {}, text);
}

int writeElementText(const QelMessageTree& tree, QelMessageTree::Index element) {
    std::string text;
    return QelTextCodec::writeElement(tree, element, text);
}

int measureMessage(const QelMessageTree& tree) {
    const QelEnvelope envelope;
    std::size_t size = 0;
    return QelBinaryCodec::measure(tree, root, &envelope, size);
}

int measureElement(const QelMessageTree& tree, QelMessageTree::Index element) {
    std::size_t size = 0;
    return QelBinaryCodec::measure(tree, element, nullptr, size);
}

/// The error message of a failed parse of a whole message; empty on success.
std::string textFailure(const std::string& text) {
    QelMessageTree tree;
    QelEnvelope envelope;
    return QelTextCodec::readMessage(text, tree, envelope) == 0 ? "" : getErrorMessage();
}
std::string binaryFailure(const std::string& bytes) {
    QelMessageTree tree;
    QelEnvelope envelope;
    return QelBinaryCodec::readMessage(bytes, tree, envelope) == 0 ? "" : getErrorMessage();
}

// --------------------------------------------------------------------------------------------------------- elements

TEST(QelLimitsTest, RejectsTextWithTooManyElements) {
    const std::string most = "<message>" + repeated("<a/>", QelLimits::elements - 1);
    EXPECT_EQ(QelXmlMarkup::findFault(most + "</message>"), std::nullopt);
    EXPECT_THAT(textFailure(most + "<b c='>'/></message>"), HasSubstr("more than 4194304 elements"));
}

TEST(QelLimitsTest, OnlyStartTagsCountAsElements) {
    const std::string others = repeated("<!--<a/>--><![CDATA[<a/>]]><?p <a/>?></a>", 5);
    const std::string most = "<message a='<a/>>'>" + others + repeated("<a/>", QelLimits::elements - 1);
    EXPECT_EQ(QelXmlMarkup::findFault(most + "</message>"), std::nullopt);
    EXPECT_NE(QelXmlMarkup::findFault(most + "<a/></message>"), std::nullopt);
}

TEST(QelLimitsTest, RejectsBinaryFormWithTooManyElements) {
    // The checksum is only compared after all elements have been counted.
    const auto corrupted = [](std::size_t elements) {
        std::string bytes = sealedBuffer(2, std::string("\0\x81", 2) + repeated("\x80\x02", elements - 1) + '\0');
        bytes[8] = static_cast<char>(~bytes[8]);
        return bytes;
    };
    EXPECT_THAT(binaryFailure(corrupted(QelLimits::elements)), HasSubstr("checksum mismatch"));
    EXPECT_THAT(binaryFailure(corrupted(QelLimits::elements + 1)), HasSubstr("too many elements"));
}

TEST(QelLimitsTest, TreeWithTooManyElementsIsNotWritten) {
    QelMessageTree tree;
    tree.reserve(QelLimits::elements, 0);
    for (std::size_t i = 1; i < QelLimits::elements; ++i)
        tree.appendChild(root, name, 0);
    EXPECT_EQ(measureMessage(tree), 0) << getErrorMessage();

    const auto last = tree.appendChild(root, name, 0);
    for (const auto write : {writeText, measureMessage}) {
        EXPECT_NE(write(tree), 0);
        EXPECT_EQ(getErrorMessage(), "the tree has more than 4194304 elements");
    }
    EXPECT_EQ(measureElement(tree, last), 0);
    EXPECT_EQ(writeElementText(tree, last), 0);
}

// ------------------------------------------------------------------------------------------------------------ depth

/// An encoded element counts as a level, since it is read as a child of another one.
class LoneElementTest : public testing::Test {
protected:
    LoneElementTest() : m_top(m_tree.appendChild(root, name, 0)), m_deepest(m_top) {
        for (unsigned depth = 1; depth < QelLimits::depth; ++depth)
            deepen();
    }
    void deepen() { m_deepest = m_tree.appendChild(m_deepest, name, 0); }

    QelMessageTree m_tree;
    QelMessageTree::Index m_top;
    QelMessageTree::Index m_deepest;
};

TEST_F(LoneElementTest, IsWrittenUpToTheDepthLimit) {
    EXPECT_EQ(writeElementText(m_tree, m_top), 0);
    EXPECT_EQ(measureElement(m_tree, m_top), 0);
    deepen();
    EXPECT_NE(writeElementText(m_tree, m_top), 0);
    EXPECT_EQ(getErrorMessage(), "the tree is deeper than 256 elements");
    EXPECT_NE(measureElement(m_tree, m_top), 0);
    EXPECT_EQ(getErrorMessage(), "the tree is deeper than 256 elements");
}

TEST_F(LoneElementTest, IsReadUpToTheDepthLimit) {
    const auto text = [](unsigned depth) { return repeated("<a>", depth) + repeated("</a>", depth); };
    const auto bytes = [](unsigned depth) {
        return sealedBuffer(1, repeated("\x81\x02", depth - 1) + "\x80\x02" + std::string(depth - 1, '\0'));
    };
    QelMessageTree tree;
    EXPECT_EQ(QelTextCodec::readChild(text(QelLimits::depth), tree, root), 0);
    EXPECT_EQ(QelBinaryCodec::readChild(bytes(QelLimits::depth), tree, root), 0);
    EXPECT_NE(QelTextCodec::readChild(text(QelLimits::depth + 1), tree, root), 0);
    EXPECT_THAT(getErrorMessage(), HasSubstr("nested deeper than 256"));
    EXPECT_NE(QelBinaryCodec::readChild(bytes(QelLimits::depth + 1), tree, root), 0);
    EXPECT_THAT(getErrorMessage(), HasSubstr("nested too deeply"));
}

// ------------------------------------------------------------------------------------------------- bytes, attributes

/// A message with a size of `size` bytes, measured by `sizeOf`.
template <class SizeOf> QelMessageTree treeOfSize(std::size_t size, const SizeOf& sizeOf) {
    QelMessageTree tree;
    // The length of this value has an encoding of the same size as that of the result.
    constexpr std::size_t start = QelLimits::messageBytes / 2;
    tree.setValue(root, std::string(start, 'x'));
    tree.setValue(root, std::string(size - sizeOf(tree) + start, 'x'));
    return tree;
}

TEST(QelLimitsTest, LongestMessageIsWrittenAsText) {
    std::string text;
    const auto sizeOf = [&](const QelMessageTree& tree) {
        EXPECT_EQ(QelTextCodec::writeMessage(tree, {}, text), 0);
        return text.size();
    };
    EXPECT_EQ(sizeOf(treeOfSize(QelLimits::messageBytes, sizeOf)), QelLimits::messageBytes);
    EXPECT_EQ(textFailure(text), "");
    EXPECT_NE(writeText(treeOfSize(QelLimits::messageBytes + 1, sizeOf)), 0);
    EXPECT_EQ(getErrorMessage(), "the message is longer than 67108864 bytes");
}

TEST(QelLimitsTest, LongestMessageIsWrittenInBinaryForm) {
    const QelEnvelope envelope;
    const auto sizeOf = [&](const QelMessageTree& tree) {
        std::size_t size = 0;
        EXPECT_EQ(QelBinaryCodec::measure(tree, root, &envelope, size), 0);
        return size;
    };
    const QelMessageTree longest = treeOfSize(QelLimits::messageBytes, sizeOf);
    std::string bytes(QelLimits::messageBytes, '\0');
    std::size_t size = 0;
    EXPECT_EQ(QelBinaryCodec::write(longest, root, &envelope, bytes.data(), size), 0);
    EXPECT_EQ(size, QelLimits::messageBytes);
    EXPECT_EQ(binaryFailure(bytes), "");
    EXPECT_NE(measureMessage(treeOfSize(QelLimits::messageBytes + 1, sizeOf)), 0);
    EXPECT_EQ(getErrorMessage(), "the message is longer than 67108864 bytes");
}

TEST(QelLimitsTest, BinaryFormIsReadUpToTheAttributeLimit) {
    const auto withAttributes = [](unsigned count) {
        std::string body = "\x90\x02" + std::string(1, static_cast<char>(count));
        for (unsigned number = 0; number < count; ++number)
            body += std::string{static_cast<char>(number << 1 | 1), '\x02', 'n', static_cast<char>('0' + number), '\0'};
        return sealedBuffer(1, body);
    };
    EXPECT_EQ(binaryFailure(withAttributes(QelLimits::attributes)), "");
    EXPECT_EQ(binaryFailure(withAttributes(QelLimits::attributes + 1)), "byte 14: too many attributes");
}

} // namespace
} // namespace Qel
