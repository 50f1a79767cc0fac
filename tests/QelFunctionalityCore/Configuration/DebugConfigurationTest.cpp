#include "QelFunctionalityCore/Configuration/DebugConfiguration.h"

#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"
#include "support/LogCapture.h"
#include "support/TempFolder.h"

namespace Qel {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::LogCapture;

constexpr const char* invalidLevel =
    "1 [virtual int Qel::Debug::Configuration::level() const] Invalid log_level value. "
    "It must be an integer between 0 and 6";
constexpr const char* failedLevel = "1 [virtual int Qel::Debug::Configuration::level() const] Reconfigure. Failed to "
                                    "read log_level from configuration.";
constexpr const char* failedProcessed =
    "1 [virtual Qel::Debug::ModuleFilter Qel::Debug::Configuration::filter() const] "
    "Failed to read log_process_plugins from configuration.";
constexpr const char* failedIgnored = "1 [virtual Qel::Debug::ModuleFilter Qel::Debug::Configuration::filter() const] "
                                      "Failed to read log_ignore_plugins from configuration.";

QelConfiguration parsed(const std::string& elements) {
    const TestSupport::TestMessage message;
    EXPECT_EQ(message->fromTextEx(("<message>" + elements + "</message>").c_str(), 0), 0);
    return QelConfiguration(message.get());
}

Debug::Configuration system(const std::string& options) {
    return Debug::Configuration(parsed("<data><system><configuration>" + options + "</configuration></system></data>"));
}

class DebugConfigurationTest : public ::testing::Test {
protected:
    const LogCapture log;
};

TEST_F(DebugConfigurationTest, LevelsFrom0To6AreReturnedWithoutLogging) {
    for (const int level : {0, 1, 4, 6})
        EXPECT_EQ(system("<log_level>" + std::to_string(level) + "</log_level>").level(), level);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(DebugConfigurationTest, LevelOutOfRangeIsLoggedAndReturned) {
    EXPECT_EQ(system("<log_level>7</log_level>").level(), 7);
    EXPECT_EQ(system("<log_level>-1</log_level>").level(), -1);
    EXPECT_THAT(log.messages(), ElementsAre(invalidLevel, invalidLevel));
    EXPECT_EQ(log.lines()[0].module, "QelFunctionalityCore");
    EXPECT_EQ(log.lines()[0].file, "core/src/QelFunctionalityCore/QelConfig");
}

TEST_F(DebugConfigurationTest, MissingOrNonNumericLevelIsLoggedAsUnreadAndAsInvalid) {
    EXPECT_EQ(system("").level(), -1);
    EXPECT_THAT(log.messages(), ElementsAre(failedLevel, invalidLevel));
    EXPECT_EQ(system("<log_level>high</log_level>").level(), -1);
    EXPECT_EQ(log.messages().size(), 4u);
}

TEST_F(DebugConfigurationTest, WithoutSectionOnlyInvalidLevelIsLogged) {
    for (const char* elements : {"<data><agent/></data>", "<data/>", ""}) {
        const LogCapture capture;
        const Debug::Configuration settings(parsed(elements));
        EXPECT_EQ(settings.level(), -1);
        EXPECT_EQ(settings.format(), 0);
        EXPECT_TRUE(settings.filter().passes("any"));
        EXPECT_THAT(capture.messages(), ElementsAre(invalidLevel));
    }
}

TEST_F(DebugConfigurationTest, EmptyConfigurationIsTreatedAsMissingSection) {
    const Debug::Configuration settings{QelConfiguration()};
    EXPECT_EQ(settings.level(), -1);
    EXPECT_THAT(log.messages(), ElementsAre(invalidLevel));
}

TEST_F(DebugConfigurationTest, FormatIsFunctionNameLevelAndSilentlyDefaultsTo0) {
    EXPECT_EQ(system("<log_func_name_level>2</log_func_name_level>").format(), 2);
    EXPECT_EQ(system("").format(), 0);
    EXPECT_EQ(system("<log_func_name_level>x</log_func_name_level>").format(), 0);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(DebugConfigurationTest, FilterContainsBothLists) {
    const Debug::ModuleFilter filter = system("<log_process_plugins>a b</log_process_plugins>"
                                              "<log_ignore_plugins>b</log_ignore_plugins>")
                                           .filter();
    EXPECT_TRUE(filter.passes("a"));
    EXPECT_FALSE(filter.passes("b"));
    EXPECT_FALSE(filter.passes("c"));
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(DebugConfigurationTest, MissingListsAreLogged) {
    const Debug::ModuleFilter ignoring = system("<log_ignore_plugins>b</log_ignore_plugins>").filter();
    EXPECT_THAT(log.messages(), ElementsAre(failedProcessed));
    EXPECT_TRUE(ignoring.passes("a"));
    EXPECT_FALSE(ignoring.passes("b"));
    EXPECT_EQ(log.lines()[0].file, "core/src/QelFunctionalityCore/QelConfig");

    const Debug::ModuleFilter processing = system("<log_process_plugins>a</log_process_plugins>").filter();
    EXPECT_THAT(log.messages(), ElementsAre(failedProcessed, failedIgnored));
    EXPECT_FALSE(processing.passes("b"));
    static_cast<void>(system("").filter());
    EXPECT_THAT(log.messages(), ElementsAre(failedProcessed, failedIgnored, failedProcessed, failedIgnored));
}

TEST_F(DebugConfigurationTest, LaterChangesHaveNoEffect) {
    QelConfiguration configuration =
        parsed("<data><system><configuration><log_level>3</log_level></configuration></system></data>");
    const Debug::Configuration settings(configuration);
    const std::unique_ptr<QelMessageIterator> cursor(configuration.getMessage()->rootIterator());
    ASSERT_EQ(cursor->seek("/data/system/configuration/log_level"), 0);
    cursor->putValue(5, 0);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(settings.level(), 3);
        EXPECT_EQ(settings.format(), 0);
    }
}

TEST_F(DebugConfigurationTest, OrderIsReadFromGlobalFileAtEachCall) {
    const TestSupport::TempFolder root;
    setenv("QEL_ROOT", root.path("").c_str(), 1);
    const auto store = [&](const std::string& order) {
        root.write("etc/qel/qel.conf", "<message><data><system><configuration><sorting_order>" + order +
                                           "</sorting_order></configuration></system></data></message>");
    };
    const Debug::Configuration settings = system("<sorting_order>1</sorting_order>");
    EXPECT_EQ(settings.order(), 0);
    store("1");
    EXPECT_EQ(settings.order(), 1);
    store("2");
    EXPECT_EQ(settings.order(), 0);
    store("0");
    EXPECT_EQ(settings.order(), 0);
    unsetenv("QEL_ROOT");
}

TEST_F(DebugConfigurationTest, LogUsesSettings) {
    const int before = debug_level;
    Debug::setSettingsProvider(std::make_shared<Debug::Configuration>(
        parsed("<data><system><configuration><log_level>6</log_level><log_process_plugins/>"
               "<log_ignore_plugins>noisy</log_ignore_plugins></configuration></system></data>")));
    EXPECT_EQ(debug_level, 6);
    const std::size_t linesBefore = log.lines().size();
    Log2("noisy", "f", 1, "f", "f").put(1, "not to be seen");
    Log2("quiet", "f", 1, "f", "f").put(6, "seen");
    EXPECT_EQ(log.lines().size(), linesBefore + 1);
    Debug::setSettingsProvider(nullptr);
    debug_level = before;
}

} // namespace

} // namespace Qel
