#include "QelFunctionalityCore/QelRecordTypes.h"

#include <algorithm>
#include <set>
#include <string_view>

#include <gmock/gmock.h>

#include "QelCore/QelIPConversions.h"
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

TEST(QelRecordTypesTest, AreOrderedByDistinctNames) {
    const auto types = recordTypes();
    EXPECT_THAT(types, testing::Not(SizeIs(0)));
    const auto unordered =
        std::adjacent_find(types.begin(), types.end(), [](const auto& a, const auto& b) { return !(a.name < b.name); });
    EXPECT_EQ(unordered, types.end()) << unordered->name;
}

TEST(QelRecordTypesTest, EachIsFoundByItsName) {
    for (const QelRecordType& type : recordTypes())
        EXPECT_EQ(findRecordType(type.name), &type);
    for (const char* const unknown : {"", "QelEn", "QelEnvx", "qelenv", "ZZZ"})
        EXPECT_EQ(findRecordType(unknown), nullptr) << unknown;
}

TEST(QelRecordTypesTest, TellTheStampsOfTheirWriters) {
    const QelRecordType* const vconfig = findRecordType("QelVEnvConfig");
    ASSERT_NE(vconfig, nullptr);
    EXPECT_EQ(vconfig->nsId, 292);
    EXPECT_EQ(vconfig->typeId, 121);
    const QelRecordType* const guid = findRecordType("QelGUID");
    ASSERT_NE(guid, nullptr);
    EXPECT_EQ(guid->nsId, 0);
    EXPECT_EQ(guid->layout, nullptr);
}

TEST(QelRecordTypesTest, TellTheTableInWritingAndInReadingOrder) {
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

class EachRecordType : public testing::TestWithParam<QelRecordType> {
protected:
    /// Puts the cursor where the record belongs: at the only element of a new message, or at its root.  Messages have a
    /// time, without which no session can be read.
    static void place(const TestMessage& message) {
        message->setTime(1'795'167'000);
        message->setRequestId("request");
        if (!GetParam().isWholeMessage)
            message.cursor().newChild(element);
    }
    /// A message with a record, filled at random and under the cursor.
    void make(const TestMessage& message) {
        place(message);
        random.fill(message.cursor(), GetParam().name, GetParam().layout);
    }
    QelRecordType::Results rewrite(const TestMessage& from, const TestMessage& to) {
        place(to);
        const std::string position = to.cursor().curName();
        const auto results = GetParam().rewrite(from.cursor(), to.cursor());
        if (leavesTheCursorDeeper())
            for (const TestMessage* const message : {&from, &to})
                if (message->cursor().curName() != position)
                    message->cursor().seekUp();
        if (results.read == 0 || !staysWhereItFailed()) {
            EXPECT_EQ(from.cursor().curName(), position) << "the reader came back";
        }
        EXPECT_EQ(to.cursor().curName(), position) << "the writer came back";
        return results;
    }
    /// What was written is read and written again, and is the same.
    void expectFixedPoint(const TestMessage& written) {
        const TestMessage again;
        expectRewritten(written, again);
        if (!settlesLate()) {
            EXPECT_EQ(textOf(*again.get()), textOf(*written.get()));
            return;
        }
        const TestMessage settled;
        expectRewritten(again, settled);
        EXPECT_EQ(textOf(*settled.get()), textOf(*again.get()));
    }

    /// Whether reading would end the process: a pool can't hold the least and the greatest address.
    static bool isFatal(const TestMessage& made) {
        return isOneOf({"QelRangedPool", "QelPoolResourcePair"}) && holdsExtremeAddress(*made.root());
    }
    /// Whether a record that was read from damaged elements can be read again when it is written.
    static bool isReadable(const TestMessage& written) {
        const auto has = [&](int id) { return written.cursor().seekPresence(id) == 0; };
        // What is empty isn't written, yet wanted: a rule's text, the name of a task and of a role with it, the path of
        // an installation without a package.
        if (isOneOf({"QelInstallationPackage"}))
            return has(1295) || has(1156);
        if (isOneOf({"QelFirewallRule"}))
            return has(1195);
        return !isOneOf({"QelTask", "QelRole"}) || has(1026);
    }

private:
    static bool isOneOf(const std::set<std::string_view>& names) { return names.contains(GetParam().name); }

    // A device of no known kind leaves the cursor at its kind.
    static bool staysWhereItFailed() { return isOneOf({"QelNetBridge", "QelNetDevice", "QelNetNIC", "QelNetVLAN"}); }

    static bool holdsExtremeAddress(const QelMessageIterator& cursor) {
        std::string text;
        cursor.getValue(text, 0);
        if (cursor.curID() == 1262 && (strToIp(text) == 0 || ~strToIp(text) == 0))
            return true;
        if (cursor.firstChild() != 0)
            return false;
        bool found = false;
        do
            found = holdsExtremeAddress(cursor);
        while (!found && cursor.nextSibling() == 0);
        cursor.seekUp();
        return found;
    }

    // An environment or a migration without a base configuration is written with an empty one, which counts as an old
    // agent's when it is read back, and so gets a version.  The numbers of groups in credentials aren't read where they
    // are written.  The connection of a backup configuration is read into the local agent's, whose protocol it keeps if
    // it has none.  The progress of a request without a name is written without it, and becomes that of the message's
    // request.  A console's server without an address leaves an empty element, which isn't read as a server.
    static bool settlesLate() {
        return isOneOf({"QelBackupMConfig", "QelEnv", "QelEnvBackupData", "QelP2VMigrateOptions",
                        "QelProcessMExecParams", "QelProgCredentials", "QelRequestProgressData", "QelUserCredentials",
                        "QelV2VMigrateOptions", "QelVncConnectionInfo", "QelVncConsoleInfo"});
    }

    // The functors of a mailer's configuration stay in the element of its accounts.
    [[nodiscard]] static bool leavesTheCursorDeeper() { return GetParam().name == "QelMailerConfig"; }

    void expectRewritten(const TestMessage& from, const TestMessage& to) {
        const auto results = rewrite(from, to);
        EXPECT_EQ(results.read, 0);
        EXPECT_EQ(results.write, 0);
    }

protected:
    RandomRecord random{20261120};
    const LogCapture log; // what readers say of damaged messages
};

TEST_P(EachRecordType, CanBeMadeAtRandom) {
    EXPECT_TRUE(random.knows(GetParam().name, GetParam().layout));
}

TEST_P(EachRecordType, WritesWhatItReads) {
    for (int run = 0; run < runs && !HasFailure(); ++run) {
        const TestMessage made;
        make(made);
        const TestMessage written;
        const auto results = rewrite(made, written);
        EXPECT_EQ(results.read, 0) << textOf(*made.get());
        EXPECT_EQ(results.write, 0) << textOf(*made.get());
        expectFixedPoint(written);
    }
}

TEST_P(EachRecordType, IsReadOrRefusedWhenElementsAreDamaged) {
    int refused = 0;
    for (int run = 0; run < runs && !HasFailure(); ++run) {
        const TestMessage made;
        make(made);
        for (unsigned left = random.below(4) + 1; left > 0; --left)
            random.damage(made.cursor());
        if (isFatal(made))
            continue;
        const TestMessage written;
        const auto results = rewrite(made, written);
        if (results.read != 0 || results.write != 0)
            ++refused;
        else if (isReadable(written))
            expectFixedPoint(written);
    }
    RecordProperty("refused", refused);
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
