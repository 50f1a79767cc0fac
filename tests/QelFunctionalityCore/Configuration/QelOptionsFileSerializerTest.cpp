#include "QelFunctionalityCore/Configuration/QelOptionsFileSerializer.h"

#include <filesystem>

#include <boost/program_options/option.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace Qel {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Option = boost::program_options::basic_option<char>;
using Options = QelProgramOptions::Options;

std::vector<std::string> shown(const Options& options) {
    std::vector<std::string> lines;
    for (const Option& option : options) {
        std::string line = option.string_key + ":";
        for (const std::string& value : option.value)
            line += ' ' + value;
        lines.push_back(line);
    }
    return lines;
}

class QelOptionsFileSerializerTest : public ::testing::Test {
protected:
    int readElements(const std::string& elements, Options& options) const {
        folder.write("options", "<message>" + elements + "</message>");
        return file.read(options);
    }

    TestSupport::TempFolder folder;
    QelOptionsFileSerializer file{folder.path("options")};
    Options former{Option("former", {"x"})};
};

TEST_F(QelOptionsFileSerializerTest, NamesValuesAndOrderSurviveRoundTrip) {
    const Options written{Option("to", {"text", "binary"}), Option("", {"in.xml"}), Option("depth", {""})};
    ASSERT_EQ(file.write(written), 0);
    ASSERT_EQ(file.read(former), 0);
    EXPECT_THAT(shown(former), ElementsAre("to: text binary", ": in.xml", "depth: "));
    EXPECT_EQ(former[2].value.size(), 1u);
}

TEST_F(QelOptionsFileSerializerTest, EmptySetIsWrittenAsFile) {
    ASSERT_EQ(file.write(former), 0);
    ASSERT_EQ(file.write({}), 0);
    EXPECT_EQ(file.read(former), 0);
    EXPECT_THAT(former, IsEmpty());
}

TEST_F(QelOptionsFileSerializerTest, OptionWithoutValuesFailsAndWritesNoFile) {
    EXPECT_EQ(file.write({Option("to", {"text"}), Option("json", {})}), -1);
    EXPECT_FALSE(std::filesystem::exists(folder.path("options")));
    ASSERT_EQ(file.write(former), 0);
    EXPECT_EQ(file.write({Option("", {})}), -1);
    Options kept;
    EXPECT_EQ(file.read(kept), 0);
    EXPECT_THAT(shown(kept), ElementsAre("former: x"));
}

TEST_F(QelOptionsFileSerializerTest, UnwritableFileFails) {
    EXPECT_EQ(QelOptionsFileSerializer(folder.path("none/options")).write(former), -1);
}

TEST_F(QelOptionsFileSerializerTest, MissingOrDamagedFileLeavesOptionsUnchanged) {
    EXPECT_EQ(file.read(former), -1);
    folder.write("options", "<message><option>");
    EXPECT_EQ(file.read(former), -1);
    EXPECT_THAT(shown(former), ElementsAre("former: x"));
}

TEST_F(QelOptionsFileSerializerTest, PositionalOptionHasExactlyOneValue) {
    for (const char* values : {"", "<value>a</value><value>b</value>"}) {
        EXPECT_EQ(
            readElements("<option><name>n</name><value>v</value></option><option>" + std::string(values) + "</option>",
                         former),
            -1);
        EXPECT_THAT(shown(former), ElementsAre("former: x")) << values;
    }
    EXPECT_EQ(readElements("<option><name/><value>a</value></option>", former), 0);
    EXPECT_THAT(shown(former), ElementsAre(": a"));
}

TEST_F(QelOptionsFileSerializerTest, ValuesOfSameNameAreMergedIntoFirst) {
    EXPECT_EQ(readElements("<option><name>a</name><value>1</value><value>2</value></option>"
                           "<option><name>b</name><value>3</value></option>"
                           "<option><name>a</name><value>4</value></option>",
                           former),
              0);
    EXPECT_THAT(shown(former), ElementsAre("a: 1 2 4", "b: 3"));
}

TEST_F(QelOptionsFileSerializerTest, PositionalOptionsAreNotMerged) {
    EXPECT_EQ(readElements("<option><value>1</value></option><option><value>1</value></option>", former), 0);
    EXPECT_THAT(shown(former), ElementsAre(": 1", ": 1"));
}

TEST_F(QelOptionsFileSerializerTest, NamedOptionWithoutValuesIsRead) {
    EXPECT_EQ(readElements("<option><name>json</name></option>", former), 0);
    EXPECT_THAT(shown(former), ElementsAre("json:"));
}

TEST_F(QelOptionsFileSerializerTest, OtherElementsAreSkipped) {
    EXPECT_EQ(readElements("<data/><option><name>a</name><value>1</value></option><data/>", former), 0);
    EXPECT_THAT(shown(former), ElementsAre("a: 1"));
}

} // namespace

} // namespace Qel
