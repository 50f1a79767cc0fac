#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tools/ToolRun.h"

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

TEST_F(OptionSetsTest, SavedCommandLineCanBeRunAgain) {
    const ToolRun first = runTool({"message", "convert", message, "-", "--to", "text", "--save-options", set});
    EXPECT_EQ(first.code, ExitCode::success);
    const ToolRun again = runTool({"message", "convert", "--options", set});
    EXPECT_EQ(again.code, ExitCode::success);
    EXPECT_EQ(again.out, first.out);
    EXPECT_THAT(again.out, HasSubstr("<data>x</data>"));
}

TEST_F(OptionSetsTest, FileContainsArgumentsAndOptionsExceptFileOptions) {
    ASSERT_EQ(runTool({"message", "convert", message, "-", "--to=text", "--save-options", set}).code,
              ExitCode::success);
    const std::string content = read(set);
    EXPECT_THAT(content, HasSubstr("<name>to</name>\n    <value>text</value>"));
    EXPECT_THAT(content, HasSubstr("<value>" + message + "</value>"));
    EXPECT_THAT(content, Not(HasSubstr("save-options")));
}

TEST_F(OptionSetsTest, CommandLineOverridesFile) {
    ASSERT_EQ(runTool({"message", "convert", message, "-", "--to", "binary", "--save-options", set}).code,
              ExitCode::success);
    const ToolRun run = runTool({"message", "convert", "--options", set, "--to", "text"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, StartsWith("<?xml"));
    const ToolRun other = runTool({"message", "convert", path("none"), "-", "--options", set});
    EXPECT_EQ(other.err, "qel: " + path("none") + ": No such file or directory\n");
}

TEST_F(OptionSetsTest, SavesFlags) {
    const ToolRun first = runTool({"message", "names", "--json", "--save-options", set});
    EXPECT_EQ(first.code, ExitCode::success);
    const ToolRun again = runTool({"message", "names", "--options", set});
    EXPECT_EQ(again.out, first.out);
    EXPECT_THAT(again.out, StartsWith("{"));
}

TEST_F(OptionSetsTest, LoadedOptionsCanBeExtendedAndSaved) {
    ASSERT_EQ(runTool({"message", "convert", message, "-", "--to", "text", "--save-options", set}).code,
              ExitCode::success);
    const std::string second = path("second");
    ASSERT_EQ(runTool({"message", "convert", "--options", set, "--to", "binary", "--save-options", second}).code,
              ExitCode::success);
    EXPECT_THAT(read(second), HasSubstr("<value>binary</value>"));
    EXPECT_THAT(read(second), Not(HasSubstr("<value>text</value>")));
    EXPECT_THAT(read(second), HasSubstr("<value>" + message + "</value>"));
}

TEST_F(OptionSetsTest, MissingOrDamagedFileIsBadInput) {
    const ToolRun missing = runTool({"message", "names", "--options", path("none")});
    EXPECT_EQ(missing.code, ExitCode::badInput);
    EXPECT_EQ(missing.err, "qel: " + path("none") + ": No such file or directory\n");
    const ToolRun damaged = runTool({"message", "names", "--options", write("damaged", std::string("<message>"))});
    EXPECT_EQ(damaged.code, ExitCode::badInput);
    EXPECT_THAT(damaged.err, HasSubstr("line 1"));
    const std::string two = "<message><option><value>a</value><value>b</value></option></message>";
    const ToolRun positional = runTool({"message", "names", "--options", write("two", two)});
    EXPECT_EQ(positional.code, ExitCode::badInput);
    EXPECT_EQ(positional.err, "qel: " + path("two") + ": not an options file\n");
}

TEST_F(OptionSetsTest, OptionOfAnotherCommandIsBadInput) {
    ASSERT_EQ(runTool({"message", "names", "--json", "--save-options", set}).code, ExitCode::success);
    const ToolRun run = runTool({"message", "convert", message, "-", "--to", "text", "--options", set});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, "qel: " + set + ": unknown option '--json' for this command\n");
    EXPECT_THAT(run.out, IsEmpty());
}

TEST_F(OptionSetsTest, RejectsFileWithFileOptionsAndWritesNothing) {
    const std::string target = write("target", std::string("old"));
    for (const std::string name : {"save-options", "options"}) {
        const std::string hostile = write("hostile", "<message><option><name>" + name + "</name><value>" + target +
                                                         "</value></option></message>");
        const ToolRun run = runTool({"message", "names", "--options", hostile});
        EXPECT_EQ(run.code, ExitCode::badInput);
        EXPECT_EQ(run.err, "qel: " + hostile + ": option '--" + name +
                               "' is only allowed on the command line; remove it from the file\n");
        EXPECT_THAT(run.out, IsEmpty());
    }
    EXPECT_EQ(read(target), "old");
}

TEST_F(OptionSetsTest, SavedFileIsAccessibleByOwnerOnly) {
    const mode_t mask = umask(0);
    EXPECT_EQ(runTool({"message", "names", "--json", "--save-options", set}).code, ExitCode::success);
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat(set.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(OptionSetsTest, WritesToPipeAndFollowsSymbolicLink) {
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    const int reader = open(path("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    EXPECT_EQ(runTool({"message", "names", "--json", "--save-options", path("pipe")}).code, ExitCode::success);
    std::string start(5, '\0');
    EXPECT_EQ(::read(reader, start.data(), start.size()), 5);
    EXPECT_EQ(start, "<?xml");
    close(reader);
    EXPECT_TRUE(std::filesystem::is_fifo(path("pipe")));

    std::filesystem::create_symlink("options", path("link"));
    EXPECT_EQ(runTool({"message", "names", "--json", "--save-options", path("link")}).code, ExitCode::success);
    EXPECT_TRUE(std::filesystem::is_symlink(path("link")));
    EXPECT_THAT(read(set), StartsWith("<?xml"));
}

TEST_F(OptionSetsTest, ReadOnlyFileIsNotReplaced) {
    (void)write("options", std::string("old"));
    ASSERT_EQ(chmod(set.c_str(), 0444), 0);
    const ToolRun run = runTool({"message", "names", "--save-options", set});
    EXPECT_EQ(run.code, ExitCode::failed);
    EXPECT_EQ(run.err, "qel: " + set + ": Permission denied\n");
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_EQ(read(set), "old");
}

TEST_F(OptionSetsTest, FailedSaveIsReportedBeforeCommandRuns) {
    const ToolRun run = runTool({"message", "names", "--save-options", path("none/options")});
    EXPECT_EQ(run.code, ExitCode::failed);
    EXPECT_THAT(run.err, HasSubstr("No such file or directory"));
    EXPECT_THAT(run.out, IsEmpty());
}

TEST_F(OptionSetsTest, InvalidCommandLineIsNotSaved) {
    EXPECT_EQ(runTool({"message", "convert", message, "--to", "text", "--save-options", set}).code, ExitCode::usage);
    EXPECT_FALSE(std::filesystem::exists(set));
}

} // namespace
