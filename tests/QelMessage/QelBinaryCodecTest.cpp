#include "QelMessage/QelBinaryCodec.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelLimits.h"
#include "support/AllocationCounter.h"
#include "support/BinaryBuffer.h"
#include "support/RandomTree.h"
#include "support/TreeComparer.h"

namespace Qel {
namespace {

using testing::HasSubstr;
using TestSupport::allocationsOf;
using TestSupport::describe;
using TestSupport::sealedBuffer;

std::string encode(const QelMessageTree& tree, QelMessageTree::Index element, const QelEnvelope* envelope) {
    std::size_t size = 0;
    EXPECT_EQ(QelBinaryCodec::measure(tree, element, envelope, size), 0);
    // A guard byte detects a write past the end.
    std::string bytes(size + 1, '\x5A');
    std::size_t written = 0;
    EXPECT_EQ(QelBinaryCodec::write(tree, element, envelope, bytes.data(), written), 0);
    EXPECT_EQ(written, size);
    EXPECT_EQ(bytes.back(), '\x5A');
    bytes.pop_back();
    return bytes;
}

std::string element(const std::string& body) {
    return sealedBuffer(1, body);
}
std::string message(const std::string& body) {
    return sealedBuffer(2, body);
}

/// The error message of a failed read; empty on success.
std::string failure(const std::string& bytes) {
    QelMessageTree tree;
    QelEnvelope envelope;
    if (QelBinaryCodec::readMessage(bytes, tree, envelope) == 0)
        return {};
    EXPECT_EQ(describe(tree).size(), 1U) << "a failed read adds no elements";
    return getErrorMessage();
}

TEST(QelBinaryCodecTest, ElementEncodingIsFixed) {
    QelMessageTree tree;
    const auto data = tree.appendChild(QelMessageTree::root, 1307, 292);
    tree.setType(data, 292, 117);
    const auto name = tree.appendChild(data, 1026, 292);
    tree.setValue(name, "ab");
    const auto foreign = tree.appendChild(data, tree.intern(QelNameKind::element, "log_level"), 0);
    EXPECT_TRUE(tree.setAttribute(foreign, 5, "v"));
    tree.appendChild(data, tree.intern(QelNameKind::element, "log_level"), 292);

    const std::string body("\x8D\xB6\x14\xC8\x04\xC8\x04\xEA\x01"
                           "\x82\x84\x10\x02"
                           "ab"
                           "\x94\x01\x09log_level\x00\x01\x0A\x01v"
                           "\x80\x01"
                           "\x00",
                           35);
    EXPECT_EQ(encode(tree, data, nullptr), element(body));
}

TEST(QelBinaryCodecTest, EnvelopeEncodingIsFixed) {
    QelEnvelope envelope;
    envelope.time = 1795167000;
    envelope.requestId = "r";
    envelope.sender = "se";
    envelope.session = "ses";
    envelope.origin = "o";
    envelope.subscriptions = {"a", "b"};
    const std::string body("\x3F\x18\x13\x00\x6B\x00\x00\x00\x00\x01r\x02se\x03ses\x01o\x02\x01"
                           "a\x01"
                           "b\x80",
                           26);
    EXPECT_EQ(encode(QelMessageTree(), QelMessageTree::root, &envelope), message(body));
}

TEST(QelBinaryCodecTest, ChecksumIsFixed) {
    EXPECT_EQ(QelBinaryCodec::checksum(element("\x80\x02")), 0x5994DC2CU);
    EXPECT_EQ(QelBinaryCodec::checksum(element("\x82\x02\x10sixteen and more")), 0x4406D91EU);
}

TEST(QelBinaryCodecTest, EnvelopeRoundTrips) {
    QelEnvelope envelope;
    envelope.time = -5;
    envelope.session = std::string("s\0x", 3);
    envelope.subscriptions = {"events_subscription"};
    const std::string bytes = encode(QelMessageTree(), QelMessageTree::root, &envelope);
    QelMessageTree tree;
    QelEnvelope read;
    read.origin = "forgotten";
    ASSERT_EQ(QelBinaryCodec::readMessage(bytes, tree, read), 0);
    EXPECT_EQ(read, envelope);
}

TEST(QelBinaryCodecTest, RandomTreesRoundTrip) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        QelMessageTree tree;
        TestSupport::RandomTree(seed).fill(tree, 40);
        const QelEnvelope envelope;
        const std::string bytes = encode(tree, QelMessageTree::root, &envelope);
        QelMessageTree read;
        QelEnvelope readEnvelope;
        ASSERT_EQ(QelBinaryCodec::readMessage(bytes, read, readEnvelope), 0) << seed << ": " << getErrorMessage();
        EXPECT_EQ(describe(read), describe(tree)) << seed;
        EXPECT_EQ(encode(read, QelMessageTree::root, &envelope), bytes) << seed;
    }
}

TEST(QelBinaryCodecTest, SubtreeReadAsChildIsEqual) {
    for (unsigned seed = 0; seed < 100; ++seed) {
        QelMessageTree tree;
        TestSupport::RandomTree(seed).fill(tree, 30);
        const auto top = tree.node(QelMessageTree::root).lastChild;
        QelMessageTree other;
        TestSupport::RandomTree(seed + 1).fill(other, 3);
        ASSERT_EQ(QelBinaryCodec::readChild(encode(tree, top, nullptr), other, QelMessageTree::root), 0);
        EXPECT_EQ(describe(other, other.node(QelMessageTree::root).lastChild), describe(tree, top)) << seed;
    }
}

TEST(QelBinaryCodecTest, EncodingDoesNotDependOnEditHistory) {
    QelMessageTree straight;
    straight.appendChild(QelMessageTree::root, straight.intern(QelNameKind::element, "a"), 0);
    straight.appendChild(QelMessageTree::root, straight.intern(QelNameKind::element, "b"), 0);
    QelMessageTree roundabout;
    const auto removed = roundabout.appendChild(QelMessageTree::root, roundabout.intern(QelNameKind::element, "b"), 0);
    roundabout.appendChild(QelMessageTree::root, roundabout.intern(QelNameKind::element, "a"), 0);
    roundabout.appendChild(QelMessageTree::root, roundabout.intern(QelNameKind::element, "b"), 0);
    roundabout.remove(removed);
    const QelEnvelope envelope;
    EXPECT_EQ(encode(straight, QelMessageTree::root, &envelope), encode(roundabout, QelMessageTree::root, &envelope));
}

TEST(QelBinaryCodecTest, StoredNameOfAnIdIsReadAsTheId) {
    QelMessageTree tree;
    QelEnvelope envelope;
    ASSERT_EQ(QelBinaryCodec::readMessage(element("\x80\x01\x04name"), tree, envelope), 0) << getErrorMessage();
    EXPECT_EQ(tree.node(tree.node(QelMessageTree::root).firstChild).name, 1026);
}

TEST(QelBinaryCodecTest, DistinguishesBinaryFormFromText) {
    EXPECT_TRUE(QelBinaryCodec::looksBinary(element("\x80\x02")));
    EXPECT_FALSE(QelBinaryCodec::looksBinary("<message/>"));
    EXPECT_FALSE(QelBinaryCodec::looksBinary("\xAB"));
    EXPECT_FALSE(QelBinaryCodec::looksBinary(""));
}

// -------------------------------------------------------------------------------------------------- malformed input

TEST(QelBinaryCodecTest, RejectsEveryTruncation) {
    QelMessageTree tree;
    TestSupport::RandomTree(1).fill(tree, 20);
    QelEnvelope envelope;
    envelope.time = 1;
    envelope.subscriptions = {"a"};
    const std::string bytes = encode(tree, QelMessageTree::root, &envelope);
    for (std::size_t size = 0; size < bytes.size(); ++size)
        EXPECT_THAT(failure(bytes.substr(0, size)), HasSubstr("byte ")) << size;
}

TEST(QelBinaryCodecTest, RejectsEveryBitFlip) {
    QelMessageTree tree;
    TestSupport::RandomTree(2).fill(tree, 20);
    const QelEnvelope envelope;
    std::string bytes = encode(tree, QelMessageTree::root, &envelope);
    ASSERT_EQ(failure(bytes), "");
    for (std::size_t bit = 0; bit < 8 * bytes.size(); ++bit) {
        const auto flip = [&] { bytes[bit / 8] = static_cast<char>(bytes[bit / 8] ^ (1 << bit % 8)); };
        flip();
        EXPECT_THAT(failure(bytes), HasSubstr("byte ")) << bit;
        flip();
    }
}

TEST(QelBinaryCodecTest, RandomBytesAreHarmless) {
    TestSupport::RandomTree random(3);
    for (int i = 0; i < 20000; ++i)
        static_cast<void>(failure(sealedBuffer(static_cast<char>(1 + random.below(2)), random.bytes(40))));
}

TEST(QelBinaryCodecTest, ErrorMessageContainsTheByteOffset) {
    EXPECT_EQ(failure(""), "byte 0: not a message in binary form");
    EXPECT_EQ(failure("<message/>"), "byte 0: not a message in binary form");
    EXPECT_EQ(failure("\xABQEL\x01\x01"), "byte 6: unexpected end of the message");
    EXPECT_EQ(failure(element("")), "byte 12: unexpected end of the message");
    EXPECT_EQ(failure(element("\x81\x02")), "byte 14: unexpected end of the message");
    EXPECT_EQ(failure(element("\x80\x02\x80")), "byte 14: trailing bytes after the message");
    std::string version = element("\x80\x02");
    version[4] = 2;
    EXPECT_EQ(failure(version), "byte 4: unsupported version of the binary form");
    EXPECT_EQ(failure(sealedBuffer(3, "\x80\x02")), "byte 5: neither an element nor a message");
    std::string altered = element("\x82\x02\x01z");
    altered.back() = 'y';
    EXPECT_EQ(failure(altered), "byte 8: checksum mismatch: the message is corrupted");
}

TEST(QelBinaryCodecTest, RejectsMalformedElements) {
    EXPECT_EQ(failure(element("\x02\x02")), "byte 12: invalid element head");
    EXPECT_EQ(failure(element("\xC0\x02")), "byte 12: invalid element head");
    EXPECT_EQ(failure(element(std::string("\0", 1))), "byte 12: invalid element head");
    EXPECT_EQ(failure(element(std::string("\x80\0", 2))), "byte 13: an element without a name");
    EXPECT_EQ(failure(element(std::string("\x88\x02\0\0", 4))), "byte 15: a type without a name");
    EXPECT_EQ(failure(element(std::string("\x90\x02\x01\0\0", 5))), "byte 15: an attribute without a name");
    EXPECT_EQ(failure(element("\x90\x02\x41")), "byte 14: too many attributes");
    EXPECT_EQ(failure(element("\x80\x03\x01z")), "byte 13: undefined name number");
    EXPECT_EQ(failure(element(std::string("\x81\x02\0", 3))),
              "byte 14: an element flagged as having children has none");
    EXPECT_EQ(failure(element("\x82\x02\x7Fz")), "byte 14: a string extends past the end of the message");
}

TEST(QelBinaryCodecTest, RejectsNonzeroReservedBytes) {
    EXPECT_EQ(failure(sealedBuffer(1, "\x80\x02", std::string("\0\0", 2))), "");
    EXPECT_EQ(failure(sealedBuffer(1, "\x80\x02", std::string("\1\0", 2))), "byte 5: neither an element nor a message");
    EXPECT_EQ(failure(sealedBuffer(1, "\x80\x02", std::string("\0\1", 2))), "byte 5: neither an element nor a message");
}

TEST(QelBinaryCodecTest, RejectsDuplicateAttributes) {
    const auto withAttributes = [](const std::string& attributes) {
        return failure(element("\x90\x02\x02" + attributes));
    };
    const std::string id5("\x0A\0", 2);
    const std::string id6("\x0C\0", 2);
    EXPECT_EQ(withAttributes(id5 + id6), "");
    EXPECT_EQ(withAttributes(id5 + id5), "byte 17: duplicate attribute");

    const std::string log("\x01\x03log\0", 6);
    EXPECT_EQ(withAttributes(log + std::string("\x03\x03low\0", 6)), "");
    EXPECT_THAT(withAttributes(log + std::string("\x01\0", 2)), HasSubstr("duplicate attribute"));
    EXPECT_THAT(withAttributes(log + std::string("\x03\x03log\0", 6)), HasSubstr("duplicate attribute"))
        << "one name with two numbers";
    EXPECT_THAT(withAttributes(id5 + std::string("\x01\x02"
                                                 "a5\0",
                                                 5)),
                HasSubstr("duplicate attribute"))
        << "an ID and its name";
    EXPECT_EQ(failure(element("\x91\x02\x01" + id5 + "\x90\x02\x01" + id5 + std::string("\0", 1))), "")
        << "attributes of different elements may have the same name";
}

TEST(QelBinaryCodecTest, RejectsMalformedNumbers) {
    EXPECT_THAT(failure(element(std::string("\x80\x82\0", 3))), HasSubstr("malformed number"))
        << "not the shortest encoding";
    EXPECT_THAT(failure(element("\x80\xFF\xFF\xFF\xFF\x1F")), HasSubstr("malformed number")) << "33 bits";
    EXPECT_THAT(failure(element("\x80\xFF\xFF\xFF\xFF\xFF\x01")), HasSubstr("malformed number")) << "six bytes";
    EXPECT_EQ(failure(element("\x80\xFE\xFF\xFF\xFF\x0F")), "") << "the largest ID";
}

TEST(QelBinaryCodecTest, RejectsMalformedEnvelopes) {
    EXPECT_EQ(failure(message("\x40\x80")), "byte 12: invalid envelope head");
    EXPECT_EQ(failure(message("\x20\x01\x03"
                              "a b\x80")),
              "byte 14: invalid subscription name");
    EXPECT_EQ(failure(message(std::string("\x20\x01\0\x80", 4))), "byte 14: invalid subscription name");
    EXPECT_THAT(failure(message("\x20\xFF\xFF\xFF\xFF\x0F\x01z\x80")), HasSubstr("byte "));
}

TEST(QelBinaryCodecTest, RejectsTimeOutsideTheRangeOfLong) {
    const std::string bytes = message(std::string("\x01\0\0\0\0\0\x01\0\0\x80", 10));
    if constexpr (sizeof(long) == 4)
        EXPECT_THAT(failure(bytes), HasSubstr("time out of range"));
    else
        EXPECT_EQ(failure(bytes), "");
}

std::string nested(unsigned depth) {
    std::string body;
    for (unsigned i = 1; i < depth; ++i)
        body += "\x81\x02";
    return body + "\x80\x02" + std::string(depth - 1, '\0');
}

TEST(QelBinaryCodecTest, RejectsTooDeepInput) {
    EXPECT_EQ(failure(element(nested(QelLimits::depth))), "");
    EXPECT_THAT(failure(element(nested(QelLimits::depth + 1))), HasSubstr("nested too deeply"));
    EXPECT_THAT(failure(element(nested(1000000))), HasSubstr("nested too deeply"));
}

TEST(QelBinaryCodecTest, RejectsTooLongInput) {
    std::string bytes = element("\x80\x02");
    bytes.resize(QelLimits::messageBytes + 1);
    EXPECT_EQ(failure(bytes), "byte 0: the message is too long");
}

TEST(QelBinaryCodecTest, HugeCountAllocatesNothing) {
    const std::string attributes = element("\x90\x02\xFF\xFF\xFF\xFF\x0F");
    const std::string text = element("\x82\x02\xFF\xFF\xFF\xFF\x0F");
    QelMessageTree tree;
    QelEnvelope envelope;
    static_cast<void>(failure(text)); // allocates the memory of the error message
    EXPECT_LE(allocationsOf([&] { static_cast<void>(QelBinaryCodec::readMessage(attributes, tree, envelope)); }), 1U);
    EXPECT_LE(allocationsOf([&] { static_cast<void>(QelBinaryCodec::readMessage(text, tree, envelope)); }), 1U);
}

TEST(QelBinaryCodecTest, UnreadableTreeIsNotWritten) {
    QelMessageTree tree;
    QelMessageTree::Index node = QelMessageTree::root;
    for (unsigned i = 0; i < QelLimits::depth; ++i)
        node = tree.appendChild(node, 1026, 0);
    const QelEnvelope envelope;
    std::size_t size = 0;
    EXPECT_EQ(QelBinaryCodec::measure(tree, QelMessageTree::root, &envelope, size), 0);
    tree.appendChild(node, 1026, 0);
    EXPECT_NE(QelBinaryCodec::measure(tree, QelMessageTree::root, &envelope, size), 0);
    EXPECT_THAT(getErrorMessage(), HasSubstr("deeper than 256"));
    std::string buffer(10000, '\0');
    EXPECT_NE(QelBinaryCodec::write(tree, QelMessageTree::root, &envelope, buffer.data(), size), 0);
    EXPECT_EQ(
        QelBinaryCodec::measure(tree, tree.node(tree.node(QelMessageTree::root).firstChild).firstChild, nullptr, size),
        0);

    QelMessageTree large;
    large.setValue(large.appendChild(QelMessageTree::root, 1026, 0), std::string(QelLimits::messageBytes, 'x'));
    EXPECT_NE(QelBinaryCodec::measure(large, QelMessageTree::root, &envelope, size), 0);
    EXPECT_THAT(getErrorMessage(), HasSubstr("longer than 67108864 bytes"));
}

// ------------------------------------------------------------------------------------------------------ allocations

TEST(QelBinaryCodecTest, WritingDoesNotAllocateAndReadingAllocatesPerMessage) {
    const auto grown = [](int elements) {
        QelMessageTree tree;
        for (int i = 0; i < elements; ++i) {
            const auto node = tree.appendChild(QelMessageTree::root, 1 + i, 292);
            tree.setType(node, 292, 117);
            tree.setValue(node, "a value that no short string could hold in place");
            EXPECT_TRUE(tree.setAttribute(node, 5, "an attribute that no short string could hold, either"));
            tree.appendChild(node, tree.intern(QelNameKind::element, "log_level"), 0);
        }
        return tree;
    };
    const QelEnvelope envelope;
    std::vector<std::size_t> counts;
    for (const int elements : {10, 10000}) {
        const QelMessageTree tree = grown(elements);
        std::size_t size = 0;
        EXPECT_EQ(allocationsOf(
                      [&] { static_cast<void>(QelBinaryCodec::measure(tree, QelMessageTree::root, &envelope, size)); }),
                  0U);
        std::string bytes(size, '\0');
        EXPECT_EQ(allocationsOf([&] {
                      static_cast<void>(
                          QelBinaryCodec::write(tree, QelMessageTree::root, &envelope, bytes.data(), size));
                  }),
                  0U);
        QelMessageTree read;
        QelEnvelope readEnvelope;
        counts.push_back(allocationsOf([&] { EXPECT_EQ(QelBinaryCodec::readMessage(bytes, read, readEnvelope), 0); }));
    }
    EXPECT_EQ(counts[0], counts[1]);
    EXPECT_GE(counts[0], 2U) << "the buffer and the elements; fewer means that allocations are not counted";
    EXPECT_LE(counts[0], 10U);
}

} // namespace
} // namespace Qel
