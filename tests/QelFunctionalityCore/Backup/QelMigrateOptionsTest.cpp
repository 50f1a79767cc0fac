#include "QelFunctionalityCore/Backup/QelMigrateOptions.h"

#include <gmock/gmock.h>

#include "support/RecordTest.h"

namespace Qel {

namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::NotNull;
using testing::SizeIs;

boost::shared_ptr<QelEnvConfig> configNamed(const std::string& name) {
    boost::shared_ptr<QelEnvConfig> config(new QelEnvConfig);
    QelStringOptionalProperty property;
    property = name;
    EXPECT_EQ(config->setName(property), 0);
    return config;
}

std::string nameOf(const QelEnvConfig& config) {
    QelStringOptionalProperty name;
    return config.getName(name) == 0 && name.isSpecified() ? name.get() : "(none)";
}

class QelV2VMigrateOptionsTest : public RecordTest {};

TEST_F(QelV2VMigrateOptionsTest, AllFieldsSurviveRoundTrip) {
    QelV2VMigrateOptions options;
    options.option1152 = true;
    options.option1296 = true;
    options.option1014 = true;
    options.text2103 = std::string("text");
    options.type = 5;
    options.config = configNamed("web1");
    const QelV2VMigrateOptions back = roundTrip(options);
    EXPECT_THAT(childIDs(message), ElementsAre(1152, 1296, 1014, 2103, 1007, 1185));
    EXPECT_EQ(childValue(message, 1152), "") << "the presence of the element is the option";
    EXPECT_EQ(back.option1152, options.option1152);
    EXPECT_EQ(back.option1296, options.option1296);
    EXPECT_EQ(back.option1014, options.option1014);
    EXPECT_EQ(back.text2103, options.text2103);
    EXPECT_EQ(back.type, options.type);
    ASSERT_THAT(back.config, NotNull());
    EXPECT_EQ(nameOf(*back.config), "web1");
}

TEST_F(QelV2VMigrateOptionsTest, FalseOptionIsNotWrittenAndReadAsSpecified) {
    QelV2VMigrateOptions options;
    options.option1152 = false;
    const QelV2VMigrateOptions back = roundTrip(options);
    EXPECT_EQ(message.seekPresence(1152), -1);
    EXPECT_EQ(back.option1152, options.option1152);
}

TEST_F(QelV2VMigrateOptionsTest, UnspecifiedOptionIsReadAsFalse) {
    const QelV2VMigrateOptions back = roundTrip(QelV2VMigrateOptions());
    for (const auto* const option : {&back.option1152, &back.option1296, &back.option1014}) {
        EXPECT_TRUE(option->isSpecified());
        EXPECT_FALSE(option->get());
    }
    EXPECT_FALSE(back.text2103.isSpecified());
    EXPECT_FALSE(back.type.isSpecified());
}

TEST_F(QelV2VMigrateOptionsTest, TrueButUnspecifiedOptionIsNotWritten) {
    QelV2VMigrateOptions options;
    options.option1014 = true;
    options.option1014.specify(false);
    EXPECT_EQ(write(options), 0);
    EXPECT_THAT(childIDs(message), IsEmpty());
}

TEST_F(QelV2VMigrateOptionsTest, NullConfigurationIsNotWrittenAndReadAsEmpty) {
    const QelV2VMigrateOptions back = roundTrip(QelV2VMigrateOptions());
    EXPECT_EQ(message.seekPresence(1185), -1);
    ASSERT_THAT(back.config, NotNull());
    EXPECT_EQ(nameOf(*back.config), "(none)");
}

TEST_F(QelV2VMigrateOptionsTest, ReadsIntoExistingConfiguration) {
    QelV2VMigrateOptions options;
    options.config = configNamed("old");
    const boost::shared_ptr<QelEnvConfig> before = options.config;
    EXPECT_EQ(read(options), 0);
    EXPECT_EQ(options.config, before);
    EXPECT_EQ(nameOf(*before), "old") << "unchanged without the element";

    QelV2VMigrateOptions other;
    other.config = configNamed("new");
    EXPECT_EQ(write(other), 0);
    EXPECT_EQ(read(options), 0);
    EXPECT_EQ(nameOf(*before), "new");
}

TEST_F(QelV2VMigrateOptionsTest, UnreadableOptionsAreUnspecified) {
    message.putValue("?", 1007);
    QelV2VMigrateOptions options;
    options.type = 5;
    EXPECT_EQ(read(options), 0);
    EXPECT_FALSE(options.type.isSpecified());
}

class QelP2VMigrateOptionsTest : public RecordTest {
protected:
    static QelP2VMigrateOptions sample() {
        QelP2VMigrateOptions options;
        options.config = configNamed("web1");
        options.list1346 = {"/a", "/b"};
        options.option1821 = true;
        options.services.resize(2);
        options.services[0].name = "sshd";
        options.services[1].name = "cron";
        options.nestedName = "sda1";
        return options;
    }
};

TEST_F(QelP2VMigrateOptionsTest, AllFieldsSurviveRoundTrip) {
    const QelP2VMigrateOptions back = roundTrip(sample());
    EXPECT_THAT(childIDs(message), ElementsAre(1185, 1346, 1821, 1100, 1100, 1811));
    EXPECT_THAT(childrenIn(1346), ElementsAre(1156, 1156));
    EXPECT_EQ(childValue(message, 1821), "1");
    ASSERT_THAT(back.config, NotNull());
    EXPECT_EQ(nameOf(*back.config), "web1");
    EXPECT_THAT(back.list1346, ElementsAre("/a", "/b"));
    EXPECT_EQ(back.option1821, sample().option1821);
    ASSERT_THAT(back.services, SizeIs(2));
    EXPECT_EQ(back.services[1].name, "cron");
    EXPECT_EQ(back.nestedName, "sda1");
}

TEST_F(QelP2VMigrateOptionsTest, NameIsNestedInPartitionOfDisk) {
    EXPECT_EQ(write(sample()), 0);
    ASSERT_EQ(message.seek(1811), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1115));
    ASSERT_EQ(message.seek(1115), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1026));
    EXPECT_EQ(childValue(message, 1026), "sda1");
}

TEST_F(QelP2VMigrateOptionsTest, DefaultWritesOnlyList) {
    EXPECT_EQ(write(QelP2VMigrateOptions()), 0);
    EXPECT_THAT(childIDs(message), ElementsAre(1346)) << "an empty name creates no disk element";
    QelP2VMigrateOptions back;
    EXPECT_EQ(read(back), 0);
    ASSERT_THAT(back.config, NotNull());
    EXPECT_THAT(back.list1346, IsEmpty());
    EXPECT_FALSE(back.option1821.isSpecified());
}

TEST_F(QelP2VMigrateOptionsTest, FalseOptionIsWrittenAsZero) {
    QelP2VMigrateOptions options;
    options.option1821 = false;
    EXPECT_EQ(roundTrip(options).option1821, options.option1821);
    EXPECT_EQ(childValue(message, 1821), "0");
}

TEST_F(QelP2VMigrateOptionsTest, DiskWithoutPartitionOrNameLeavesNameUnchanged) {
    QelP2VMigrateOptions options;
    options.nestedName = "old";
    message.newChild(1811);
    message.seekUp();
    EXPECT_EQ(read(options), 0);
    message.seek(1811);
    message.putChild(1115);
    message.seekUp();
    EXPECT_EQ(read(options), 0);
    EXPECT_EQ(message.curID(), recordElement) << "the position is restored";
    EXPECT_EQ(options.nestedName, "old");
}

TEST_F(QelP2VMigrateOptionsTest, MissingOrUnreadableFieldsAreIgnored) {
    EXPECT_EQ(write(sample()), 0);
    message.putChild(1100); // a service without a name
    replace(1821, "?");
    QelP2VMigrateOptions back;
    EXPECT_EQ(read(back), 0);
    EXPECT_FALSE(back.option1821.isSpecified());
    EXPECT_THAT(back.services, SizeIs(2)) << "elements before the unreadable one are kept";
    EXPECT_EQ(back.nestedName, "sda1") << "fields after it are read";
}

TEST_F(QelP2VMigrateOptionsTest, UnreadableServiceEndsServiceList) {
    message.putChild(1100);
    QelService service;
    service.name = "cron";
    message.newChild(1100);
    EXPECT_EQ(message.putObj(service, 0), 0);
    message.seekUp();
    QelP2VMigrateOptions back;
    EXPECT_EQ(read(back), 0);
    EXPECT_THAT(back.services, IsEmpty());
}

class QelMigrateFamiliesTest : public RecordTest {
protected:
    /// Each class is the default of its own family.
    template <class Options> void expectFamily(const char* type) {
        const boost::shared_ptr<Options> options(new Options);
        EXPECT_EQ(message.putObject(options, QelWriterDerived<Options>(), 1307), 0);
        message.seek(1307);
        EXPECT_EQ(message.curType(), type);
        message.seekUp();
        message.newChild(1308);
        message.seekUp();
        for (const int id : {1307, 1308}) {
            boost::shared_ptr<Options> back;
            EXPECT_EQ(message.getObject(back, QelReaderDerived<Options>(true), id), 0) << type;
            EXPECT_THAT(back, NotNull());
        }
    }
    template <class Options> void expectEmpty() {
        clear();
        EXPECT_EQ(write(Options()), 0);
        EXPECT_THAT(childIDs(message), IsEmpty());
        message.putValue("anything", 1026);
        Options options;
        EXPECT_EQ(read(options), 0);
    }
};

TEST_F(QelMigrateFamiliesTest, EachClassHasItsOwnFamily) {
    expectFamily<QelP2VMigrateOptions>("migration:p2v_migrate_options");
    expectFamily<QelCalculateHWNodeNotes>("migration:hw_node_notes");
    expectFamily<QelV2PMigrateOptions>("migration:v2p_migrate_options");
    expectFamily<QelV2VMigrateOptions>("migration:v2v_migrate_options");
    expectFamily<QelMigratorCloneOptions>("migration:clone_options");
}

TEST_F(QelMigrateFamiliesTest, ThreeClassesHaveNoFields) {
    expectEmpty<QelCalculateHWNodeNotes>();
    expectEmpty<QelV2PMigrateOptions>();
    expectEmpty<QelMigratorCloneOptions>();
}

} // namespace

} // namespace Qel
