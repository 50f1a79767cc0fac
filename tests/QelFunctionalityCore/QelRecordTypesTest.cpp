#include "QelFunctionalityCore/QelRecordTypes.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>

#include <gmock/gmock.h>

#include "QelFunctionalityCore/RandomFamilies.h"
#include "QelMessage/QelNames.h"
#include "support/LogCapture.h"
#include "support/RandomRecord.h"
#include "support/TestMessage.h"

namespace Qel {

void PrintTo(const QelRecordType& type, std::ostream* out) {
    *out << type.name;
}

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::SizeIs;

constexpr int element = 1115;
constexpr int runs = 200;

TEST(QelRecordTypesTest, AreSortedByUniqueNames) {
    const auto types = recordTypes();
    EXPECT_THAT(types, testing::Not(SizeIs(0)));
    const auto unordered =
        std::adjacent_find(types.begin(), types.end(), [](const auto& a, const auto& b) { return !(a.name < b.name); });
    EXPECT_EQ(unordered, types.end()) << unordered->name;
}

TEST(QelRecordTypesTest, FindsEachByName) {
    for (const QelRecordType& type : recordTypes())
        EXPECT_EQ(findRecordType(type.name), &type);
    for (const char* const unknown : {"", "QelEn", "QelEnvx", "qelenv", "ZZZ"})
        EXPECT_EQ(findRecordType(unknown), nullptr) << unknown;
}

TEST(QelRecordTypesTest, ReportStampsOfTheirWriters) {
    const QelRecordType* const vconfig = findRecordType("QelVEnvConfig");
    ASSERT_NE(vconfig, nullptr);
    EXPECT_EQ(vconfig->nsId, 292);
    EXPECT_EQ(vconfig->typeId, 121);
    const QelRecordType* const guid = findRecordType("QelGUID");
    ASSERT_NE(guid, nullptr);
    EXPECT_EQ(guid->nsId, 0);
    EXPECT_EQ(guid->layout, nullptr);
}

TEST(QelRecordTypesTest, ListFieldsInWritingAndReadingOrder) {
    const QelRecordType* const env = findRecordType("QelEnv");
    ASSERT_NE(env, nullptr);
    ASSERT_NE(env->layout, nullptr);
    std::vector<int> written;
    for (const QelWireField& field : env->layout->fields)
        written.push_back(field.ownID());
    EXPECT_THAT(written, ElementsAre(1870, 1866, 1192, 1003, 1185, 1872));
    std::vector<int> read;
    for (const unsigned char index : env->layout->readingOrder)
        read.push_back(env->layout->fields[index].ownID());
    EXPECT_THAT(read, ElementsAre(1185, 1872, 1870, 1866, 1192, 1003));
}

/// The element ID at the end of a field's name ("address2050"), or 0 if there is none.
int elementInName(std::string_view field) {
    const std::size_t digits = field.size() - std::min(field.size(), field.find_last_not_of("0123456789") + 1);
    return digits == 4 ? std::stoi(std::string(field.substr(field.size() - digits))) : 0;
}

void expectNumberedFieldsMatchElements(const QelWireLayout& layout) {
    for (const QelWireField& field : layout.fields) {
        const int named = elementInName(field.name);
        EXPECT_TRUE(named == 0 || named == field.ownID()) << layout.typeName << "::" << field.name;
        if (field.codec->kind == QelWireKind::group)
            expectNumberedFieldsMatchElements(*field.codec->layout());
    }
}

TEST(QelRecordTypesTest, NumberInFieldNameIsElementID) {
    for (const QelRecordType& type : recordTypes())
        if (type.layout)
            expectNumberedFieldsMatchElements(*type.layout);
}

// Readers select the class of a derived record by its stamp.  No two records share one today, not even in different
// families.  An exception, if the protocol requires one, belongs here with its reason.
TEST(QelRecordTypesTest, HaveDistinctStamps) {
    constexpr int greatestPlainType = 100; // a record with a type up to this one is not stamped with a complex type
    std::map<std::pair<int, int>, std::string_view> owners;
    for (const QelRecordType& type : recordTypes()) {
        if (type.typeId <= greatestPlainType)
            continue;
        const auto [owner, isNew] = owners.try_emplace({type.nsId, type.typeId}, type.name);
        EXPECT_TRUE(isNew) << type.name << " has the stamp of " << owner->second;
    }
    EXPECT_THAT(owners, testing::Not(SizeIs(0)));
}

/// Expects every element of the tables to have a name, including those of nested groups, containers and records.
class ElementNames {
public:
    void expectNamed(const QelWireLayout& layout) {
        if (!m_visited.insert(&layout).second)
            return;
        for (const QelWireField& field : layout.fields) {
            const std::string row = std::string(layout.typeName) + "::" + std::string(field.name);
            for (const int id : {field.id, field.item, field.key, field.value})
                expectNamed(id, row);
            expectNamed(*field.codec, row);
        }
    }

    [[nodiscard]] std::size_t elementCount() const { return m_elements.size(); }

private:
    void expectNamed(const QelWireCodec& codec, const std::string& row) {
        for (const QelWireBit& bit : codec.bits)
            expectNamed(bit.id, row);
        for (const QelWireCodec* const part : {codec.key, codec.item})
            if (part)
                expectNamed(*part, row);
        if (const QelWireLayout* const layout = codec.layout ? codec.layout() : nullptr) // null: a base without a table
            expectNamed(*layout);
    }
    void expectNamed(int id, const std::string& row) {
        if (id == 0)
            return; // content directly in the enclosing element
        const auto names = QelNames::elements();
        const auto found = std::ranges::lower_bound(names, id, {}, &QelNames::Entry::id);
        EXPECT_TRUE(found != names.end() && found->id == id) << row << ": element " << id << " has no name";
        m_elements.insert(id);
    }

    std::set<const QelWireLayout*> m_visited;
    std::set<int> m_elements;
};

TEST(QelRecordTypesTest, HaveNameForEachElement) {
    ElementNames names;
    for (const QelRecordType& type : recordTypes())
        if (type.layout)
            names.expectNamed(*type.layout);
    EXPECT_GT(names.elementCount(), 300u);
}

/// The element of a field, or 0 if the record has no field with that name.
int elementOf(std::string_view record, std::string_view name) {
    const QelRecordType* const type = findRecordType(record);
    if (type && type->layout)
        for (const QelWireField& field : type->layout->fields)
            if (field.name == name)
                return field.ownID();
    return 0;
}

// A round trip does not reveal a wrong element ID.  These fields have no other test that does.
TEST(QelRecordTypesTest, FieldsUseProtocolElements) {
    EXPECT_EQ(elementOf("QelForwardPoint", "eid"), 1866);
    EXPECT_EQ(elementOf("QelInfrastructureNode", "folder"), 2240);
    EXPECT_EQ(elementOf("QelLogInfo", "name"), 1026);
    EXPECT_EQ(elementOf("QelNetInterface", "flags"), 1712);
    EXPECT_EQ(elementOf("QelNetTransfer", "in"), 1054);
    EXPECT_EQ(elementOf("QelNetTransfer", "out"), 1057);
    EXPECT_EQ(elementOf("QelPackage", "description"), 1496);
    EXPECT_EQ(elementOf("QelPackage", "arch"), 2005);
    EXPECT_EQ(elementOf("QelPersonalSettings", "personalName"), 2191);
    EXPECT_EQ(elementOf("QelPersonalSettings", "personalText"), 1788);
    EXPECT_EQ(elementOf("QelProgCredentials", "login"), 1393);
    EXPECT_EQ(elementOf("QelProgCredentials", "secret"), 1394);
}

TEST(QelRecordTypesTest, IncludeAllUnusualRecords) {
    for (const auto& [name, exceptions] : families().exceptions)
        EXPECT_NE(findRecordType(name), nullptr) << name;
}

class EachRecordType : public testing::TestWithParam<QelRecordType> {
protected:
    /// Creates the element of a record in a new message and moves the cursor there; a record that is a whole message
    /// uses the root.  Sets the time, which sessions require.
    static void createElement(const TestMessage& message) {
        message->setTime(1'795'167'000);
        message->setRequestId("request");
        if (!GetParam().isWholeMessage)
            message.cursor().newChild(element);
    }
    /// Fills a new message with a random record and moves the cursor to its element.
    void fillRandomly(const TestMessage& message) {
        createElement(message);
        random.fill(message.cursor(), GetParam().name, GetParam().layout);
    }
    QelRecordType::Results rewrite(const TestMessage& from, const TestMessage& to) {
        createElement(to);
        const std::string position = to.cursor().curName();
        const auto results = GetParam().rewrite(from.cursor(), to.cursor());
        if (exceptions.leavesCursorInDescendant)
            for (const TestMessage* const message : {&from, &to})
                if (message->cursor().curName() != position)
                    message->cursor().seekUp();
        if (results.read == 0 || !exceptions.keepsPositionOnFailure) {
            EXPECT_EQ(from.cursor().curName(), position) << "reader restores the position";
        }
        EXPECT_EQ(to.cursor().curName(), position) << "writer restores the position";
        return results;
    }
    /// Expects the written form to be stable: reading and writing it again reproduces it.
    void expectStable(const TestMessage& written) {
        const TestMessage again;
        expectRewritten(written, again);
        if (!exceptions.needsSecondRoundTrip) {
            EXPECT_EQ(textOf(*again.get()), textOf(*written.get()));
            return;
        }
        const TestMessage settled;
        expectRewritten(again, settled);
        EXPECT_EQ(textOf(*settled.get()), textOf(*again.get()));
    }

private:
    void expectRewritten(const TestMessage& from, const TestMessage& to) {
        const auto results = rewrite(from, to);
        EXPECT_EQ(results.read, 0);
        EXPECT_EQ(results.write, 0);
    }

protected:
    RandomRecord random{20261120, families()};
    const RecordExceptions exceptions = families().exceptionsOf(std::string(GetParam().name));
    const LogCapture log; // suppresses the log records about damaged messages
};

TEST_P(EachRecordType, CanBeGeneratedRandomly) {
    EXPECT_TRUE(random.knows(GetParam().name, GetParam().layout));
}

TEST_P(EachRecordType, SurvivesRoundTrip) {
    for (int run = 0; run < runs && !HasFailure(); ++run) {
        const TestMessage original;
        fillRandomly(original);
        const TestMessage written;
        const auto results = rewrite(original, written);
        EXPECT_EQ(results.read, 0) << textOf(*original.get());
        EXPECT_EQ(results.write, 0) << textOf(*original.get());
        expectStable(written);
    }
}

TEST_P(EachRecordType, ReadingDamagedElementsSucceedsOrFailsCleanly) {
    int rejected = 0;
    for (int run = 0; run < runs && !HasFailure(); ++run) {
        const TestMessage original;
        fillRandomly(original);
        for (unsigned left = random.below(4) + 1; left > 0; --left)
            random.damage(original.cursor());
        if (exceptions.isFatal && exceptions.isFatal(*original.root()))
            continue;
        const TestMessage written;
        const auto results = rewrite(original, written);
        if (results.read != 0 || results.write != 0)
            ++rejected;
        else if (!exceptions.isReadable || exceptions.isReadable(written.cursor()))
            expectStable(written);
    }
    RecordProperty("rejected", rejected);
}

std::string nameOf(const testing::TestParamInfo<QelRecordType>& info) {
    std::string name(info.param.name);
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(QelRecordTypesTest, EachRecordType,
                         testing::ValuesIn(recordTypes().begin(), recordTypes().end()), nameOf);

} // namespace
} // namespace Qel
