#include "QelFunctionalityCore/Values/QelGUID.h"

#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"
#include "QelFunctionalityCore/Values/QelEID.h"

namespace Qel {
namespace {

constexpr int element = 1010;
const std::string text = "00112233-4455-6677-8899-aabbccddeeff";

TEST(QelGUIDTest, WireFormIsStringForm) {
    QelGUID guid;
    ASSERT_EQ(guid.fromString(text.c_str()), 0);
    TestTree tree;
    EXPECT_EQ(tree->putObj(guid, element), 0);
    EXPECT_EQ(childValue(*tree, element), text);

    QelGUID read;
    EXPECT_EQ(tree->getObj(read, element), 0);
    EXPECT_EQ(read, guid);
}

TEST(QelGUIDTest, NullIdentifierRoundTrips) {
    TestTree tree;
    EXPECT_EQ(tree->putObj(QelGUID(), element), 0);
    QelGUID read(1, 2);
    EXPECT_EQ(tree->getObj(read, element), 0);
    EXPECT_FALSE(read.isValid());
}

TEST(QelGUIDTest, MalformedStringFailsAndLeavesValueUnchanged) {
    TestTree tree;
    tree->putValue(std::string("00112233"), element);
    QelGUID guid(1, 2);
    EXPECT_EQ(tree->getObj(guid, element), -1);
    EXPECT_EQ(guid, QelGUID(1, 2));
}

TEST(QelGUIDTest, MissingElementFailsAndLeavesValueUnchanged) {
    TestTree tree;
    QelGUID guid(1, 2);
    EXPECT_EQ(tree->getObj(guid, element), -1);
    EXPECT_EQ(guid, QelGUID(1, 2));
}

TEST(QelGUIDTest, EmptyElementFails) {
    TestTree tree;
    tree->putChild(element);
    QelGUID guid(1, 2);
    EXPECT_EQ(tree->getObj(guid, element), -1);
    EXPECT_EQ(guid, QelGUID(1, 2));
}

TEST(QelGUIDTest, FunctorsUseCurrentElement) {
    TestTree tree;
    tree->newChild(element);
    EXPECT_EQ(QelGUID::Writer()(*tree, QelGUID(1, 2)), 0);
    QelGUID read;
    EXPECT_EQ(QelGUID::Reader()(*tree, read), 0);
    EXPECT_EQ(read, QelGUID(1, 2));
    EXPECT_EQ(tree->curID(), element);
}

TEST(QelGUIDTest, InheritsConstructorsOfBase) {
    const unsigned char bytes[16] = {1};
    EXPECT_EQ(QelGUID(bytes), QelGUID(1, 0));
    EXPECT_FALSE(QelGUID().isValid());
}

TEST(QelEIDTest, HasWireFormOfGUID) {
    const QelEID eid(QelGUID(3, 4));
    EXPECT_EQ(eid, QelEID(3, 4));
    EXPECT_FALSE(QelEID().isValid());
    TestTree tree;
    EXPECT_EQ(tree->putObj(eid, 1866), 0);
    QelEID read;
    EXPECT_EQ(tree->getObj(read, 1866), 0);
    EXPECT_EQ(read, eid);
}

} // namespace
} // namespace Qel
