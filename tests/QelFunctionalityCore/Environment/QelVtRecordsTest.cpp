#include "QelFunctionalityCore/Environment/QelVtRecords.h"

#include <gmock/gmock.h>

#include "EnvTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int settingsId = 1897;
constexpr int description = 1496;

template <class Record> void expectEmptyRecord(int typeID) {
    const TestMessage message;
    Record record;
    EXPECT_EQ(message.cursor().putObject(record, typename Record::Writer(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), IsEmpty());
    EXPECT_EQ(typename Record::Reader()(message.cursor(), record), 0);
    expectStampOf<typename Record::Writer>(message.cursor());
    EXPECT_EQ(Record::Writer::getNSID(), 292);
    EXPECT_EQ(Record::Writer::getTypeID(), typeID);
}

/// The factory reads its own class by the stamp, and any other element as the default class.
template <class Record> void expectDefaultOfItsRegistry() {
    const TestMessage message;
    boost::shared_ptr<Record> read;
    EXPECT_EQ(message.cursor().getObject(read, QelReaderDerived<Record>(false), 0), -1);
    EXPECT_EQ(message.cursor().getObject(read, QelReaderDerived<Record>(true), 0), 0);
    ASSERT_NE(read, nullptr);

    ASSERT_EQ(message.cursor().putObject(read, QelWriterDerived<Record>(), 1115), 0);
    boost::shared_ptr<Record> again;
    EXPECT_EQ(message.cursor().getObject(again, QelReaderDerived<Record>(false), 1115), 0);
    EXPECT_NE(again, nullptr);
}

TEST(QelVtRecordsTest, RecordsWithoutFieldsReadAndWriteNothing) {
    expectEmptyRecord<QelVtInfo>(151);
    expectEmptyRecord<QelNativeConfig>(309);
    expectEmptyRecord<QelLogOptions>(311);
}

TEST(QelVtRecordsTest, EachIsDefaultOfItsRegistry) {
    expectDefaultOfItsRegistry<QelVtInfo>();
    expectDefaultOfItsRegistry<QelVtSettings>();
    expectDefaultOfItsRegistry<QelNativeConfig>();
    expectDefaultOfItsRegistry<QelLogOptions>();
}

TEST(QelVtRecordsTest, SettingsWriteSpecifiedFields) {
    const TestMessage message;
    QelVtSettings settings;
    EXPECT_EQ(message.cursor().putObject(settings, QelVtSettings::Writer(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), IsEmpty());
    EXPECT_EQ(QelVtSettings::Writer::getNSID(), 292);
    EXPECT_EQ(QelVtSettings::Writer::getTypeID(), 152);

    settings.settingsId = QelGUID(1, 2);
    settings.description = std::string("plain text");
    EXPECT_EQ(message.cursor().putObject(settings, QelVtSettings::Writer(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(settingsId, description));
    EXPECT_EQ(childValue(message.cursor(), settingsId), QelGUID(1, 2).toString());
    EXPECT_EQ(childValue(message.cursor(), description), "plain text");

    QelVtSettings read;
    EXPECT_EQ(QelVtSettings::Reader()(message.cursor(), read), 0);
    EXPECT_EQ(read.settingsId, settings.settingsId);
    EXPECT_EQ(read.description, settings.description);
}

TEST(QelVtRecordsTest, InvalidSettingsIdIsUnspecified) {
    const TestMessage message;
    message.cursor().putValue(std::string("no identifier"), settingsId);
    QelVtSettings settings;
    settings.settingsId = QelGUID(1, 2);
    settings.description = std::string("left over");
    EXPECT_EQ(QelVtSettings::Reader()(message.cursor(), settings), 0);
    EXPECT_FALSE(settings.settingsId.isSpecified());
    EXPECT_FALSE(settings.description.isSpecified());
}

} // namespace
} // namespace Qel
