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

TEST(TableTest, SeparatesColumnsByTwoSpaces) {
    Table table;
    table.addRow({"a", "b", "c"});
    table.addRow({"long", "longer", "c"});
    EXPECT_EQ(printed(table), "a     b       c\nlong  longer  c\n");
}

TEST(TableTest, RemovesTrailingSpaces) {
    Table table;
    table.addRow({"a", "b"});
    table.addRow({"a", "longer"});
    table.addRow({"a", ""});
    table.addRow({"", ""});
    EXPECT_EQ(printed(table), "a  b\na  longer\na\n\n");
}

TEST(TableTest, AlignsColumnRight) {
    Table table({Table::Align::left, Table::Align::right});
    table.addRow({"a", "1", "x"});
    table.addRow({"b", "100", "x"});
    EXPECT_EQ(printed(table), "a    1  x\nb  100  x\n");
}

TEST(TableTest, WidthsCountCharactersNotBytes) {
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

TEST(TableTest, EmptyTablePrintsNothing) {
    EXPECT_EQ(printed(Table()), "");
}

TEST(TableTest, EscapesControlCharacters) {
    Table table;
    table.addRow({"a\nb\tc\x1b[31m\x7f", "\xC2\x9b", "\xC2\xA0é"});
    EXPECT_EQ(printed(table), "a\\nb\\tc\\x1b[31m\\x7f  \\xc2\\x9b  \xC2\xA0é\n");
}

class OutputTest : public testing::Test {
protected:
    /// Prints a result in each way and returns the output.
    static std::string printed(bool isJson) {
        std::istringstream in;
        std::ostringstream out;
        std::ostringstream err;
        Invocation invocation;
        if (isJson)
            invocation.options["json"];
        const Output output(invocation, {in, out, err});
        const auto makeJson = [] { return Json{{"mtu", 1500}}; };
        const auto printText = [](std::ostream& text) { text << "mtu 1500\n"; };
        output.print(makeJson, printText);
        output.printLine(makeJson, printText);
        output.printTextOnly(printText);
        return out.str();
    }
};

TEST_F(OutputTest, PrintsTextByDefault) {
    EXPECT_EQ(printed(false), "mtu 1500\nmtu 1500\nmtu 1500\n");
}

TEST_F(OutputTest, PrintsJsonOnRequest) {
    EXPECT_EQ(printed(true), "{\n  \"mtu\": 1500\n}\n{\"mtu\":1500}\n");
}

TEST(HexadecimalTest, PrintsEightDigits) {
    EXPECT_EQ(hexadecimal(0xCACEFE03), "0xCACEFE03");
    EXPECT_EQ(hexadecimal(0x4D), "0x0000004D");
}

} // namespace
