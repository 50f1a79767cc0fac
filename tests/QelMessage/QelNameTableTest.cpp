#include "QelMessage/QelNameTable.h"

#include <string>

#include <gtest/gtest.h>

namespace Qel {
namespace {

TEST(QelNameTableTest, NameHasOneNegativeHandle) {
    QelNameTable table;
    const int a = table.acquire("a");
    const int b = table.acquire("b");
    EXPECT_LT(a, 0);
    EXPECT_LT(b, 0);
    EXPECT_NE(a, b);
    EXPECT_EQ(table.acquire("a"), a);
    EXPECT_EQ(table.find("b"), b);
    EXPECT_EQ(table.find("c"), 0);
    EXPECT_EQ(table.text(a), "a");
}

TEST(QelNameTableTest, NameIsRemovedWithItsLastReference) {
    QelNameTable table;
    const int a = table.acquire("a");
    table.addReference(a);
    table.release(a);
    EXPECT_EQ(table.find("a"), a);
    table.release(a);
    EXPECT_EQ(table.find("a"), 0);
    EXPECT_EQ(table.size(), 0U);
}

TEST(QelNameTableTest, HandlesAreReused) {
    QelNameTable table;
    const int kept = table.acquire("kept");
    const int first = table.acquire("0");
    table.release(first);
    for (int i = 1; i < 1000; ++i) {
        const int handle = table.acquire(std::to_string(i));
        EXPECT_EQ(handle, first);
        table.release(handle);
    }
    EXPECT_EQ(table.text(kept), "kept");
}

TEST(QelNameTableTest, EachPassNumbersNamesInOrderOfFirstUse) {
    QelNameTable table;
    const int a = table.acquire("a");
    const int b = table.acquire("b");
    table.startNumbering();
    EXPECT_EQ(table.number(b).value, 0U);
    EXPECT_EQ(table.number(a).value, 1U);
    EXPECT_FALSE(table.number(b).isNew);
    table.startNumbering();
    EXPECT_TRUE(table.number(a).isNew);
    EXPECT_EQ(table.number(a).value, 0U);
    EXPECT_TRUE(table.number(b).isNew);
}

} // namespace
} // namespace Qel
