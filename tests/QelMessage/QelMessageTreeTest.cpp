#include "QelMessage/QelMessageTree.h"

#include <malloc.h>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelMessageIterator.h"
#include "support/AllocationCounter.h"
#include "support/RandomTree.h"
#include "support/TestMessage.h"
#include "support/TreeComparer.h"

namespace Qel {
namespace {

using TestSupport::describe;
using TestSupport::TestMessage;

constexpr auto root = QelMessageTree::root;
constexpr int nameId = 1026;

const QelMessageTree& treeOf(const TestMessage& message) {
    return dynamic_cast<QelBinary&>(*message.get()).tree();
}

/// Edits one configuration many times and expects that the number of elements and names stays constant and that nothing
/// is allocated.
template <class Edit> void editRepeatedly(int times, Edit edit) {
    const TestMessage message;
    message.cursor().newChild(1307);
    message.cursor().newChild("system");
    for (int i = 0; i < 1000; ++i)
        edit(message.cursor(), i);
    const std::size_t capacity = treeOf(message).capacity();
    const std::size_t names = treeOf(message).names().size();
    const std::size_t allocations = TestSupport::allocationsOf([&] {
        for (int i = 0; i < times; ++i)
            edit(message.cursor(), i);
    });
    EXPECT_EQ(treeOf(message).capacity(), capacity);
    EXPECT_EQ(treeOf(message).names().size(), names);
    EXPECT_LE(allocations, 0U);
}

constexpr int million = 1000000;

TEST(QelMessageTreeTest, SettingAValueRepeatedlyUsesBoundedMemory) {
    editRepeatedly(million, [](QelMessageIterator& cursor, int i) { cursor.putValue(i, 0); });
}

TEST(QelMessageTreeTest, ReplacingAnElementRepeatedlyUsesBoundedMemory) {
    editRepeatedly(million, [](QelMessageIterator& cursor, int i) {
        cursor.deleteChild(nameId);
        cursor.putValue(i, nameId);
    });
}

TEST(QelMessageTreeTest, ValuesOfVaryingLengthUseBoundedMemory) {
    static const std::string text(1000, 'x');
    editRepeatedly(million, [](QelMessageIterator& cursor, int i) {
        if (i % 3 == 0)
            cursor.deleteChild(nameId);
        cursor.putValue(text.data(), i * 7 % 1000, i % 3 == 0 ? nameId : 0);
        cursor.putAttr(i, 1 + i % 4);
    });
}

TEST(QelMessageTreeTest, AddingAndRemovingASubtreeUsesBoundedMemory) {
    editRepeatedly(million / 10, [](QelMessageIterator& cursor, int i) {
        cursor.newChild(nameId);
        cursor.putAttr(i, 5);
        for (int child = 0; child < 8; ++child)
            cursor.putValue(i, 1 + child);
        cursor.setComplexType(292, 117);
        cursor.deleteFromChild();
    });
}

TEST(QelMessageTreeTest, NewNamesUseBoundedMemory) {
    constexpr int times = 300000;
    const TestMessage message;
    const auto edit = [&](int i) {
        message.cursor().newChild("option-" + std::to_string(i));
        message.cursor().setNamespace("namespace-" + std::to_string(i));
        message.cursor().setComplexType("namespace-" + std::to_string(i), "type-" + std::to_string(i));
        message.cursor().deleteFromChild();
    };
    edit(0);
    const std::size_t before = ::mallinfo2().uordblks;
    for (int i = 0; i < times; ++i)
        edit(i);
    EXPECT_EQ(treeOf(message).names().size(), 0U);
    EXPECT_EQ(treeOf(message).capacity(), 2U);
    EXPECT_LE(::mallinfo2().uordblks, before + 10000);
}

TEST(QelMessageTreeTest, AddingAndRemovingParsedElementsUsesBoundedMemory) {
    TestMessage source;
    source.cursor().newChild(1624);
    source.cursor().putValue(std::string("a value of some length, and a bit more"), nameId);
    source.cursor().putChild("log_level");
    const std::string bytes = TestSupport::flattened(source.cursor());
    const TestMessage message;
    const auto edit = [&] {
        ASSERT_EQ(message.cursor().deserializeToChild(bytes.data(), static_cast<int>(bytes.size())), 0);
        ASSERT_EQ(message.cursor().deleteChild(1624), 0);
    };
    edit();
    const std::size_t capacity = treeOf(message).capacity();
    const std::size_t before = ::mallinfo2().uordblks;
    for (int i = 0; i < million / 10; ++i)
        edit();
    EXPECT_EQ(treeOf(message).capacity(), capacity);
    EXPECT_LE(::mallinfo2().uordblks, before + 10000);
}

TEST(QelMessageTreeTest, FailedParseLeavesNoElements) {
    const TestMessage message;
    for (int i = 0; i < 1000; ++i)
        ASSERT_NE(message.cursor().fromTextToChild("<a><b x='1'>text</b><c encoding='none'/></a>"), 0);
    EXPECT_LE(treeOf(message).capacity(), 4U);
    EXPECT_EQ(treeOf(message).names().size(), 0U);
}

TEST(QelMessageTreeTest, RandomEditsKeepTheTreeConsistent) {
    TestSupport::RandomTree random(7);
    QelMessageTree tree;
    random.fill(tree, 50);
    for (int i = 0; i < 3000; ++i) {
        QelMessageTree::Index node = root;
        for (unsigned steps = random.below(40); steps > 0; --steps)
            if (!tree.advance(node, root))
                break;
        const auto before = describe(tree, node);
        if (random.below(2) == 0) {
            const auto copy = tree.copyToChild(node, tree, node);
            auto copied = describe(tree, copy);
            if (node == root) {
                EXPECT_EQ(tree.name(QelNameKind::element, tree.node(copy).name), "message");
                EXPECT_EQ(copied.size(), before.size());
            } else {
                EXPECT_EQ(copied, before);
            }
            if (copied.size() > 500)
                tree.remove(copy);
        } else if (node != root) {
            const auto parent = tree.node(node).parent;
            const auto all = describe(tree, parent).size();
            tree.remove(node);
            EXPECT_EQ(describe(tree, parent).size(), all - before.size());
        }
    }
    QelMessageTree twin;
    twin.copyContent(root, tree, root);
    EXPECT_EQ(describe(twin), describe(tree));
}

TEST(QelMessageTreeTest, VeryDeepTreeDoesNotOverflowTheStack) {
    constexpr int depth = 1000000;
    const TestMessage message;
    for (int i = 0; i < depth; ++i)
        message.cursor().newChild(nameId);
    message.cursor().seekRoot();
    const TestMessage copy(message->copy(true));
    EXPECT_EQ(treeOf(copy).capacity(), treeOf(message).capacity());
    std::string bytes;
    EXPECT_NE(message->toBinary(bytes), 0);
    EXPECT_EQ(message->toTextEx(0, {}, 0), nullptr);
    EXPECT_EQ(message.cursor().deleteChild(nameId), 0);
    EXPECT_NE(message.cursor().firstChild(), 0);
}

TEST(QelMessageTreeTest, ParsedValueCanBeReplacedAndDeleted) {
    TestMessage source;
    source.cursor().putValue(std::string("parsed"), nameId);
    source.cursor().firstChild();
    source.cursor().putAttr(std::string("parsed"), 5);
    const std::string bytes = TestSupport::binaryOf(*source.get());
    const TestMessage message;
    ASSERT_EQ(message->fromBinary(bytes.data(), static_cast<int>(bytes.size())), 0);
    ASSERT_EQ(message.cursor().firstChild(), 0);
    message.cursor().putValue(std::string("new"), 0);
    message.cursor().putAttr(std::string("new and longer"), 5);
    std::string value;
    std::string attribute;
    EXPECT_EQ(message.cursor().getValue(value, 0), 0);
    EXPECT_EQ(message.cursor().getAttr(attribute, 5), 0);
    EXPECT_EQ(value, "new");
    EXPECT_EQ(attribute, "new and longer");
    EXPECT_EQ(message.cursor().deleteFromChild(), 0);
}

TEST(QelMessageTreeTest, PoolIsCreatedOnFirstStore) {
    TestMessage source;
    source.cursor().putValue(std::string("value"), nameId);
    const std::string bytes = TestSupport::binaryOf(*source.get());
    std::size_t parsing = 0;
    parsing = TestSupport::allocationsOf([&] {
        auto_destroy<QelMessage> message(
            QelMessage::getFactory()->createNew(bytes.data(), static_cast<int>(bytes.size())));
    });
    EXPECT_LE(parsing, 8U);
}

} // namespace
} // namespace Qel
