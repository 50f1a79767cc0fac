#include "QelFunctionalityCore/Host/QelMailerConfig.h"

#include <gmock/gmock.h>

#include "support/RequiredChildren.h"
#include "support/ScriptedCursor.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int record = 1115;
constexpr int enabled = 2150;
constexpr int accounts = 2151;
constexpr int account2152 = 2152;
constexpr int account1044 = 1044;

QelMailerAccount account(const std::string& name, const std::string& address) {
    QelMailerAccount made;
    made.name = name;
    made.address1099 = address;
    return made;
}

TEST(QelMailTemplateTest, ReadSetsFlagButNeverClearsIt) {
    const TestMessage message;
    QelMailTemplate mail;
    mail.text1328 = std::string("a\0b", 3);
    EXPECT_EQ(message.cursor().putObj(mail, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1026, 1328));
    QelMailTemplate read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_FALSE(read.flag1607);
    EXPECT_EQ(read.text1328, mail.text1328);
    read.flag1607 = true;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_TRUE(read.flag1607) << "a missing element leaves it unchanged";
    EXPECT_EQ(message.cursor().putObj(read, 0), 0);
    QelMailTemplate again;
    EXPECT_EQ(message.cursor().getObj(again, 0), 0);
    EXPECT_TRUE(again.flag1607);
}

TEST(QelMailTemplateTest, RequiresNameAndString) {
    expectRequired(QelMailTemplate(), {1026, 1328});
}

TEST(QelMailerAccountTest, WritesBothStringsAndRequiresNeither) {
    const TestMessage message;
    QelMailerAccount read = account("kept", "kept");
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.name, "kept");
    EXPECT_EQ(message.cursor().putObj(QelMailerAccount(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1026, 1099));
}

class QelMailerConfigTest : public testing::Test {
protected:
    [[nodiscard]] QelMessageIterator& cursor() const { return message.cursor(); }
    /// Writes the record to a new element and moves the cursor there.
    void write(const QelMailerConfig& written) const {
        cursor().newChild(record);
        EXPECT_EQ(cursor().putObj(written, 0), 0);
        cursor().seekRoot();
        cursor().seek(record);
    }

    TestMessage message;
    QelMailerConfig config;
};

TEST_F(QelMailerConfigTest, WriterLeavesCursorAtAccounts) {
    cursor().newChild(record);
    EXPECT_EQ(cursor().putObj(config, 0), 0);
    EXPECT_EQ(cursor().curID(), accounts);
    cursor().seekUp();
    EXPECT_EQ(cursor().curID(), record);
    EXPECT_THAT(childIDs(cursor()), ElementsAre(enabled, accounts));
}

TEST_F(QelMailerConfigTest, SecondWriteLeavesCursorAtItsOwnAccounts) {
    cursor().newChild(record);
    EXPECT_EQ(cursor().putObj(config, 0), 0);
    cursor().seekUp();
    config.account2152 = account("agent", "");
    EXPECT_EQ(cursor().putObj(config, 0), 0);
    EXPECT_THAT(childIDs(cursor()), ElementsAre(account2152));
}

TEST_F(QelMailerConfigTest, FailedWriteOfEnabledDoesNotMoveCursor) {
    cursor().newChild(record);
    cursor().putChild(accounts);
    ScriptedCursor rejecting(message.cursor(), fails(ScriptedCursor::Operation::put));
    EXPECT_EQ(QelMailerConfig::Writer()(rejecting, config), -1);
    EXPECT_EQ(rejecting.curID(), record);
}

TEST_F(QelMailerConfigTest, UnreadableAccountLeavesCursorAtAccounts) {
    cursor().newChild(record);
    cursor().putValue(1, enabled);
    cursor().newChild(accounts);
    cursor().newChild(account2152);
    cursor().putValueBase64("name", 1026);
    cursor().seekUp();
    cursor().seekUp();
    const ScriptedCursor unreadable(message.cursor(), fails(ScriptedCursor::Operation::get, {1026, 1099}));
    EXPECT_EQ(QelMailerConfig::Reader()(unreadable, config), -1);
    EXPECT_EQ(unreadable.curID(), accounts);
    EXPECT_FALSE(config.account2152.isSpecified());
}

TEST_F(QelMailerConfigTest, ReaderLeavesCursorAtAccounts) {
    config.account1044 = account("agent", "a@example.org");
    write(config);
    QelMailerConfig read;
    EXPECT_EQ(cursor().getObj(read, 0), 0);
    EXPECT_EQ(cursor().curID(), accounts);
    cursor().seekUp();
    EXPECT_EQ(cursor().curID(), record);
    EXPECT_EQ(read.account1044->address1099, "a@example.org");
    EXPECT_FALSE(read.account2152.isSpecified());
}

TEST_F(QelMailerConfigTest, AccountsElementIsOptional) {
    cursor().newChild(record);
    cursor().putValue(1, enabled);
    EXPECT_EQ(cursor().getObj(config, 0), 0);
    EXPECT_TRUE(config.enabled2150);
    EXPECT_FALSE(config.account2152.isSpecified());
    EXPECT_FALSE(config.account1044.isSpecified());
    EXPECT_EQ(cursor().curID(), record);
}

TEST_F(QelMailerConfigTest, MissingEnabledIsRejectedWithoutMovingCursor) {
    cursor().newChild(record);
    cursor().putChild(accounts);
    EXPECT_EQ(cursor().getObj(config, 0), -1);
    EXPECT_EQ(cursor().curID(), record);
}

TEST_F(QelMailerConfigTest, MissingAccountKeepsPreviousValue) {
    write(QelMailerConfig());
    config.account2152 = account("kept", "");
    EXPECT_EQ(cursor().getObj(config, 0), 0);
    EXPECT_TRUE(config.account2152.isSpecified());
    EXPECT_EQ(config.account2152->name, "kept");
}

TEST_F(QelMailerConfigTest, WritesSpecifiedAccountsOnly) {
    config.account2152 = account("", "");
    write(config);
    ASSERT_EQ(cursor().seek(accounts), 0);
    EXPECT_THAT(childIDs(cursor()), ElementsAre(account2152));
}

TEST_F(QelMailerConfigTest, EachAccountHasItsOwnElement) {
    config.account2152 = account("first", "");
    config.account1044 = account("second", "");
    write(config);
    ASSERT_EQ(cursor().seek(accounts), 0);
    EXPECT_THAT(childIDs(cursor()), ElementsAre(account2152, account1044));
    EXPECT_EQ(cursor().seek(account1044), 0);
    std::string name;
    EXPECT_EQ(cursor().getValue(name, 1026), 0);
    EXPECT_EQ(name, "second");
}

TEST_F(QelMailerConfigTest, MergeCopiesEnabledAndSpecifiedAccounts) {
    config.enabled2150 = true;
    config.account2152 = account("own", "own");
    QelMailerConfig other;
    other.account1044 = account("other", "o@example.org");
    EXPECT_EQ(config.merge(other), 0);
    EXPECT_FALSE(config.enabled2150);
    EXPECT_EQ(config.account2152->name, "own");
    EXPECT_TRUE(config.account1044.isSpecified());
    EXPECT_EQ(config.account1044->name, "other");
    EXPECT_EQ(config.account1044->address1099, "o@example.org");
}

TEST_F(QelMailerConfigTest, MergeReplacesBothStringsOfEachSpecifiedAccount) {
    for (auto QelMailerConfig::*const merged : {&QelMailerConfig::account2152, &QelMailerConfig::account1044})
        for (const bool hasOwn : {false, true}) {
            QelMailerConfig own;
            if (hasOwn)
                own.*merged = account("own", "own@example.org");
            QelMailerConfig other;
            other.*merged = account("other", "other@example.org");
            EXPECT_EQ(own.merge(other), 0);
            EXPECT_EQ(own.account2152.isSpecified(), merged == &QelMailerConfig::account2152);
            EXPECT_EQ(own.account1044.isSpecified(), merged == &QelMailerConfig::account1044);
            EXPECT_EQ((own.*merged)->name, "other");
            EXPECT_EQ((own.*merged)->address1099, "other@example.org");
        }
}

TEST_F(QelMailerConfigTest, MergeKeepsAccountsUnspecifiedInOther) {
    config.account2152 = account("first", "1@example.org");
    config.account1044 = account("second", "2@example.org");
    EXPECT_EQ(config.merge(QelMailerConfig()), 0);
    ASSERT_TRUE(config.account2152.isSpecified());
    EXPECT_EQ(config.account2152->name, "first");
    ASSERT_TRUE(config.account1044.isSpecified());
    EXPECT_EQ(config.account1044->address1099, "2@example.org");
}

TEST_F(QelMailerConfigTest, MergeSetsAndClearsEnabled) {
    QelMailerConfig other;
    for (const bool enabled2150 : {true, false}) {
        other.enabled2150 = enabled2150;
        EXPECT_EQ(config.merge(other), 0);
        EXPECT_EQ(config.enabled2150, enabled2150);
    }
}

TEST_F(QelMailerConfigTest, MergeIgnoresValueOfUnspecifiedAccount) {
    QelMailerConfig other;
    other.account2152 = account("gone", "");
    other.account2152.specify(false);
    EXPECT_EQ(config.merge(other), 0);
    EXPECT_FALSE(config.account2152.isSpecified());
    EXPECT_EQ(config.account2152->name, "");
}

} // namespace
} // namespace Qel
