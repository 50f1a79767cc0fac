#include "QelFunctionalityCore/Values/QelValueCodecs.h"

#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

struct Inner : QelRecord<Inner> {
    int number = 0;

    friend bool operator==(const Inner&, const Inner&) = default;

    static const QelWireLayout& wire;
};

struct Values : QelRecord<Values> {
    limited_length_string<16> type;
    QelIPv6 address;
    QelOptionalProperty<std::string> title;
    QelOptionalProperty<bool> disabled;
    QelOptionalProperty<Inner> inner;
    QelOptionalProperty<std::vector<QelIPv6>> servers;
    QelEIDList members;

    static const QelWireLayout& wire;
};

} // namespace

template <> struct Wire<Inner> : WireWords<Inner> {
    static constexpr QelWireField fields[] = {field<&R::number>(1259, required, always)};
};
const QelWireLayout& Inner::wire = wireLayoutOf<Inner>;

template <> struct Wire<Values> : WireWords<Values> {
    static constexpr QelWireField fields[] = {
        field<&R::type>(1007, optional, ifSet),         field<&R::address>(1262, optional, ifSet),
        field<&R::title>(1026, ignored, ifSet, base64), field<&R::disabled>(1705, optional, ifSet),
        field<&R::inner>(1185, optional, ifSet),        wrapped<&R::servers>(1708, 1281, optional, ifSet),
        field<&R::members>(1899, optional, always),
    };
};
const QelWireLayout& Values::wire = wireLayoutOf<Values>;

namespace {

const QelWireField& row(int id) {
    for (const QelWireField& field : Values::wire.fields)
        if (field.ownID() == id)
            return field;
    ADD_FAILURE() << "no row " << id;
    return Values::wire.fields.front();
}

TEST(QelValueCodecsTest, OmitsUnsetFields) {
    TestTree tree;
    EXPECT_EQ(Values::Writer()(*tree, Values()), 0);
    EXPECT_EQ(countChildren(*tree), 1);
    EXPECT_EQ(tree->seekPresence(1899), 0);
}

TEST(QelValueCodecsTest, MissingFieldsBecomeUnset) {
    TestTree tree;
    Values read;
    read.title = std::string("old");
    read.disabled = true;
    EXPECT_EQ(Values::Reader()(*tree, read), 0);
    EXPECT_FALSE(read.type.isSpecified());
    EXPECT_FALSE(read.title.isSpecified());
    EXPECT_FALSE(read.disabled.isSpecified());
    EXPECT_FALSE(read.inner.isSpecified());
    EXPECT_FALSE(read.servers.isSpecified());
}

TEST(QelValueCodecsTest, FullRecordRoundTrips) {
    Values values;
    values.type = "generic";
    values.address = QelIPv6("fe80::1");
    values.title = std::string("a title");
    values.disabled = false;
    values.inner = Inner{.number = 7};
    values.servers = std::vector{QelIPv6("::1"), QelIPv6("10.0.0.1")};
    values.members.insert(QelEID(1, 2));

    TestTree tree;
    ASSERT_EQ(tree->putObj(values, 1307), 0);
    Values read;
    ASSERT_EQ(tree->getObj(read, 1307), 0);
    EXPECT_EQ(read.type, values.type);
    EXPECT_EQ(read.address, values.address);
    EXPECT_EQ(read.title, values.title);
    EXPECT_EQ(read.disabled, values.disabled);
    EXPECT_EQ(read.inner, values.inner);
    EXPECT_EQ(read.servers, values.servers);
    EXPECT_EQ(read.members, values.members);
}

TEST(QelValueCodecsTest, SpecifiedEmptyListIsWrittenAsEmptyWrapper) {
    Values values;
    values.servers.specify(true);
    TestTree tree;
    ASSERT_EQ(Values::Writer()(*tree, values), 0);
    EXPECT_EQ(tree->seekPresence(1708), 0);
    Values read;
    EXPECT_EQ(Values::Reader()(*tree, read), 0);
    EXPECT_TRUE(read.servers.isSpecified());
    EXPECT_TRUE(read.servers.get().empty());
}

TEST(QelValueCodecsTest, Base64FormAppliesToContentOfOptional) {
    Values values;
    values.title = std::string("abc");
    TestTree tree;
    ASSERT_EQ(Values::Writer()(*tree, values), 0);
    EXPECT_EQ(childValue(*tree, 1026), "YWJj");
}

TEST(QelValueCodecsTest, UnreadableOptionalBecomesUnspecifiedAndRowDeterminesResult) {
    TestTree tree;
    tree->putValue(std::string("neither"), 1705);
    Values read;
    read.disabled = true;
    EXPECT_EQ(Values::Reader()(*tree, read), -1);
    EXPECT_FALSE(read.disabled.isSpecified());
}

TEST(QelValueCodecsTest, RowDescribesContentOfOptional) {
    EXPECT_TRUE(row(1026).codec->isOptional);
    EXPECT_EQ(row(1026).codec->kind, QelWireKind::text);
    EXPECT_TRUE(row(1185).codec->isOptional);
    EXPECT_EQ(row(1185).codec->kind, QelWireKind::record);
    EXPECT_THAT(std::string(row(1185).codec->typeName), testing::EndsWith("Inner"));
    EXPECT_EQ(row(1185).codec->layout(), &Inner::wire);
    EXPECT_EQ(row(1708).codec->kind, QelWireKind::sequence);
    EXPECT_EQ(row(1708).codec->item, &qelWireCodec<QelIPv6>);
    EXPECT_FALSE(row(1262).codec->isOptional);
    EXPECT_EQ(row(1899).codec->kind, QelWireKind::record);
    EXPECT_FALSE(row(1899).codec->isOptional);
}

TEST(QelValueCodecsTest, CombinatorsFindFunctors) {
    const std::vector<QelIPv6> addresses{QelIPv6("::1"), QelIPv6("::2")};
    TestTree tree;
    EXPECT_EQ(tree->putObject(addresses, QelWriterData(addresses, 1281), 1708), 0);
    std::vector<QelIPv6> read;
    EXPECT_EQ(tree->getObject(read, QelReaderData(read, 1281, QelReaderOptional), 1708), 0);
    EXPECT_EQ(read, addresses);

    const std::vector<limited_length_string<16>> names{"a", "b"};
    EXPECT_EQ(tree->putObject(names, QelWriterData(names, 1281), 1709), 0);
    std::vector<limited_length_string<16>> readNames;
    EXPECT_EQ(tree->getObject(readNames, QelReaderData(readNames, 1281, QelReaderOptional), 1709), 0);
    EXPECT_EQ(readNames, names);
}

} // namespace
} // namespace Qel
