#include "QelFunctionalityCore/Backup/QelBackupOptions.h"

#include <gmock/gmock.h>

#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsNull;
using testing::NotNull;

QelDSLocation vault() {
    QelDSLocation location;
    location.type = 1;
    location.path = "/vault";
    return location;
}

class QelBackupOptionsTest : public RecordTest {
protected:
    static QelBackupOptions sample() {
        QelBackupOptions options;
        options.operation.maxChainLength = 5;
        options.kind = 1;
        options.description = "nightly";
        options.option1014 = true;
        options.text1006 = "a/b";
        options.paths = {"/etc"};
        options.excludes = {"/etc/cache"};
        options.storage = vault();
        return options;
    }
};

TEST_F(QelBackupOptionsTest, OperationSettingsComeFirstInSameElement) {
    EXPECT_EQ(write(sample()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(2087, 1197, 1496, 1014, 1980, 1981, 1828));
    EXPECT_EQ(childValue(message, 1496), "bmlnaHRseQ==");
    EXPECT_THAT(childrenIn(1014), ElementsAre(1006));
}

TEST_F(QelBackupOptionsTest, AllFieldsSurviveRoundTrip) {
    const QelBackupOptions back = roundTrip(sample());
    EXPECT_EQ(back.operation.maxChainLength, sample().operation.maxChainLength);
    EXPECT_EQ(back.kind, 1);
    EXPECT_EQ(back.description, "nightly");
    EXPECT_TRUE(back.option1014);
    EXPECT_EQ(back.text1006, "a/b");
    EXPECT_THAT(back.paths, ElementsAre("/etc"));
    EXPECT_THAT(back.excludes, ElementsAre("/etc/cache"));
    ASSERT_TRUE(back.storage.isSpecified());
    EXPECT_EQ(back.storage.get().path, "/vault");
}

TEST_F(QelBackupOptionsTest, DefaultWritesOnlyLists) {
    const QelBackupOptions back = roundTrip(QelBackupOptions());
    EXPECT_THAT(childIDs(message), ElementsAre(1980, 1981));
    EXPECT_EQ(back.kind, 0);
    EXPECT_FALSE(back.option1014);
    EXPECT_FALSE(back.storage.isSpecified());
}

TEST_F(QelBackupOptionsTest, EachKindBitIsAnElement) {
    QelBackupOptions options;
    options.kind = 3;
    EXPECT_EQ(write(options), 0);
    EXPECT_THAT(childrenIn(1197), ElementsAre(1627, 1628));
    clear();
    options.kind = 2;
    EXPECT_EQ(roundTrip(options).kind, 2);
    EXPECT_THAT(childrenIn(1197), ElementsAre(1628));
}

TEST_F(QelBackupOptionsTest, ReadingAddsKindBits) {
    QelBackupOptions options;
    options.kind = 3;
    EXPECT_EQ(write(options), 0);
    options.kind = 4;
    EXPECT_EQ(read(options), 0);
    EXPECT_EQ(options.kind, 7);
    clear();
    EXPECT_EQ(read(options), 0);
    EXPECT_EQ(options.kind, 7) << "also without the element";
}

TEST_F(QelBackupOptionsTest, NonEmptyStringImpliesOption) {
    QelBackupOptions options;
    options.text1006 = "x";
    const QelBackupOptions back = roundTrip(options);
    EXPECT_TRUE(back.option1014);
    EXPECT_EQ(back.text1006, "x");
}

TEST_F(QelBackupOptionsTest, OptionIsWrittenWithoutString) {
    QelBackupOptions options;
    options.option1014 = true;
    const QelBackupOptions back = roundTrip(options);
    EXPECT_TRUE(back.option1014);
    EXPECT_THAT(back.text1006, IsEmpty());
    EXPECT_THAT(childrenIn(1014), IsEmpty());
}

TEST_F(QelBackupOptionsTest, ReadingReplacesOption) {
    QelBackupOptions options = sample();
    EXPECT_EQ(read(options), 0);
    EXPECT_FALSE(options.option1014);
    EXPECT_EQ(options.text1006, "a/b") << "previous value is kept";
}

TEST_F(QelBackupOptionsTest, MissingOrUnreadableFieldsAreIgnored) {
    for (const int id : {2087, 1496, 1828, 1986})
        message.putValue("?", id);
    QelBackupOptions options = sample();
    EXPECT_EQ(read(options), 0);
    EXPECT_FALSE(options.operation.maxChainLength.isSpecified());
    EXPECT_EQ(options.description, "nightly");
    EXPECT_FALSE(options.storage.isSpecified());
    EXPECT_THAT(options.paths, ElementsAre("/etc"));
}

TEST_F(QelBackupOptionsTest, UnwritableOperationFails) {
    QelBackupOptions options;
    options.operation.connection = QelConnectionInfo(); // no address
    EXPECT_EQ(write(options), -1);
}

TEST_F(QelBackupOptionsTest, ElementsAreTyped) {
    EXPECT_EQ(typeOf(QelBackupOptions()), "backup:backup_options");
    EXPECT_EQ(typeOf(QelRestoreOptions()), "backup:restore_options");
    EXPECT_EQ(typeOf(QelSelectiveRestoreOptions()), "backup:selective_restore_options");
    EXPECT_EQ(typeOf(QelBackupGetInfoOptions()), "backup:backup_get_info_options");
    EXPECT_EQ(typeOf(QelBackupGetEnvInfoOptions()), "backup:backup_get_env_info_options");
}

class QelBackupRequestOptionsTest : public RecordTest {};

TEST_F(QelBackupRequestOptionsTest, RestoreOptionsSurviveRoundTrip) {
    QelRestoreOptions options;
    EXPECT_FALSE(options.option1152);
    options.option1152 = true;
    options.storage = vault();
    const QelRestoreOptions back = roundTrip(options);
    EXPECT_TRUE(back.option1152);
    EXPECT_EQ(back.storage.get().path, "/vault");
    EXPECT_THAT(childIDs(message), ElementsAre(1152, 1828));
    clear();
    EXPECT_EQ(read(options), 0);
    EXPECT_FALSE(options.option1152);
    EXPECT_FALSE(options.storage.isSpecified());
}

TEST_F(QelBackupRequestOptionsTest, SelectiveRestoreOptionsSurviveRoundTrip) {
    QelSelectiveRestoreOptions options;
    EXPECT_FALSE(options.option1832);
    options.option1832 = true;
    EXPECT_TRUE(roundTrip(options).option1832);
    EXPECT_THAT(childIDs(message), ElementsAre(1832));
}

TEST_F(QelBackupRequestOptionsTest, EnvironmentInfoIsCompleteByDefault) {
    QelBackupGetEnvInfoOptions options;
    EXPECT_TRUE(options.option1624);
    EXPECT_TRUE(options.option2064);
    EXPECT_TRUE(roundTrip(options).option2064);
    EXPECT_THAT(childIDs(message), ElementsAre(1624, 2064));
    clear();
    EXPECT_EQ(read(options), 0);
    EXPECT_FALSE(options.option1624);
    EXPECT_FALSE(options.option2064);
}

TEST_F(QelBackupRequestOptionsTest, TypeDeterminesKindOfInfo) {
    using Options = boost::shared_ptr<QelBackupGetInfoOptions>;
    const Options env(new QelBackupGetEnvInfoOptions);
    EXPECT_EQ(message.putObject(env, QelWriterDerived<QelBackupGetInfoOptions>(), 1307), 0);
    Options back;
    EXPECT_EQ(message.getObject(back, QelReaderDerived<QelBackupGetInfoOptions>(true), 1307), 0);
    EXPECT_THAT(dynamic_cast<const QelBackupGetEnvInfoOptions*>(back.get()), NotNull());

    const Options base(new QelBackupGetInfoOptions);
    EXPECT_EQ(message.putObject(base, QelWriterDerived<QelBackupGetInfoOptions>(), 1307), 0);
    EXPECT_EQ(message.getObject(back, QelReaderDerived<QelBackupGetInfoOptions>(true), 1307), 0);
    EXPECT_THAT(dynamic_cast<const QelBackupGetEnvInfoOptions*>(back.get()), IsNull());
}

TEST_F(QelBackupRequestOptionsTest, RemoveOptionsSurviveRoundTrip) {
    QelRemoveBackupOptions options;
    options.eid = QelEID(1, 2);
    options.option1015 = true;
    options.storage = vault();
    const QelRemoveBackupOptions back = roundTrip(options);
    EXPECT_EQ(back.eid, QelEID(1, 2));
    EXPECT_TRUE(back.option1015);
    EXPECT_TRUE(back.storage.isSpecified());
    EXPECT_THAT(childIDs(message), ElementsAre(1866, 1015, 1828));
    EXPECT_THAT(typeOf(QelRemoveBackupOptions()), IsEmpty());
}

TEST_F(QelBackupRequestOptionsTest, DefaultRemoveOptionsWriteNothing) {
    EXPECT_EQ(write(QelRemoveBackupOptions()), 0);
    EXPECT_THAT(childIDs(message), IsEmpty());
}

TEST_F(QelBackupRequestOptionsTest, MissingOrUnreadableEidIsUnchanged) {
    QelRemoveBackupOptions options;
    options.eid = QelEID(1, 2);
    EXPECT_EQ(read(options), 0);
    message.putValue("nobody", 1866); // language: allow
    EXPECT_EQ(read(options), 0);
    EXPECT_EQ(options.eid, QelEID(1, 2));
}

TEST_F(QelBackupRequestOptionsTest, ListOptionsSurviveRoundTrip) {
    QelListBackupOptions options;
    EXPECT_FALSE(options.option1626);
    EXPECT_TRUE(options.option1134);
    options.eid = QelEID(1, 2);
    options.option1626 = true;
    options.eid2028 = QelEID(3, 4);
    options.storage = vault();
    const QelListBackupOptions back = roundTrip(options);
    EXPECT_EQ(back.eid, QelEID(1, 2));
    EXPECT_TRUE(back.option1626);
    EXPECT_TRUE(back.option1134);
    EXPECT_EQ(back.eid2028, QelEID(3, 4));
    EXPECT_TRUE(back.storage.isSpecified());
    EXPECT_THAT(childIDs(message), ElementsAre(1866, 1626, 1134, 2028, 1828));
}

TEST_F(QelBackupRequestOptionsTest, MissingFlagIsReadAsFalseEvenIfItDefaultsToTrue) {
    QelListBackupOptions options;
    EXPECT_EQ(read(options), 0);
    EXPECT_FALSE(options.option1134);
    EXPECT_EQ(write(options), 0);
    EXPECT_THAT(childIDs(message), IsEmpty());
}

TEST_F(QelBackupRequestOptionsTest, SearchOptionsSurviveRoundTrip) {
    QelSearchBackupOptions options;
    options.hostName = std::string("web1");
    options.ip = std::string("192.0.2.1");
    options.timeFrom = 1'700'000'000;
    options.timeTo = 1'700'003'600;
    options.storage = vault();
    const QelSearchBackupOptions back = roundTrip(options);
    EXPECT_EQ(back.hostName, options.hostName);
    EXPECT_EQ(back.ip, options.ip);
    EXPECT_EQ(back.timeFrom, options.timeFrom);
    EXPECT_EQ(back.timeTo, options.timeTo);
    EXPECT_TRUE(back.storage.isSpecified());
    EXPECT_THAT(childIDs(message), ElementsAre(1261, 1262, 1146, 1147, 1828));
    EXPECT_EQ(childValue(message, 1146), "2023-11-14T22:13:20Z");
}

TEST_F(QelBackupRequestOptionsTest, OnlyPositiveTimesAreWritten) {
    QelSearchBackupOptions options;
    EXPECT_EQ(write(options), 0);
    options.timeFrom = options.timeTo = -1;
    EXPECT_EQ(write(options), 0);
    EXPECT_THAT(childIDs(message), IsEmpty());
    options.timeFrom = 1;
    EXPECT_EQ(write(options), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1146));
}

TEST_F(QelBackupRequestOptionsTest, MissingOrUnreadableTimeIsUnset) {
    message.putValue("soon", 1147);
    QelSearchBackupOptions options;
    options.hostName = std::string("old");
    options.timeFrom = options.timeTo = 5;
    EXPECT_EQ(read(options), 0);
    EXPECT_EQ(options.timeFrom, 0);
    EXPECT_EQ(options.timeTo, 0);
    EXPECT_FALSE(options.hostName.isSpecified());
}

} // namespace

} // namespace Qel
