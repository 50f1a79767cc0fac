#include "QelFunctionalityCore/Values/QelNamedOpStrListProperty.h"

#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"

namespace Qel {
namespace {

using testing::ElementsAre;

constexpr int operationElement = 1638;
constexpr int nameElement = 1026;
constexpr int valueElement = 1018;

QelNamedOpStrListProperty property(const std::string& name, const std::vector<std::string>& values = {}) {
    QelNamedOpStrListProperty made(name);
    made = values;
    return made;
}

boost::shared_ptr<QelNamedOpStrListProperty> shared(const std::string& name) {
    return boost::shared_ptr<QelNamedOpStrListProperty>(new QelNamedOpStrListProperty(name));
}

TEST(QelNamedOpStrListPropertyTest, OmitsUnsetOperation) {
    TestTree tree;
    EXPECT_EQ(QelNamedOpStrListProperty::Writer()(*tree, property("mail", {"a", "b"})), 0);
    EXPECT_NE(tree->seekPresence(operationElement), 0);
    EXPECT_EQ(childValue(*tree, nameElement), "mail");
    EXPECT_EQ(countChildren(*tree, valueElement), 2);
    EXPECT_EQ(countChildren(*tree), 3);
}

TEST(QelNamedOpStrListPropertyTest, WritesEveryOtherOperation) {
    for (const int operation : {0, 2, -2}) {
        QelNamedOpStrListProperty withOperation = property("mail");
        withOperation.setOperation(operation);
        TestTree tree;
        EXPECT_EQ(QelNamedOpStrListProperty::Writer()(*tree, withOperation), 0);
        EXPECT_EQ(childValue(*tree, operationElement), std::to_string(operation));
    }
}

TEST(QelNamedOpStrListPropertyTest, WritesOperationThenNameThenValues) {
    QelNamedOpStrListProperty full = property("mail", {"a"});
    full.setOperation(1);
    TestTree tree;
    EXPECT_EQ(QelNamedOpStrListProperty::Writer()(*tree, full), 0);
    ASSERT_EQ(tree->firstChild(), 0);
    EXPECT_EQ(tree->curID(), operationElement);
    ASSERT_EQ(tree->nextSibling(), 0);
    EXPECT_EQ(tree->curID(), nameElement);
    ASSERT_EQ(tree->nextSibling(), 0);
    EXPECT_EQ(tree->curID(), valueElement);
}

TEST(QelNamedOpStrListPropertyTest, RoundTrips) {
    QelNamedOpStrListProperty full = property("mail", {"b", "", "a"});
    full.setOperation(2);
    TestTree tree;
    ASSERT_EQ(tree->putObj(full, 1918), 0);
    QelNamedOpStrListProperty read;
    EXPECT_EQ(tree->getObj(read, 1918), 0);
    EXPECT_EQ(read.getName(), "mail");
    EXPECT_EQ(read.getOperation(), 2);
    EXPECT_THAT(read.get(), ElementsAre("b", "", "a"));
}

TEST(QelNamedOpStrListPropertyTest, MissingOrMalformedOperationIsUnset) {
    TestTree tree;
    tree->putValue(std::string("mail"), nameElement);
    QelNamedOpStrListProperty read;
    EXPECT_EQ(QelNamedOpStrListProperty::Reader()(*tree, read), 0);
    EXPECT_EQ(read.getOperation(), -1);
    tree->putValue(std::string("delete"), operationElement);
    EXPECT_EQ(QelNamedOpStrListProperty::Reader()(*tree, read), 0);
    EXPECT_EQ(read.getOperation(), -1);
}

TEST(QelNamedOpStrListPropertyTest, MissingNameFailsBeforeValuesAreRead) {
    TestTree tree;
    tree->putValue(1, operationElement);
    tree->putValue(std::string("a"), valueElement);
    QelNamedOpStrListProperty read;
    EXPECT_EQ(QelNamedOpStrListProperty::Reader()(*tree, read), -1);
    EXPECT_TRUE(read.get().empty());
}

TEST(QelLessNamedOpStrListPropertyPtrTest, OrdersByNameCaseInsensitively) {
    const QelLessNamedOpStrListPropertyPtr less;
    EXPECT_TRUE(less(shared("Alpha"), shared("beta")));
    EXPECT_FALSE(less(shared("Beta"), shared("alpha")));
    EXPECT_FALSE(less(shared("mail"), shared("MAIL")));
    EXPECT_FALSE(less(shared("MAIL"), shared("mail")));

    std::set<boost::shared_ptr<QelNamedOpStrListProperty>, QelLessNamedOpStrListPropertyPtr> all;
    EXPECT_TRUE(all.insert(shared("mail")).second);
    EXPECT_FALSE(all.insert(shared("Mail")).second);
}

TEST(QelLessNamedOpStrListPropertyPtrDeathTest, TwoNullPointersTerminateProcess) {
    const boost::shared_ptr<QelNamedOpStrListProperty> null;
    EXPECT_DEATH(static_cast<void>(QelLessNamedOpStrListPropertyPtr()(null, null)),
                 "core/src/QelFunctionalityCore/QelProperty:30");
}

} // namespace
} // namespace Qel
