#include "QelFunctionalityCore/Backup/QelBackup.h"

#include <gmock/gmock.h>

#include "support/RecordTest.h"
#include "support/RequiredChildren.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

void fill(QelDSObjectInfo& object) {
    object.time = 1'700'000'000;
    object.size = 5'000'000'000;
    object.type = 3;
    object.id = "a/b";
    object.eid = QelEID(1, 2);
    object.info = QelInfo("done", "state", true);
}

QelBackup sampleBackup() {
    QelBackup backup;
    fill(backup);
    backup.eid = QelEID(3, 4);
    backup.description = std::string("before\0upgrade", 14);
    backup.count = 7;
    backup.flags = 1;
    backup.localFlag = true;
    return backup;
}

void expectSampleObject(const QelDSObjectInfo& object) {
    EXPECT_EQ(object.time, 1'700'000'000);
    EXPECT_EQ(object.size, 5'000'000'000);
    EXPECT_EQ(object.type, 3);
    EXPECT_EQ(object.id, "a/b");
    EXPECT_EQ(object.eid, QelEID(1, 2));
    EXPECT_EQ(object.info.text, "done");
}

void expectEmptyObject(const QelDSObjectInfo& object) {
    EXPECT_EQ(object.time, 0);
    EXPECT_EQ(object.size, 0);
    EXPECT_EQ(object.type, 0);
    EXPECT_THAT(object.id, IsEmpty());
    EXPECT_FALSE(object.eid.isValid());
    EXPECT_TRUE(object.info.empty());
}

class QelDSObjectInfoTest : public RecordTest {
protected:
    QelDSObjectInfoTest() { fill(object); }
    QelDSObjectInfo object;
};

TEST_F(QelDSObjectInfoTest, AllFieldsSurviveRoundTrip) {
    expectSampleObject(roundTrip(object));
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 1004, 1024, 1007, 2028, 1134));
    EXPECT_EQ(childValue(message, 1004), "2023-11-14T22:13:20Z");
}

TEST_F(QelDSObjectInfoTest, DefaultIsEmptyAndWrittenCompletely) {
    expectEmptyObject(QelDSObjectInfo());
    EXPECT_EQ(write(QelDSObjectInfo()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 1004, 1024, 1007, 2028, 1134));
}

TEST_F(QelDSObjectInfoTest, AllFieldsExceptInfoAreRequired) {
    for (const int id : {1010, 1004, 1024, 1007, 2028}) {
        clear();
        EXPECT_EQ(write(object), 0);
        remove(id);
        QelDSObjectInfo back;
        EXPECT_EQ(read(back), -1) << id;
        message.putValue("?", id);
        EXPECT_EQ(read(back), id == 1010 ? 0 : -1) << id << " any string is an ID";
    }
}

TEST_F(QelDSObjectInfoTest, MissingOrUnreadableInfoIsUnchanged) {
    EXPECT_EQ(write(object), 0);
    replace(1134, "no info");
    QelDSObjectInfo back;
    back.info.text = "old";
    EXPECT_EQ(read(back), 0);
    remove(1134);
    EXPECT_EQ(read(back), 0);
    EXPECT_EQ(back.info.text, "old");
}

TEST_F(QelDSObjectInfoTest, ElementIsTyped) {
    EXPECT_EQ(typeOf(object), "storage:ds_object_info");
}

TEST_F(QelDSObjectInfoTest, SwapExchangesAllFields) {
    QelDSObjectInfo other;
    other.swap(object);
    expectSampleObject(other);
    expectEmptyObject(object);
}

class QelBackupTest : public RecordTest {};

TEST_F(QelBackupTest, OwnFieldsPrecedeObjectFields) {
    const QelBackup back = roundTrip(sampleBackup());
    EXPECT_THAT(childIDs(message), ElementsAre(1866, 1496, 1259, 1786, 1010, 1004, 1024, 1007, 2028, 1134));
    expectSampleObject(back);
    EXPECT_EQ(back.eid, QelEID(3, 4));
    EXPECT_EQ(back.description, sampleBackup().description);
    EXPECT_EQ(back.count, 7);
    EXPECT_EQ(back.flags, 1);
    EXPECT_EQ(childValue(message, 1496), "YmVmb3JlAHVwZ3JhZGU=");
}

TEST_F(QelBackupTest, LocalFlagIsNotSent) {
    EXPECT_FALSE(roundTrip(sampleBackup()).localFlag);
}

TEST_F(QelBackupTest, EmptyDescriptionAndZeroFlagsAreNotWritten) {
    QelBackup backup;
    EXPECT_EQ(write(backup), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1866, 1259, 1010, 1004, 1024, 1007, 2028, 1134));
}

TEST_F(QelBackupTest, FlagsWithoutFirstBitAreWrittenAsEmptyElementAndReadAsZero) {
    QelBackup backup = sampleBackup();
    backup.flags = 2;
    const QelBackup back = roundTrip(backup);
    EXPECT_EQ(message.seekPresence(1786), 0);
    EXPECT_THAT(childrenIn(1786), IsEmpty());
    EXPECT_EQ(back.flags, 0);
}

TEST_F(QelBackupTest, OnlyFirstFlagBitIsWritten) {
    QelBackup backup = sampleBackup();
    backup.flags = 3;
    EXPECT_EQ(roundTrip(backup).flags, 1);
    EXPECT_THAT(childrenIn(1786), ElementsAre(2131));
}

TEST_F(QelBackupTest, ReadingReplacesFlags) {
    QelBackup backup = sampleBackup();
    backup.flags = 0;
    EXPECT_EQ(write(backup), 0);
    backup.flags = 3;
    EXPECT_EQ(read(backup), 0);
    EXPECT_EQ(backup.flags, 0);
}

TEST_F(QelBackupTest, EnvironmentAndObjectAreRequired) {
    expectRequired(sampleBackup(), {1866, 1010, 2028});
}

TEST_F(QelBackupTest, UnreadableDescriptionOrCountIsUnchanged) {
    EXPECT_EQ(write(sampleBackup()), 0);
    replace(1496, "?");
    replace(1259, "?");
    QelBackup back;
    back.description = "old";
    back.count = 5;
    EXPECT_EQ(read(back), 0);
    EXPECT_EQ(back.description, "old");
    EXPECT_EQ(back.count, 5);
}

TEST_F(QelBackupTest, ElementHasNoType) {
    EXPECT_THAT(typeOf(sampleBackup()), IsEmpty());
}

TEST_F(QelBackupTest, SwapExchangesAllFields) {
    QelBackup a = sampleBackup();
    QelBackup b;
    b.swap(a);
    expectSampleObject(b);
    expectEmptyObject(a);
    EXPECT_EQ(b.eid, QelEID(3, 4));
    EXPECT_EQ(b.description, sampleBackup().description);
    EXPECT_EQ(b.count, 7);
    EXPECT_EQ(b.flags, 1);
    EXPECT_TRUE(b.localFlag);
    EXPECT_FALSE(a.eid.isValid());
    EXPECT_THAT(a.description, IsEmpty());
    EXPECT_EQ(a.count, 0);
    EXPECT_EQ(a.flags, 0);
    EXPECT_FALSE(a.localFlag);
}

TEST_F(QelBackupTest, SelfSwapChangesNothing) {
    QelBackup backup = sampleBackup();
    backup.swap(backup);
    expectSampleObject(backup);
    EXPECT_EQ(backup.description, sampleBackup().description);
    EXPECT_TRUE(backup.localFlag);
}

class QelNewBackupDataTest : public RecordTest {};

TEST_F(QelNewBackupDataTest, BackupHasItsOwnElement) {
    QelNewBackupData data;
    static_cast<QelBackup&>(data) = sampleBackup();
    const QelNewBackupData back = roundTrip(data);
    EXPECT_THAT(childIDs(message), ElementsAre(1006));
    expectSampleObject(back);
    EXPECT_EQ(back.eid, QelEID(3, 4));
}

TEST_F(QelNewBackupDataTest, MissingBackupFailsReading) {
    QelNewBackupData data;
    EXPECT_EQ(read(data), -1);
    message.newChild(1006);
    message.seekUp();
    EXPECT_EQ(read(data), -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("/backup: cannot read QelBackup: element eid (eid) is missing"));
}

class QelDestroyedBackupsDataTest : public RecordTest {};

TEST_F(QelDestroyedBackupsDataTest, IdsSurviveRoundTrip) {
    QelDestroyedBackupsData data;
    data.ids = {"a/b", "a/c"};
    EXPECT_EQ(roundTrip(data).ids, data.ids);
    EXPECT_THAT(childIDs(message), ElementsAre(1010, 1010));
}

TEST_F(QelDestroyedBackupsDataTest, EmptyListWritesNothingAndCannotBeReadBack) {
    QelDestroyedBackupsData data;
    EXPECT_EQ(write(data), 0);
    EXPECT_THAT(childIDs(message), IsEmpty());
    EXPECT_EQ(read(data), -1);
}

TEST(QelBackupSubscriptionsTest, SubscriptionNamesMatchProtocol) {
    EXPECT_EQ(QelNewBackupData::subscriptionName, "new_backup_subscription");
    EXPECT_EQ(QelDestroyedBackupsData::subscriptionName, "destroyed_backups_subscription");
}

TEST(QelBackupFactoriesTest, EachIsDefaultOfItsFamily) {
    EXPECT_EQ(QelDerivedParserFactory<QelNewBackupData>::defaultFactory(), &factoryQelNewBackupData);
    EXPECT_EQ(QelDerivedParserFactory<QelDestroyedBackupsData>::defaultFactory(), &factoryQelDestroyedBackupsData);
}

} // namespace

} // namespace Qel
