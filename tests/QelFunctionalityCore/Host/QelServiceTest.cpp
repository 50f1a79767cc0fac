#include "QelFunctionalityCore/Host/QelService.h"

#include <gmock/gmock.h>

#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class QelServiceTest : public RecordTest {
protected:
    static QelService sample() {
        QelService service;
        service.name = "sshd";
        service.description = std::string("secure\0shell", 12);
        service.state = 4;
        service.info = "listens";
        service.enabled = true;
        service.status = "running";
        service.startScript = "S55sshd";
        service.stopScript = "K25sshd";
        service.provides = {"sshd", "shell"};
        service.requirements = {"network"};
        service.system = true;
        service.levels = QelService::ServiceLevelsListType(0b0101000);
        return service;
    }
    void putLevel(const std::string& level) { message.putValue(level, 1422); }
};

TEST_F(QelServiceTest, NewRecordHasNoStateFlagsOrLevels) {
    const QelService service;
    EXPECT_EQ(service.state, -1);
    EXPECT_FALSE(service.enabled);
    EXPECT_FALSE(service.system);
    EXPECT_FALSE(service.levels.isSpecified());
    EXPECT_TRUE(service.levels.get().none());
}

TEST_F(QelServiceTest, NameAloneIsOneElement) {
    QelService service;
    service.name = "sshd";
    EXPECT_EQ(roundTrip(service).name, "sshd");
    EXPECT_THAT(childIDs(message), ElementsAre(1026));
}

TEST_F(QelServiceTest, WritesDescriptionAndStateTwice) {
    EXPECT_EQ(write(sample()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1026, 1496, 1421, 1788, 1426, 1192, 1728, 1729, 1496, 1421, 1735, 1735,
                                               1734, 1646, 1422, 1422));
    EXPECT_EQ(childValue(message, 1496), "c2VjdXJlAHNoZWxs");
    EXPECT_EQ(childValue(message, 1788), "bGlzdGVucw==");
    EXPECT_EQ(childValue(message, 1192), "running");
    EXPECT_EQ(childValue(message, 1426), "") << "a flag is an empty element";
    for (const int id : {1496, 1421}) {
        const std::string first = childValue(message, id);
        EXPECT_EQ(message.deleteChild(id), 0);
        EXPECT_EQ(childValue(message, id), first);
    }
}

TEST_F(QelServiceTest, StateZeroIsWritten) {
    QelService service;
    service.state = 0;
    EXPECT_EQ(roundTrip(service).state, 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1026, 1421, 1421));
}

TEST_F(QelServiceTest, AllFieldsRoundTrip) {
    const QelService service = sample();
    const QelService back = roundTrip(service);
    EXPECT_EQ(back.name, service.name);
    EXPECT_EQ(back.description, service.description);
    EXPECT_EQ(back.state, service.state);
    EXPECT_EQ(back.info, service.info);
    EXPECT_TRUE(back.enabled);
    EXPECT_EQ(back.status, service.status);
    EXPECT_EQ(back.startScript, service.startScript);
    EXPECT_EQ(back.stopScript, service.stopScript);
    EXPECT_EQ(back.provides, service.provides);
    EXPECT_EQ(back.requirements, service.requirements);
    EXPECT_TRUE(back.system);
    EXPECT_EQ(back.levels, service.levels);
}

TEST_F(QelServiceTest, ReaderUsesFirstDescriptionAndState) {
    message.putValue("sshd", 1026);
    message.putValueBase64("first", 1496);
    message.putValue(1, 1421);
    message.putValueBase64("second", 1496);
    message.putValue(2, 1421);
    QelService service;
    EXPECT_EQ(read(service), 0);
    EXPECT_EQ(service.description, "first");
    EXPECT_EQ(service.state, 1);
}

TEST_F(QelServiceTest, MissingNameFailsBeforeOtherFieldsAreRead) {
    EXPECT_EQ(write(sample()), 0);
    EXPECT_EQ(message.deleteChild(1026), 0);
    QelService service;
    EXPECT_EQ(read(service), -1);
    EXPECT_EQ(service.state, -1);
    EXPECT_THAT(getErrorMessage(), HasSubstr("element name (name) is missing"));
}

TEST_F(QelServiceTest, MissingOrUnreadableFieldsAreUnchanged) {
    message.putValue("sshd", 1026);
    message.putValue("stopped", 1421);
    message.putValue("?", 1496);
    QelService service = sample();
    EXPECT_EQ(read(service), 0);
    EXPECT_EQ(service.state, 4);
    EXPECT_EQ(service.description, sample().description);
    EXPECT_EQ(service.stopScript, "K25sshd");
    EXPECT_FALSE(service.enabled) << "a flag is false if its element is missing";
    EXPECT_FALSE(service.system);
    EXPECT_TRUE(service.levels.isSpecified());
}

TEST_F(QelServiceTest, InvalidLevelFailsAfterPrecedingFieldsAreRead) {
    for (const std::string level : {"7", "-1", "x", ""}) {
        clear();
        QelService service = sample();
        service.levels.specify(false);
        EXPECT_EQ(write(service), 0);
        putLevel("3");
        putLevel(level);
        putLevel("4");
        QelService back;
        EXPECT_EQ(read(back), -1) << level;
        EXPECT_EQ(message.curID(), recordElement) << "the cursor returns to the record";
        EXPECT_EQ(back.state, 4);
        EXPECT_TRUE(back.system);
        EXPECT_FALSE(back.levels.isSpecified());
        EXPECT_THAT(getErrorMessage(), HasSubstr("element service_level (levels) is malformed"));
    }
}

TEST_F(QelServiceTest, LevelZeroIsOneElement) {
    QelService service;
    service.levels = QelService::ServiceLevelsListType(1);
    const QelService back = roundTrip(service);
    EXPECT_THAT(childIDs(message), ElementsAre(1026, 1422));
    EXPECT_EQ(childValue(message, 1422), "0");
    EXPECT_EQ(back.levels, service.levels);
}

TEST_F(QelServiceTest, EveryLevelIsOneElement) {
    QelService service;
    service.levels = QelService::ServiceLevelsListType(0b1111111);
    EXPECT_EQ(roundTrip(service).levels, service.levels);
    EXPECT_EQ(countChildren(message, 1422), 7);
}

TEST_F(QelServiceTest, OmitsUnspecifiedOrEmptyLevels) {
    QelService service;
    service.levels = QelService::ServiceLevelsListType();
    EXPECT_FALSE(roundTrip(service).levels.isSpecified());
    service.levels = QelService::ServiceLevelsListType(1);
    service.levels.specify(false);
    EXPECT_EQ(write(service), 0);
    EXPECT_EQ(message.seekPresence(1422), -1);
}

TEST_F(QelServiceTest, ElementHasNoType) {
    EXPECT_THAT(typeOf(sample()), IsEmpty());
}

} // namespace

} // namespace Qel
