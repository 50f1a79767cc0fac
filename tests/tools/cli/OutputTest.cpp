#include "qel/cli/Output.h"

#include <sstream>

#include <gmock/gmock.h>

#include "qel/cachefile/Hexadecimal.h"

namespace {

using namespace Qel::Tool;

std::string printed(const Table& table) {
    std::ostringstream out;
    table.print(out);
    return out.str();
}

TEST(TableTest, ColumnsAreTwoBlanksApart) {
    Table table;
    table.addRow({"a", "b", "c"});
    table.addRow({"long", "longer", "c"});
    EXPECT_EQ(printed(table), "a     b       c\nlong  longer  c\n");
}

TEST(TableTest, NoLineEndsInBlanks) {
    Table table;
    table.addRow({"a", "b"});
    table.addRow({"a", "longer"});
    table.addRow({"a", ""});
    table.addRow({"", ""});
    EXPECT_EQ(printed(table), "a  b\na  longer\na\n\n");
}

TEST(TableTest, AColumnCanBeAlignedRight) {
    Table table({Table::Align::left, Table::Align::right});
    table.addRow({"a", "1", "x"});
    table.addRow({"b", "100", "x"});
    EXPECT_EQ(printed(table), "a    1  x\nb  100  x\n");
}

TEST(TableTest, WidthsCountCharactersAndNotBytes) {
    Table table;
    table.addRow({"Größe", "x"});
    table.addRow({"日本語", "x"});
    table.addRow({"abcdef", "x"});
    EXPECT_EQ(printed(table), "Größe   x\n日本語     x\nabcdef  x\n");
}

TEST(TableTest, RowsMayDifferInLength) {
    Table table;
    table.addRow({"a"});
    table.addRow({"abc", "b"});
    EXPECT_EQ(printed(table), "a\nabc  b\n");
}

TEST(TableTest, ATableWithoutRowsPrintsNothing) {
    EXPECT_EQ(printed(Table()), "");
}

TEST(TableTest, ControlCharactersAreShown) {
    Table table;
    table.addRow({"a\nb\tc\x1b[31m\x7f", "\xC2\x9b", "\xC2\xA0é"});
    EXPECT_EQ(printed(table), "a\\nb\\tc\\x1b[31m\\x7f  \\xc2\\x9b  \xC2\xA0é\n");
}

TEST(HexadecimalTest, ANumberHasEightDigits) {
    EXPECT_EQ(hexadecimal(0xCACEFE03), "0xCACEFE03");
    EXPECT_EQ(hexadecimal(0x4D), "0x0000004D");
}

} // namespace
