// Copying of elements between cursors, and their binary, text and markup forms.

#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelBinaryIterator.h"
#include "QelMessage/QelBinaryIteratorFixture.h"
#include "support/TreeComparer.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using namespace TestSupport;

class QelBinaryIteratorCopyTest : public TestSupport::QelBinaryIteratorFixture {};

// -------------------------------------------------------------------------------------------------------- copying

TEST_F(QelBinaryIteratorCopyTest, SecondCursorSharesTheTree) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    const std::unique_ptr<QelMessageIterator> other(cursor.newIterator(false));
    EXPECT_EQ(other->curName(), "system");
    EXPECT_EQ(other->getMessage(), message.get());
    other->putValue(9, std::string("nine"));
    EXPECT_EQ(cursor.seek("nine"), 0);
    EXPECT_EQ(other->curName(), "system");
}

TEST_F(QelBinaryIteratorCopyTest, CopyingCursorIsOnTheCopiedElementOfANewMessage) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    const std::unique_ptr<QelMessageIterator> copy(cursor.newIterator(true));
    const auto_destroy<QelMessage> owned(copy->getMessage());
    EXPECT_NE(owned.get(), message.get());
    EXPECT_EQ(copy->curName(), "system");
    cursor.deleteFromChild();
    std::string value;
    EXPECT_EQ(copy->getValue(value, std::string("one")), 0);
    EXPECT_EQ(value, "1");
    copy->seekUp();
    EXPECT_EQ(copy->curName(), "/");
}

TEST_F(QelBinaryIteratorCopyTest, CopyOfTheRootIsARoot) {
    const std::unique_ptr<QelMessageIterator> copy(cursor.newIterator(true));
    const auto_destroy<QelMessage> owned(copy->getMessage());
    EXPECT_EQ(copy->curName(), "/");
    EXPECT_EQ(describe(*owned), describe(*message.get()));
}

TEST_F(QelBinaryIteratorCopyTest, CopyToChildCopiesTheWholeSubtree) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    cursor.setNamespace("foreign");
    cursor.setComplexType(envNamespace, 122);
    cursor.putAttr(std::string("value"), 5);
    cursor.firstChild();
    cursor.setNamespace(backupNamespace);
    cursor.setComplexType("mine", "own");
    cursor.seekUp();

    const TestMessage target;
    target.cursor().saveNamespace(backupNamespace);
    target.cursor().putChild("before");
    EXPECT_EQ(target.cursor().copyToChild(&cursor), 0);
    EXPECT_EQ(target.cursor().curName(), "/");
    EXPECT_EQ(cursor.curName(), "system");
    const std::string backup = namespaceName(backupNamespace);
    EXPECT_THAT(
        describe(*target.get()),
        ElementsAre("/ {} <:> = ''", "  before {" + backup + "} <:> = ''",
                    "  system {foreign} <" + namespaceName(envNamespace) + ':' + typeName(122) + "> @a5='value' = ''",
                    "    one {" + backup + "} <mine:own> = '1'", "    two {} <:> = '2'", "    two {} <:> = '3'"));
}

TEST_F(QelBinaryIteratorCopyTest, ElementCanBeCopiedIntoItself) {
    ASSERT_EQ(cursor.seek("/data/system/one"), 0);
    const auto ancestor = message.root();
    ASSERT_EQ(ancestor->seek("/data"), 0);
    EXPECT_EQ(cursor.copyToChild(ancestor.get()), 0);
    EXPECT_THAT(describe(*message.get()),
                ElementsAre("/ {} <:> = ''", "  data {} <:> = ''", "    system {} <:> = ''", "      one {} <:> = '1'",
                            "        data {} <:> = ''", "          system {} <:> = ''", "            one {} <:> = '1'",
                            "            two {} <:> = '2'", "            two {} <:> = '3'", "      two {} <:> = '2'",
                            "      two {} <:> = '3'"));
    EXPECT_EQ(ancestor->copyToChild(ancestor.get()), 0);
    EXPECT_EQ(ancestor->firstChild(dataId), 0) << "it has become its own child";
}

TEST_F(QelBinaryIteratorCopyTest, RootCopiedToAChildIsNamedMessage) {
    ASSERT_EQ(cursor.seek("/data/system/one"), 0);
    EXPECT_EQ(cursor.copyToChild(message.root().get()), 0);
    EXPECT_EQ(cursor.seek("/data/system/one/message/data/system/two"), 0);
    EXPECT_EQ(valueHere(), "2");
}

TEST_F(QelBinaryIteratorCopyTest, CopyToChildRejectsNull) {
    EXPECT_NE(cursor.copyToChild(nullptr), 0);
}

TEST_F(QelBinaryIteratorCopyTest, AssignmentCopiesThePosition) {
    const TestMessage other;
    QelBinaryIterator assigned(dynamic_cast<QelBinary*>(other.get()));
    ASSERT_EQ(cursor.seek("/data"), 0);
    assigned = dynamic_cast<const QelBinaryIterator&>(cursor);
    EXPECT_EQ(assigned.getMessage(), message.get());
    EXPECT_EQ(assigned.curID(), dataId);
}

// ---------------------------------------------------------------------------------------------------------- forms

TEST_F(QelBinaryIteratorCopyTest, SerializedElementRoundTrips) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    const std::string bytes = TestSupport::flattened(cursor);
    ASSERT_FALSE(bytes.empty());
    const TestMessage target;
    target.cursor().newChild(environmentId);
    EXPECT_EQ(target.cursor().deserializeToChild(bytes.data(), static_cast<int>(bytes.size())), 0);
    EXPECT_EQ(target.cursor().curID(), environmentId);
    ASSERT_EQ(target.cursor().seek("system"), 0);
    EXPECT_EQ(TestSupport::flattened(target.cursor()), bytes);
}

TEST_F(QelBinaryIteratorCopyTest, DeserializeToChildOfMalformedInputAddsNothing) {
    const auto before = describe(*message.get());
    EXPECT_NE(cursor.deserializeToChild("rubbish", 7), 0);
    EXPECT_NE(cursor.deserializeToChild(nullptr, 0), 0);
    EXPECT_NE(cursor.deserializeToChild("", -1), 0);
    const std::string bytes = TestSupport::flattened(cursor);
    EXPECT_NE(cursor.deserializeToChild(bytes.data(), static_cast<int>(bytes.size()) - 1), 0);
    EXPECT_EQ(describe(*message.get()), before);
}

TEST_F(QelBinaryIteratorCopyTest, SerializeEncodesTheWholeMessage) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    char* buffer = nullptr;
    int length = 0;
    ASSERT_EQ(cursor.serialize(&buffer, &length, 0), 0);
    EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(length)), TestSupport::binaryOf(*message.get()));
    std::free(buffer);
    EXPECT_NE(cursor.serialize(&buffer, &length, 1), 0);
    EXPECT_EQ(cursor.curName(), "system");
}

TEST_F(QelBinaryIteratorCopyTest, ElementInTextFormRoundTrips) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    cursor.setNamespace(envNamespace);
    cursor.setComplexType(envNamespace, 122);
    const std::string text = TestSupport::taken(cursor.toTextFromChild());
    const TestMessage target;
    target.cursor().newChild(environmentId);
    EXPECT_EQ(target.cursor().fromTextToChild(text.c_str()), 0);
    EXPECT_EQ(target.cursor().curID(), environmentId);
    ASSERT_EQ(target.cursor().seek("system"), 0);
    EXPECT_EQ(TestSupport::flattened(target.cursor()), TestSupport::flattened(cursor));
}

TEST_F(QelBinaryIteratorCopyTest, FromTextToChildOfMalformedInputAddsNothing) {
    const auto before = describe(*message.get());
    EXPECT_NE(cursor.fromTextToChild(nullptr), 0);
    EXPECT_NE(cursor.fromTextToChild(""), 0);
    EXPECT_NE(cursor.fromTextToChild("<a><b></a>"), 0);
    EXPECT_NE(cursor.fromTextToChild("<a><b/><c encoding='rot13'/></a>"), 0);
    EXPECT_EQ(describe(*message.get()), before);
}

TEST_F(QelBinaryIteratorCopyTest, ToTextWritesTheWholeMessageFromAnyPosition) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    EXPECT_EQ(TestSupport::taken(cursor.toText()), TestSupport::textOf(*message.get()));
}

TEST_F(QelBinaryIteratorCopyTest, MarkupRoundTrips) {
    ASSERT_EQ(cursor.seek("/data"), 0);
    std::string markup = "old";
    EXPECT_EQ(cursor.getValueXML(markup, 0), 0);
    EXPECT_EQ(markup, "<system xmlns=\"\"><one>1</one><two>2</two><two>3</two></system>");
    ASSERT_EQ(cursor.seek("system"), 0);
    EXPECT_EQ(cursor.putValueXML("a &lt; b<one>1</one> <one/>", nameId), 0);
    EXPECT_EQ(cursor.curName(), "system");
    EXPECT_EQ(cursor.getValueXML(markup, nameId), 0);
    EXPECT_EQ(markup, "a &lt; b<one xmlns=\"\">1</one><one xmlns=\"\"/>");
}

TEST_F(QelBinaryIteratorCopyTest, MarkupInheritsTheNamespaceOfItsElement) {
    cursor.saveNamespace(envNamespace);
    EXPECT_EQ(cursor.putValueXML("<name/>", environmentId), 0);
    EXPECT_EQ(cursor.putValueXML("<name xmlns=\"\"/>", environmentId), 0);
    ASSERT_EQ(cursor.seek("/environment/name"), 0);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
    cursor.seekUp();
    ASSERT_EQ(cursor.nextSibling(), 0);
    ASSERT_EQ(cursor.firstChild(), 0);
    EXPECT_EQ(cursor.curNamespaceID(), 0);
}

TEST_F(QelBinaryIteratorCopyTest, MarkupForTheEmptyIdReplacesTheContent) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    EXPECT_EQ(cursor.putValueXML("<new>x</new>", 0), 0);
    EXPECT_THAT(describe(*message.get()),
                ElementsAre("/ {} <:> = ''", "  data {} <:> = ''", "    system {} <:> = ''", "      new {} <:> = 'x'"));
    EXPECT_NE(cursor.putValueXML("<new>", 0), 0);
    EXPECT_EQ(cursor.seekPresence("new"), 0) << "a failed call changes nothing";
}

TEST_F(QelBinaryIteratorCopyTest, MalformedMarkupAddsNothing) {
    const auto before = describe(*message.get());
    EXPECT_NE(cursor.putValueXML("<a>", nameId), 0);
    EXPECT_NE(cursor.putValueXML("<?xml version='1.0'?><a/>", nameId), 0);
    EXPECT_NE(cursor.putValueXML("a", -1), 0);
    EXPECT_EQ(describe(*message.get()), before);
    std::string markup = "old";
    EXPECT_NE(cursor.getValueXML(markup, nameId), 0);
    cursor.putValue(std::string("\x01"), nameId);
    EXPECT_NE(cursor.getValueXML(markup, nameId), 0) << "markup cannot represent this byte";
    EXPECT_EQ(markup, "old");
}

} // namespace
} // namespace Qel
