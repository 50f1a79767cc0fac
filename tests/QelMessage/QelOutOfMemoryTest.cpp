#include <functional>
#include <new>

#include <gmock/gmock.h>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinaryCodec.h"
#include "QelMessage/QelTextCodec.h"
#include "support/AllocationCounter.h"
#include "support/TempFile.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

constexpr int element = 1115;
constexpr const char* markup = "<name a='1'>a value that no short string could hold in place</name><log_level/>";
const std::string elementText = "<environment xmlns='urn:qel:env' foreign-attribute='v'>" + std::string(markup) +
                                "<x:unknown xmlns:x='urn:qel:a-namespace-without-an-id'/></environment>";
const std::string messageText = "<message session='s' subscriptions='a b'>" + elementText + "</message>";

std::string elementBytes() {
    const TestMessage message;
    return message.cursor().fromTextToChild(elementText.c_str()) == 0 && message.cursor().firstChild() == 0
               ? flattened(message.cursor())
               : std::string();
}

std::string messageBytes() {
    const TestMessage message;
    return message->fromTextEx(messageText.c_str(), 0) == 0 ? binaryOf(*message.get()) : std::string();
}

int lengthOf(const std::string& bytes) {
    return static_cast<int>(bytes.size());
}

/// Tests parses into a message with an envelope and a cursor on an element.
class QelOutOfMemoryTest : public testing::Test {
protected:
    using Parse = std::function<int(QelMessage&, QelMessageIterator&)>;

    /// Runs the parse with 0, 1, 2 ... successful allocations until it succeeds.
    static void expectUnchangedWhenMemoryRunsOut(const Parse& parse) {
        std::size_t failures = 0;
        for (;; ++failures) {
            const TestMessage message;
            message->setSession("before");
            message.cursor().newChild(element);
            message.cursor().putValue("before", 0);
            const std::string before = binaryOf(*message.get());

            int result = 0;
            {
                const FailingAllocations failing(failures);
                result = parse(*message.get(), message.cursor());
            }
            if (result == 0) {
                EXPECT_NE(binaryOf(*message.get()), before);
                break;
            }
            ASSERT_EQ(result, QelMessage::outOfMemory) << failures << ": " << getErrorMessage();
            ASSERT_EQ(getErrorMessage(), "out of memory") << failures;
            ASSERT_EQ(binaryOf(*message.get()), before) << failures;
            ASSERT_EQ(message.cursor().curID(), element) << failures;
            ASSERT_EQ(parse(*message.get(), message.cursor()), 0) << failures << ": a later parse succeeds";
        }
        EXPECT_GT(failures, 3U);
    }
};

TEST_F(QelOutOfMemoryTest, MessageTextLeavesTheMessageUnchanged) {
    expectUnchangedWhenMemoryRunsOut(
        [](QelMessage& message, QelMessageIterator&) { return message.fromTextEx(messageText.c_str(), 0); });
}

TEST_F(QelOutOfMemoryTest, MessageFileLeavesTheMessageUnchanged) {
    const TempFile file;
    file.write(messageText);
    expectUnchangedWhenMemoryRunsOut(
        [&](QelMessage& message, QelMessageIterator&) { return message.loadFromFile(file.path()); });
}

TEST_F(QelOutOfMemoryTest, MessageBytesLeaveTheMessageUnchanged) {
    const std::string bytes = messageBytes();
    expectUnchangedWhenMemoryRunsOut(
        [&](QelMessage& message, QelMessageIterator&) { return message.fromBinary(bytes.data(), lengthOf(bytes)); });
}

TEST_F(QelOutOfMemoryTest, ElementTextLeavesTheMessageUnchanged) {
    expectUnchangedWhenMemoryRunsOut(
        [](QelMessage&, QelMessageIterator& cursor) { return cursor.fromTextToChild(elementText.c_str()); });
}

TEST_F(QelOutOfMemoryTest, ElementBytesLeaveTheMessageUnchanged) {
    const std::string bytes = elementBytes();
    expectUnchangedWhenMemoryRunsOut([&](QelMessage&, QelMessageIterator& cursor) {
        return cursor.deserializeToChild(bytes.data(), lengthOf(bytes));
    });
}

TEST_F(QelOutOfMemoryTest, MarkupOfAnElementLeavesTheMessageUnchanged) {
    const std::string content = markup;
    expectUnchangedWhenMemoryRunsOut(
        [&](QelMessage&, QelMessageIterator& cursor) { return cursor.putValueXML(content, 0); });
}

TEST_F(QelOutOfMemoryTest, MarkupOfANewChildLeavesTheMessageUnchanged) {
    const std::string content = markup;
    // Appending the child is not part of the parse: like any put, it throws if it fails.
    expectUnchangedWhenMemoryRunsOut([&](QelMessage&, QelMessageIterator& cursor) {
        try {
            return cursor.putValueXML(content, 1026);
        } catch (const std::bad_alloc&) {
            setErrorMessage("out of memory");
            return QelMessage::outOfMemory;
        }
    });
}

/// The number of element slots of a tree after `parse` has failed repeatedly because of memory and then succeeded.
template <class Parse> std::size_t elementsAfterFailures(std::size_t firstTry, const Parse& parse) {
    QelMessageTree tree;
    for (std::size_t allocations = firstTry;; ++allocations) {
        try {
            const FailingAllocations failing(allocations);
            if (parse(tree) == 0)
                return tree.capacity();
        } catch (const std::bad_alloc&) {
        }
    }
}

template <class Parse> void expectNoElementsLeft(const Parse& parse) {
    constexpr std::size_t enough = 10000;
    EXPECT_EQ(elementsAfterFailures(0, parse), elementsAfterFailures(enough, parse));
}

TEST_F(QelOutOfMemoryTest, FailedParsesLeaveNoElementsInTheTree) {
    const std::string bytes = elementBytes();
    expectNoElementsLeft(
        [](QelMessageTree& tree) { return QelTextCodec::readChild(elementText, tree, QelMessageTree::root); });
    expectNoElementsLeft(
        [](QelMessageTree& tree) { return QelTextCodec::replaceContent(markup, tree, QelMessageTree::root); });
    expectNoElementsLeft(
        [&](QelMessageTree& tree) { return QelBinaryCodec::readChild(bytes, tree, QelMessageTree::root); });
}

TEST_F(QelOutOfMemoryTest, FactoryReturnsNull) {
    const std::string bytes = elementBytes();
    const boost::intrusive_ptr<QelMsgFactory> factory = QelMessage::getFactory();
    QelMessage* message = nullptr;
    std::size_t failures = 0;
    for (;; ++failures) {
        {
            const FailingAllocations failing(failures);
            message = factory->createNew(bytes.data(), lengthOf(bytes));
        }
        if (message)
            break;
        ASSERT_EQ(getErrorMessage(), "out of memory") << failures;
    }
    EXPECT_GT(failures, 3U);
    ifDestroy(message);
}

} // namespace
} // namespace Qel
