#include "QelFunctionalityCore/Backup/QelBackupData.h"

#include <gmock/gmock.h>

#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;

class QelExcludeListTest : public RecordTest {};

TEST_F(QelExcludeListTest, OptionsPrecedePaths) {
    QelExcludeList list{"/tmp", "/proc"};
    list.option1982 = list.option1044 = true;
    const QelExcludeList back = roundTrip(list);
    EXPECT_THAT(back, ElementsAre("/tmp", "/proc"));
    EXPECT_TRUE(back.option1982);
    EXPECT_TRUE(back.option1044);
    EXPECT_THAT(childIDs(message), ElementsAre(1982, 1044, 1156, 1156));
}

TEST_F(QelExcludeListTest, DefaultWritesNothing) {
    EXPECT_THAT(roundTrip(QelExcludeList()), IsEmpty());
    EXPECT_THAT(childIDs(message), IsEmpty());
}

TEST_F(QelExcludeListTest, ReadingReplacesOptionsAndAppendsPaths) {
    EXPECT_EQ(write(QelExcludeList{"/tmp"}), 0);
    QelExcludeList list{"/old"};
    list.option1982 = list.option1044 = true;
    EXPECT_EQ(read(list), 0);
    EXPECT_THAT(list, ElementsAre("/old", "/tmp"));
    EXPECT_FALSE(list.option1982);
    EXPECT_FALSE(list.option1044);
}

class QelEnvBackupDataTest : public RecordTest {
protected:
    static QelEnvBackupData sample() {
        QelEnvBackupData data;
        data.env.reset(new QelEnv);
        data.env->getCoreBasic()->eid = QelEID(1, 2);
        data.env->setParentEID(QelEID(3, 4));
        data.paths = {"/etc", "/home"};
        data.excludes = {"/home/cache"};
        return data;
    }
};

TEST_F(QelEnvBackupDataTest, AllFieldsSurviveRoundTrip) {
    const QelEnvBackupData back = roundTrip(sample());
    ASSERT_THAT(back.env, NotNull());
    EXPECT_EQ(back.env->getEID(), QelEID(1, 2));
    EXPECT_THAT(back.paths, ElementsAre("/etc", "/home"));
    EXPECT_THAT(back.excludes, ElementsAre("/home/cache"));
    EXPECT_THAT(childIDs(message), ElementsAre(1624, 1980, 1981));
    EXPECT_THAT(childrenIn(1980), ElementsAre(1156, 1156));
    message.seek(1624);
    EXPECT_EQ(message.curType(), "env:env");
}

TEST_F(QelEnvBackupDataTest, NullEnvironmentAndEmptyPathsAreNotWritten) {
    const QelEnvBackupData back = roundTrip(QelEnvBackupData());
    EXPECT_THAT(childIDs(message), ElementsAre(1981));
    EXPECT_THAT(back.env, IsNull());
    EXPECT_THAT(back.paths, IsEmpty());
}

TEST_F(QelEnvBackupDataTest, MissingOrUnreadableFieldsAreUnchanged) {
    message.newChild(1624); // an environment without EIDs
    message.seekUp();
    message.newChild(1980);
    message.seekUp();
    QelEnvBackupData data = sample();
    EXPECT_EQ(read(data), 0);
    ASSERT_THAT(data.env, NotNull());
    EXPECT_EQ(data.env->getEID(), QelEID(1, 2));
    EXPECT_THAT(data.paths, ElementsAre("/etc", "/home"));
    EXPECT_THAT(data.excludes, ElementsAre("/home/cache"));
}

class QelBackupDataFamilyTest : public RecordTest {
protected:
    using Data = boost::shared_ptr<QelBackupData>;
    int writeAny(const Data& data) { return message.putObject(data, QelWriterDerived<QelBackupData>(), 1307); }
    int readAny(Data& data) { return message.getObject(data, QelReaderDerived<QelBackupData>(true), 1307); }
};

TEST_F(QelBackupDataFamilyTest, TypeDeterminesClass) {
    boost::shared_ptr<QelEnvBackupData> env(new QelEnvBackupData);
    env->paths = {"/etc"};
    EXPECT_EQ(writeAny(env), 0);
    message.seek(1307);
    EXPECT_EQ(message.curType(), "backup:env_backup_data");
    message.seekUp();
    Data back;
    EXPECT_EQ(readAny(back), 0);
    const auto* const backEnv = dynamic_cast<const QelEnvBackupData*>(back.get());
    ASSERT_THAT(backEnv, NotNull());
    EXPECT_THAT(backEnv->paths, ElementsAre("/etc"));
}

TEST_F(QelBackupDataFamilyTest, BaseClassHasNoFields) {
    EXPECT_EQ(writeAny(Data(new QelBackupData)), 0);
    message.seek(1307);
    EXPECT_EQ(message.curType(), "backup:backup_data");
    EXPECT_THAT(childIDs(message), IsEmpty());
}

TEST_F(QelBackupDataFamilyTest, UnknownTypeIsReadAsBaseClass) {
    message.newChild(1307);
    message.setComplexType(282, 999);
    message.seekUp();
    Data back;
    EXPECT_EQ(readAny(back), 0);
    ASSERT_THAT(back, NotNull());
    EXPECT_THAT(dynamic_cast<const QelEnvBackupData*>(back.get()), IsNull());
}

} // namespace

} // namespace Qel
