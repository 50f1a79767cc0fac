#include <gmock/gmock.h>

#include "ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class OptionSetsTest : public ToolTest {
protected:
    void SetUp() override {
        message = write("message.xml", std::string("<message><data>x</data></message>"));
        set = path("options");
    }

    std::string message;
    std::string set;
};

TEST_F(OptionSetsTest, ASavedCommandLineCanBeRunAgain) {
    const ToolRun first = runTool({"message", "convert", message, "-", "--to", "text", "--save-options", set});
    EXPECT_EQ(first.code, ExitCode::success);
    const ToolRun again = runTool({"message", "convert", "--options", set});
    EXPECT_EQ(again.code, ExitCode::success);
    EXPECT_EQ(again.out, first.out);
    EXPECT_THAT(again.out, HasSubstr("<data>x</data>"));
}

TEST_F(OptionSetsTest, TheFileHoldsTheArgumentsAndTheOptionsButNotItsOwn) {
    ASSERT_EQ(runTool({"message", "convert", message, "-", "--to=text", "--save-options", set}).code,
              ExitCode::success);
    const std::string content = read(set);
    EXPECT_THAT(content, HasSubstr("<name>to</name>\n    <value>text</value>"));
    EXPECT_THAT(content, HasSubstr("<value>" + message + "</value>"));
    EXPECT_THAT(content, Not(HasSubstr("save-options")));
}

TEST_F(OptionSetsTest, WhatTheCommandLineSaysGoesBeforeTheFile) {
    ASSERT_EQ(runTool({"message", "convert", message, "-", "--to", "binary", "--save-options", set}).code,
              ExitCode::success);
    const ToolRun run = runTool({"message", "convert", "--options", set, "--to", "text"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, StartsWith("<?xml"));
    const ToolRun other = runTool({"message", "convert", path("none"), "-", "--options", set});
    EXPECT_EQ(other.err, "qel: " + path("none") + ": No such file or directory\n");
}

TEST_F(OptionSetsTest, AFlagIsKeptToo) {
    const ToolRun first = runTool({"message", "names", "--json", "--save-options", set});
    EXPECT_EQ(first.code, ExitCode::success);
    const ToolRun again = runTool({"message", "names", "--options", set});
    EXPECT_EQ(again.out, first.out);
    EXPECT_THAT(again.out, StartsWith("{"));
}

TEST_F(OptionSetsTest, ALoadedSetCanBeSavedWithWhatWasAdded) {
    ASSERT_EQ(runTool({"message", "convert", message, "-", "--to", "text", "--save-options", set}).code,
              ExitCode::success);
    const std::string second = path("second");
    ASSERT_EQ(runTool({"message", "convert", "--options", set, "--to", "binary", "--save-options", second}).code,
              ExitCode::success);
    EXPECT_THAT(read(second), HasSubstr("<value>binary</value>"));
    EXPECT_THAT(read(second), Not(HasSubstr("<value>text</value>")));
    EXPECT_THAT(read(second), HasSubstr("<value>" + message + "</value>"));
}

TEST_F(OptionSetsTest, AMissingOrDamagedFileIsBadInput) {
    const ToolRun missing = runTool({"message", "names", "--options", path("none")});
    EXPECT_EQ(missing.code, ExitCode::badInput);
    EXPECT_EQ(missing.err, "qel: " + path("none") + ": No such file or directory\n");
    const ToolRun damaged = runTool({"message", "names", "--options", write("damaged", std::string("<message>"))});
    EXPECT_EQ(damaged.code, ExitCode::badInput);
    EXPECT_THAT(damaged.err, HasSubstr("line 1"));
    const std::string two = "<message><option><value>a</value><value>b</value></option></message>";
    const ToolRun positional = runTool({"message", "names", "--options", write("two", two)});
    EXPECT_EQ(positional.code, ExitCode::badInput);
    EXPECT_EQ(positional.err, "qel: " + path("two") + ": holds no options\n");
}

TEST_F(OptionSetsTest, AnOptionOfAnotherCommandIsBadInput) {
    ASSERT_EQ(runTool({"message", "names", "--json", "--save-options", set}).code, ExitCode::success);
    const ToolRun run = runTool({"message", "convert", message, "-", "--to", "text", "--options", set});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, "qel: " + set + ": this command has no option '--json'\n");
    EXPECT_THAT(run.out, IsEmpty());
}

TEST_F(OptionSetsTest, AFileThatCannotBeWrittenIsAFailureBeforeTheCommandRuns) {
    const ToolRun run = runTool({"message", "names", "--save-options", path("none/options")});
    EXPECT_EQ(run.code, ExitCode::failed);
    EXPECT_THAT(run.err, HasSubstr("No such file or directory"));
    EXPECT_THAT(run.out, IsEmpty());
}

TEST_F(OptionSetsTest, ACommandLineThatIsWrongIsNotSaved) {
    EXPECT_EQ(runTool({"message", "convert", message, "--to", "text", "--save-options", set}).code, ExitCode::usage);
    EXPECT_FALSE(std::filesystem::exists(set));
}

} // namespace
