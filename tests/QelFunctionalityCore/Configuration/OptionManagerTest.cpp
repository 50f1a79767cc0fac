#include "QelCommon/OptionManager.h"

#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/LogCapture.h"
#include "support/TempFolder.h"

namespace Qel {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using TestSupport::LogCapture;

constexpr const char* option = "/data/system/configuration/sorting_order";

/// Provides a global configuration file for each test.
class GlobalOptionTest : public ::testing::Test {
protected:
    GlobalOptionTest() { setenv("QEL_ROOT", root.path("").c_str(), 1); }
    ~GlobalOptionTest() override { unsetenv("QEL_ROOT"); }

    void store(const std::string& value) const {
        root.write("etc/qel/qel.conf", "<message><data><system><configuration><sorting_order>" + value +
                                           "</sorting_order></configuration></system></data></message>");
    }

    [[nodiscard]] int get(int& value, int min, int max, bool inclusive) const {
        return oh_get_global_config_option(option, value, min, max, inclusive);
    }

    TestSupport::TempFolder root;
    const std::string file = root.path("etc/qel/qel.conf");
};

TEST_F(GlobalOptionTest, ReadTracesEachStep) {
    store("1");
    const LogCapture log;
    int value = 0;
    EXPECT_EQ(oh_read_global_config_option(option, value), 0);
    EXPECT_EQ(value, 1);
    EXPECT_THAT(log.messages(),
                ElementsAre("4 Calling [oh_read_global_config_option] for /data/system/configuration/sorting_order",
                            "4 [oh_read_global_config_option] read config file from: " + file,
                            "4 Get 1 for /data/system/configuration/sorting_order"));
    for (const LogCapture::Line& line : log.lines()) {
        EXPECT_EQ(line.module, "QelFunctionalityCore");
        EXPECT_EQ(line.function, "oh_read_global_config_option");
    }
}

TEST_F(GlobalOptionTest, FileIsReadAtEachCall) {
    store("1");
    int value = 0;
    EXPECT_EQ(oh_read_global_config_option(option, value), 0);
    store("-5");
    EXPECT_EQ(oh_read_global_config_option(option, value), 0);
    EXPECT_EQ(value, -5);
}

TEST_F(GlobalOptionTest, MissingFileLogsItsPath) {
    const LogCapture log(LogLevel::error);
    int value = 7;
    EXPECT_EQ(oh_read_global_config_option(option, value), 1);
    EXPECT_EQ(value, 7);
    EXPECT_THAT(log.messages(), ElementsAre("1 [oh_read_global_config_option] can't read config file: " + file));
}

TEST_F(GlobalOptionTest, DamagedFileIsLogged) {
    root.write("etc/qel/qel.conf", "<message><data>");
    const LogCapture log(LogLevel::error);
    int value = 7;
    EXPECT_EQ(oh_read_global_config_option(option, value), 1);
    EXPECT_THAT(log.messages(), ElementsAre("1 [oh_read_global_config_option] can't read config file: " + file));
}

TEST_F(GlobalOptionTest, MissingSectionLogsOption) {
    root.write("etc/qel/qel.conf", "<message><data/></message>");
    const LogCapture log(LogLevel::error);
    int value = 7;
    EXPECT_EQ(oh_read_global_config_option(option, value), 1);
    EXPECT_EQ(value, 7);
    EXPECT_THAT(log.messages(),
                ElementsAre("1 [oh_read_global_config_option] Can't seek path: " + std::string(option)));
}

TEST_F(GlobalOptionTest, NonNumericValueLogsResultButNotValue) {
    store("secret");
    const LogCapture log(LogLevel::error);
    int value = 7;
    EXPECT_EQ(oh_read_global_config_option(option, value), 1);
    EXPECT_EQ(value, 7);
    EXPECT_THAT(log.messages(), ElementsAre("1 [oh_read_global_config_option] Can't parse " + std::string(option) +
                                            " option from global config with error 1."));
}

TEST_F(GlobalOptionTest, ValueInRangeIsUsed) {
    store("1");
    const LogCapture log(LogLevel::error);
    int value = 0;
    EXPECT_EQ(get(value, 0, 1, true), 0);
    EXPECT_EQ(value, 1);
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(GlobalOptionTest, ValueOutOfRangeIsLoggedAndDefaultIsKept) {
    store("2");
    const LogCapture log(LogLevel::error);
    int value = 0;
    EXPECT_EQ(get(value, 0, 1, true), 0);
    EXPECT_EQ(value, 0);
    EXPECT_THAT(log.messages(),
                ElementsAre("1 [oh_get_global_config_option] Value : " + std::string(option) + " must be from 0..1"));
}

TEST_F(GlobalOptionTest, ValueOnExclusiveBoundIsRejected) {
    store("0");
    const LogCapture log(LogLevel::error);
    int value = 9;
    EXPECT_EQ(get(value, 0, 5, false), 0);
    EXPECT_EQ(value, 9);
    EXPECT_EQ(log.messages().size(), 1u);
}

TEST_F(GlobalOptionTest, UnreadableValueIsNotRangeChecked) {
    const LogCapture log(LogLevel::error);
    int value = 9;
    EXPECT_EQ(get(value, 0, 1, true), 1);
    EXPECT_EQ(value, 9);
    EXPECT_EQ(log.messages().size(), 1u);
}

} // namespace

} // namespace Qel
