#include "QelMessage/QelBinaryIterator.h"

#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelMessage/QelBinary.h"
#include "QelMessage/QelBinaryIteratorFixture.h"
#include "support/TreeComparer.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using namespace TestSupport;

class QelBinaryIteratorTest : public TestSupport::QelBinaryIteratorFixture {};

// ----------------------------------------------------------------------------------------------------- navigation

TEST_F(QelBinaryIteratorTest, NewCursorIsAtTheRoot) {
    EXPECT_EQ(cursor.curName(), "/");
    EXPECT_EQ(cursor.curID(), 0);
    EXPECT_EQ(cursor.getMessage(), message.get());
}

TEST_F(QelBinaryIteratorTest, SeekMovesToTheFirstChildWithAnIdOrName) {
    EXPECT_EQ(cursor.seek(dataId), 0);
    EXPECT_EQ(cursor.curID(), dataId);
    EXPECT_EQ(cursor.seek("system"), 0);
    EXPECT_EQ(cursor.seek("two"), 0);
    EXPECT_EQ(valueHere(), "2");
}

TEST_F(QelBinaryIteratorTest, IdAndNameReferToTheSameElement) {
    cursor.seekRoot();
    EXPECT_EQ(cursor.seek("data"), 0);
    cursor.seekUp();
    EXPECT_EQ(cursor.seek("e1307"), 0);
    cursor.newChild("e1026");
    EXPECT_EQ(cursor.curID(), nameId);
    EXPECT_EQ(cursor.curName(), elementName(nameId));
}

TEST_F(QelBinaryIteratorTest, FailedMoveLeavesPositionUnchanged) {
    ASSERT_EQ(cursor.seek("/data/system/one"), 0);
    EXPECT_NE(cursor.seek(nameId), 0);
    EXPECT_NE(cursor.seek("none"), 0);
    EXPECT_NE(cursor.seek("/data/none"), 0);
    EXPECT_NE(cursor.seek(-1), 0);
    EXPECT_NE(cursor.firstChild(), 0);
    EXPECT_NE(cursor.firstChild(nameId), 0);
    EXPECT_NE(cursor.firstChild("none"), 0);
    EXPECT_NE(cursor.nextSibling(nameId), 0);
    EXPECT_NE(cursor.nextSibling("one"), 0);
    EXPECT_EQ(cursor.curName(), "one");
}

TEST_F(QelBinaryIteratorTest, SiblingsAreVisitedInOrder) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    ASSERT_EQ(cursor.firstChild(), 0);
    EXPECT_EQ(valueHere(), "1");
    EXPECT_EQ(cursor.nextSibling(), 0);
    EXPECT_EQ(valueHere(), "2");
    EXPECT_EQ(cursor.nextSibling("two"), 0);
    EXPECT_EQ(valueHere(), "3");
    EXPECT_NE(cursor.nextSibling(), 0);
    EXPECT_EQ(valueHere(), "3");
}

TEST_F(QelBinaryIteratorTest, NextSiblingWithAnIdSkipsOthers) {
    cursor.putChild(nameId);
    cursor.putValue(std::string("other"), std::string("other"));
    cursor.putValue(std::string("last"), nameId);
    ASSERT_EQ(cursor.firstChild(nameId), 0);
    EXPECT_EQ(cursor.nextSibling(nameId), 0);
    EXPECT_EQ(valueHere(), "last");
    EXPECT_NE(cursor.nextSibling(nameId), 0);
    EXPECT_EQ(valueHere(), "last");
}

TEST_F(QelBinaryIteratorTest, AbsolutePathNamesEveryLevel) {
    ASSERT_EQ(cursor.seek("/data/system/two"), 0);
    EXPECT_EQ(valueHere(), "2");
    EXPECT_EQ(cursor.seek("/"), 0);
    EXPECT_EQ(cursor.curName(), "/");
    EXPECT_NE(cursor.seek("/system"), 0);
    EXPECT_NE(cursor.seek("/data/"), 0);
    EXPECT_NE(cursor.seek("//data"), 0);
    EXPECT_NE(cursor.seek("data/system"), 0) << "without a leading slash the whole string is one name";
    EXPECT_EQ(cursor.curName(), "/");
}

TEST_F(QelBinaryIteratorTest, TrailingSlashIsAnEmptyLastName) {
    ASSERT_EQ(cursor.seek("/data"), 0);
    cursor.newChild("");
    cursor.putValue(5, 0);
    EXPECT_EQ(cursor.seek("/data/"), 0);
    EXPECT_EQ(valueHere(), "5");
}

TEST_F(QelBinaryIteratorTest, SeekPresenceDoesNotMove) {
    EXPECT_EQ(cursor.seekPresence(dataId), 0);
    EXPECT_EQ(cursor.seekPresence("data"), 0);
    EXPECT_NE(cursor.seekPresence(nameId), 0);
    EXPECT_NE(cursor.seekPresence("/data"), 0);
    EXPECT_EQ(cursor.curName(), "/");
    cursor.putValue(7, nameId);
    ASSERT_EQ(cursor.seekPresence(nameId), 0);
    int value = 0;
    EXPECT_EQ(cursor.getValue(value, nameId), 0);
    EXPECT_EQ(value, 7);
}

TEST_F(QelBinaryIteratorTest, EmptyIdIsTheCurrentElement) {
    ASSERT_EQ(cursor.seek("/data"), 0);
    EXPECT_EQ(cursor.seekPresence(0), 0);
    EXPECT_EQ(cursor.seek(0), 0);
    EXPECT_EQ(cursor.curID(), dataId);
    EXPECT_NE(cursor.firstChild(0), 0);
    EXPECT_NE(cursor.nextSibling(0), 0);
    EXPECT_NE(cursor.deleteChild(0), 0);
    EXPECT_NE(cursor.putChild(0), 0);
    EXPECT_EQ(cursor.curID(), dataId);
}

TEST_F(QelBinaryIteratorTest, SeekRootWorksFromAnyPosition) {
    ASSERT_EQ(cursor.seek("/data/system/one"), 0);
    EXPECT_EQ(cursor.seekRoot(), 0);
    EXPECT_EQ(cursor.curName(), "/");
}

using QelBinaryIteratorDeathTest = QelBinaryIteratorTest;

TEST_F(QelBinaryIteratorDeathTest, SeekUpAtTheRootEndsTheProcess) {
    EXPECT_DEATH(cursor.seekUp(), "core/src/QelMessage/QelBinaryIterator");
}

TEST_F(QelBinaryIteratorDeathTest, NewChildWithoutAnIdEndsTheProcess) {
    EXPECT_DEATH(cursor.newChild(0), "core/src/QelMessage/QelBinaryIterator");
    EXPECT_DEATH(cursor.newChild(-1), "core/src/QelMessage/QelBinaryIterator");
}

TEST_F(QelBinaryIteratorDeathTest, UseOfAnInvalidatedCursorEndsTheProcess) {
    cursor.invalidate();
    EXPECT_DEATH(cursor.seekRoot(), "core/src/QelMessage/QelBinaryIterator");
    EXPECT_DEATH(static_cast<void>(cursor.curName()), "core/src/QelMessage/QelBinaryIterator");
    EXPECT_DEATH(static_cast<void>(cursor.getMessage()), "core/src/QelMessage/QelBinaryIterator");
}

TEST_F(QelBinaryIteratorDeathTest, UseOfACursorOnADeletedElementEndsTheProcess) {
    cursor.seek("/data/system/one");
    const auto atData = message.root();
    atData->seek("/data");
    const auto other = message.root();
    ASSERT_EQ(other->seek("/data"), 0);
    other->deleteFromChild();
    EXPECT_DEATH(static_cast<void>(atData->curName()), "core/src/QelMessage/QelBinaryIterator");
    EXPECT_DEATH(static_cast<void>(cursor.curName()), "core/src/QelMessage/QelBinaryIterator");
    for (int i = 0; i < 10; ++i)
        other->putChild(nameId);
    EXPECT_DEATH(static_cast<void>(cursor.curName()), "core/src/QelMessage/QelBinaryIterator")
        << "an element that reuses the index of the deleted one is a different element";
    EXPECT_EQ(cursor.seekRoot(), 0);
    EXPECT_EQ(cursor.curName(), "/");
}

TEST_F(QelBinaryIteratorDeathTest, UseOfACursorOnAReplacedTreeEndsTheProcess) {
    const std::string text = TestSupport::textOf(*message.get());
    cursor.seek("/data");
    const auto atRoot = message.root();
    ASSERT_EQ(message->fromTextEx(text.c_str(), 0), 0);
    EXPECT_DEATH(static_cast<void>(cursor.curName()), "core/src/QelMessage/QelBinaryIterator");
    EXPECT_EQ(atRoot->seek("/data/system/one"), 0);
}

// ------------------------------------------------------------------------------------------------ names and types

TEST_F(QelBinaryIteratorTest, NameWithoutAnIdHasIdZero) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    EXPECT_EQ(cursor.curName(), "system");
    EXPECT_EQ(cursor.curID(), 0);
}

TEST_F(QelBinaryIteratorTest, TypeIsTheKeyOfADerivedFactory) {
    EXPECT_EQ(cursor.curType(), "");
    cursor.newChild(environmentId);
    EXPECT_EQ(cursor.setComplexType(envNamespace, 122), 0);
    EXPECT_EQ(cursor.curType(), namespaceName(envNamespace) + ':' + typeName(122));
    EXPECT_EQ(cursor.setComplexType(0, 122), 0);
    EXPECT_EQ(cursor.curType(), typeName(122));
    EXPECT_EQ(cursor.setComplexType("mine", "own"), 0);
    EXPECT_EQ(cursor.curType(), "mine:own");
    EXPECT_EQ(cursor.setComplexType("", "own"), 0);
    EXPECT_EQ(cursor.curType(), "own");
    EXPECT_EQ(cursor.setComplexType(namespaceName(envNamespace), typeName(122)), 0);
    EXPECT_EQ(cursor.curType(), namespaceName(envNamespace) + ':' + typeName(122));
    EXPECT_NE(cursor.setComplexType(-1, 122), 0);
    EXPECT_NE(cursor.setComplexType(0, -1), 0);
    EXPECT_EQ(cursor.setComplexType(0, 0), 0);
    EXPECT_EQ(cursor.curType(), "");
}

TEST_F(QelBinaryIteratorTest, NamespaceWithoutANameIsNotPartOfTheKey) {
    constexpr int unnamed = 999999;
    cursor.newChild(environmentId);
    cursor.setComplexType(unnamed, 122);
    EXPECT_EQ(cursor.curType(), typeName(122));
}

TEST_F(QelBinaryIteratorTest, SetNamespaceAffectsTheCurrentElementOnly) {
    ASSERT_EQ(cursor.seek("/data"), 0);
    EXPECT_EQ(cursor.setNamespace(envNamespace), 0);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
    ASSERT_EQ(cursor.firstChild(), 0);
    EXPECT_EQ(cursor.curNamespaceID(), 0);
    EXPECT_EQ(cursor.setNamespace(namespaceName(backupNamespace)), 0);
    EXPECT_EQ(cursor.curNamespaceID(), backupNamespace);
    EXPECT_EQ(cursor.setNamespace("foreign"), 0);
    EXPECT_EQ(cursor.curNamespaceID(), 0);
    EXPECT_NE(cursor.setNamespace(-1), 0);
}

TEST_F(QelBinaryIteratorTest, NewChildUsesTheSavedNamespace) {
    ASSERT_EQ(cursor.saveNamespace(envNamespace), 0);
    cursor.newChild(environmentId);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
    cursor.saveNamespace(0);
    cursor.newChild(nameId);
    EXPECT_EQ(cursor.curNamespaceID(), 0) << "not inherited from the parent";
    cursor.saveNamespace(namespaceName(backupNamespace));
    cursor.newChild(nameId);
    EXPECT_EQ(cursor.curNamespaceID(), backupNamespace);
    cursor.saveNamespace("");
    cursor.seekRoot();
    cursor.newChild(nameId);
    EXPECT_EQ(cursor.curNamespaceID(), 0);
    EXPECT_NE(cursor.saveNamespace(-1), 0);
}

TEST_F(QelBinaryIteratorTest, SavedNamespaceMayBeANameWithoutAnId) {
    cursor.saveNamespace("foreign");
    cursor.newChild(environmentId);
    cursor.putChild(nameId);
    EXPECT_THAT(TestSupport::taken(cursor.toTextFromChild()), testing::HasSubstr("xmlns=\"urn:qel:foreign\""));
    EXPECT_EQ(describe(dynamic_cast<QelBinary&>(*message.get()).tree()).back(),
              "    " + elementName(nameId) + " {foreign} <:> = ''");
}

TEST_F(QelBinaryIteratorTest, PutsUseTheSavedNamespace) {
    cursor.saveNamespace(envNamespace);
    cursor.putValue(1, nameId);
    cursor.putChild(environmentId);
    ASSERT_EQ(cursor.seek(nameId), 0);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
    ASSERT_EQ(cursor.nextSibling(environmentId), 0);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
}

TEST_F(QelBinaryIteratorTest, EachCursorHasItsOwnSavedNamespace) {
    cursor.saveNamespace(envNamespace);
    const std::unique_ptr<QelMessageIterator> other(cursor.newIterator(false));
    other->newChild(nameId);
    EXPECT_EQ(other->curNamespaceID(), 0);
}

TEST_F(QelBinaryIteratorTest, SetNamespaceChildAffectsEveryChild) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    EXPECT_EQ(cursor.setNamespaceChild(envNamespace), 0);
    EXPECT_EQ(cursor.curName(), "system");
    EXPECT_EQ(cursor.curNamespaceID(), 0);
    ASSERT_EQ(cursor.firstChild(), 0);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
    ASSERT_EQ(cursor.nextSibling(), 0);
    ASSERT_EQ(cursor.nextSibling(), 0);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
}

// -------------------------------------------------------------------------------------------------------- editing

TEST_F(QelBinaryIteratorTest, NewChildAppendsAndMoves) {
    cursor.newChild(nameId);
    cursor.putValue(1, 0);
    cursor.seekUp();
    cursor.newChild(nameId);
    cursor.putValue(2, 0);
    cursor.seekUp();
    ASSERT_EQ(cursor.firstChild(nameId), 0);
    EXPECT_EQ(valueHere(), "1");
    ASSERT_EQ(cursor.nextSibling(), 0);
    EXPECT_EQ(valueHere(), "2");
}

TEST_F(QelBinaryIteratorTest, PutChildAppendsWithoutMoving) {
    EXPECT_EQ(cursor.putChild(nameId), 0);
    EXPECT_EQ(cursor.putChild("foreign"), 0);
    EXPECT_EQ(cursor.curName(), "/");
    EXPECT_EQ(cursor.seekPresence(nameId), 0);
    EXPECT_EQ(cursor.seekPresence("foreign"), 0);
}

TEST_F(QelBinaryIteratorTest, DeleteFromChildMovesToTheParent) {
    ASSERT_EQ(cursor.seek("/data/system/two"), 0);
    EXPECT_EQ(cursor.deleteFromChild(), 0);
    EXPECT_EQ(cursor.curName(), "system");
    EXPECT_THAT(describe(*message.get()), ElementsAre("/ {} <:> = ''", "  data {} <:> = ''", "    system {} <:> = ''",
                                                      "      one {} <:> = '1'", "      two {} <:> = '3'"));
}

TEST_F(QelBinaryIteratorTest, LoopOfFirstChildAndDeleteClearsAList) {
    ASSERT_EQ(cursor.seek("/data/system"), 0);
    while (cursor.firstChild("two") == 0)
        cursor.deleteFromChild();
    EXPECT_EQ(cursor.curName(), "system");
    ASSERT_EQ(cursor.firstChild(), 0);
    EXPECT_EQ(valueHere(), "1");
    EXPECT_NE(cursor.nextSibling(), 0);
}

TEST_F(QelBinaryIteratorTest, RootCannotBeDeleted) {
    EXPECT_NE(cursor.deleteFromChild(), 0);
    EXPECT_EQ(cursor.seekPresence(dataId), 0);
}

TEST_F(QelBinaryIteratorTest, DeleteChildRemovesTheFirstMatch) {
    cursor.putValue(1, nameId);
    cursor.putValue(2, nameId);
    EXPECT_EQ(cursor.deleteChild(nameId), 0);
    int value = 0;
    EXPECT_EQ(cursor.getValue(value, nameId), 0);
    EXPECT_EQ(value, 2);
    EXPECT_EQ(cursor.deleteChild(nameId), 0);
    EXPECT_NE(cursor.deleteChild(nameId), 0);
    EXPECT_EQ(cursor.curName(), "/");
}

TEST_F(QelBinaryIteratorTest, ElementsInTheMiddleCanBeDeletedInAnyOrder) {
    const TestMessage list;
    for (int i = 0; i < 5; ++i)
        list.cursor().putValue(i, nameId);
    const auto deleteAt = [&](int steps) {
        ASSERT_EQ(list.cursor().firstChild(), 0);
        for (int i = 0; i < steps; ++i)
            ASSERT_EQ(list.cursor().nextSibling(), 0);
        ASSERT_EQ(list.cursor().deleteFromChild(), 0);
    };
    deleteAt(2);
    deleteAt(3);
    deleteAt(0);
    EXPECT_THAT(describe(*list.get()), ElementsAre("/ {} <:> = ''", "  name {} <:> = '1'", "  name {} <:> = '3'"));
    list.cursor().putValue(9, nameId);
    EXPECT_EQ(describe(*list.get()).back(), "  name {} <:> = '9'");
}

} // namespace
} // namespace Qel
