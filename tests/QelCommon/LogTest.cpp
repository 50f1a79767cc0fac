#include "QelCommon/Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelCommon/SettingsProvider.h"
#include "support/LogCapture.h"

namespace Qel {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

/// Returns the values of its members.
struct Settings : Debug::SettingsProvider {
    int levelValue = LogLevel::error;
    int orderValue = 0;
    int formatValue = 0;
    Debug::ModuleFilter filterValue;

    int level() const override { return levelValue; }
    int order() const override { return orderValue; }
    int format() const override { return formatValue; }
    Debug::ModuleFilter filter() const override { return filterValue; }
};

class LogTest : public ::testing::Test {
protected:
    LogTest() { Debug::setSettingsProvider(nullptr); }
    ~LogTest() override { Debug::setSettingsProvider(nullptr); }

    static std::string printed(int level, const char* text, const char* module = "Module") {
        CaptureStderr();
        Log2(module, "folder/file.cpp", 7, "work", "int Class::work() const").put(level, "%s", text);
        return GetCapturedStderr();
    }

    static void log(const char* module) { Log2(module, "file", 1, "f", "f()").put(LogLevel::error, "%s", module); }

    std::shared_ptr<Settings> settings = std::make_shared<Settings>();
};

TEST_F(LogTest, InitiallyLogsErrorsOnlyWithModuleAndLevel) {
    EXPECT_EQ(printed(1, "text"), "Module[1]: text\n");
    EXPECT_EQ(printed(2, "text"), "");
}

TEST_F(LogTest, WritesOneLineWithoutControlCharactersToStandardError) {
    EXPECT_EQ(printed(1, "a\n\x1B[2Jb"), "Module[1]: a\\n\\x1b[2Jb\n");
}

TEST_F(LogTest, LogsUpToTheConfiguredLevel) {
    for (int level = 0; level <= 6; ++level) {
        settings->levelValue = level;
        Debug::setSettingsProvider(settings);
        EXPECT_EQ(debug_level, level);
        EXPECT_EQ(printed(level + 1, "text"), "");
        if (level > 0) {
            EXPECT_NE(printed(level, "text"), "");
        }
    }
}

TEST_F(LogTest, IgnoresLevelOutOfRange) {
    settings->levelValue = 3;
    Debug::setSettingsProvider(settings);
    for (const int level : {-1, 7}) {
        settings->levelValue = level;
        Debug::reconfigure();
        EXPECT_EQ(debug_level, 3);
    }
}

TEST_F(LogTest, Order1WritesTheLevelFirst) {
    settings->orderValue = 1;
    Debug::setSettingsProvider(settings);
    EXPECT_EQ(printed(1, "text"), "[1] Module: text\n");
}

TEST_F(LogTest, FormatSelectsTheDetailOfTheOrigin) {
    settings->formatValue = 1;
    Debug::setSettingsProvider(settings);
    EXPECT_EQ(printed(1, "text"), "Module[1] work: text\n");
    settings->formatValue = 2;
    Debug::reconfigure();
    EXPECT_EQ(printed(1, "text"), "Module[1] folder/file.cpp:7, int Class::work() const: text\n");
    settings->formatValue = -1;
    Debug::reconfigure();
    EXPECT_EQ(printed(1, "text"), "Module[1]: text\n");
}

TEST_F(LogTest, SettingsTakeEffectOnReconfigure) {
    Debug::setSettingsProvider(settings);
    settings->levelValue = 4;
    settings->orderValue = 1;
    EXPECT_EQ(printed(1, "text"), "Module[1]: text\n");
    Debug::reconfigure();
    EXPECT_EQ(printed(4, "text"), "[4] Module: text\n");
}

TEST_F(LogTest, NullProviderRestoresInitialSettings) {
    settings->levelValue = 6;
    settings->orderValue = 1;
    settings->formatValue = 2;
    settings->filterValue = Debug::ModuleFilter("unused", "");
    Debug::setSettingsProvider(settings);
    Debug::setSettingsProvider(nullptr);
    EXPECT_EQ(debug_level, LogLevel::error);
    EXPECT_EQ(printed(1, "text"), "Module[1]: text\n");
    Debug::reconfigure();
    EXPECT_EQ(debug_level, LogLevel::error);
}

TEST_F(LogTest, FilterAppliesToEverySink) {
    settings->filterValue = Debug::ModuleFilter("a b", "b");
    Debug::setSettingsProvider(settings);
    const TestSupport::LogCapture capture;
    for (const char* module : {"a", "b", "c"})
        log(module);
    EXPECT_THAT(capture.messages(), ElementsAre("1 a"));
    EXPECT_EQ(printed(1, "text", "b"), "");
}

TEST_F(LogTest, ProviderMayLogDuringReconfigure) {
    struct Complaining : Settings {
        int level() const override {
            log("complaint");
            return 2;
        }
    };
    const TestSupport::LogCapture capture;
    Debug::setSettingsProvider(std::make_shared<Complaining>());
    EXPECT_THAT(capture.messages(), ElementsAre("1 complaint"));
    EXPECT_EQ(debug_level, 2);
}

TEST_F(LogTest, MessageWithoutLevelIsAnError) {
    const auto complain = [] { Log2("module", "file", 1, "f", "f()").put("%d missing", 2); };
    const TestSupport::LogCapture capture(LogLevel::error);
    complain();
    debug_level = 0;
    complain();
    EXPECT_THAT(capture.messages(), ElementsAre("1 2 missing"));
}

TEST_F(LogTest, NewSinkReplacesOldOneAndReceivesAllFields) {
    std::vector<std::string> first;
    setLogSink([&](const LogRecord& record) { first.push_back(record.text); });
    log("one");
    std::string whole;
    const LogSink old = setLogSink([&](const LogRecord& record) {
        whole = std::string(record.module) + ' ' + record.file + ' ' + std::to_string(record.line) + ' ' +
                record.function + ' ' + record.prettyFunction + ' ' + std::to_string(record.level) + ' ' + record.text;
    });
    log("two");
    EXPECT_EQ(whole, "two file 1 f f() 1 two");
    EXPECT_THAT(first, ElementsAre("one"));
    setLogSink(old);
    log("three");
    EXPECT_THAT(first, ElementsAre("one", "three"));
    setLogSink({});
    CaptureStderr();
    log("four");
    EXPECT_EQ(GetCapturedStderr(), "four[1]: four\n");
}

using Debug::ModuleFilter;

TEST(ModuleFilterTest, EmptyListsAcceptEveryModule) {
    EXPECT_TRUE(ModuleFilter().passes("any"));
    EXPECT_TRUE(ModuleFilter("", " , ").passes("any"));
}

TEST(ModuleFilterTest, AcceptsOnlyProcessedModules) {
    const ModuleFilter filter("network, backup\tfiles", "");
    for (const char* module : {"network", "backup", "files"})
        EXPECT_TRUE(filter.passes(module)) << module;
    for (const char* module : {"net", "networks", ""})
        EXPECT_FALSE(filter.passes(module)) << module;
}

TEST(ModuleFilterTest, IgnoredModuleIsRejectedEvenIfProcessed) {
    EXPECT_FALSE(ModuleFilter("", "backup").passes("backup"));
    EXPECT_TRUE(ModuleFilter("", "backup").passes("network"));
    EXPECT_FALSE(ModuleFilter("backup", "backup").passes("backup"));
}

} // namespace

} // namespace Qel
