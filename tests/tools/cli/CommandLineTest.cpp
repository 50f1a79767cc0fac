#include "qel/cli/CommandLine.h"

#include <algorithm>
#include <streambuf>

#include <gmock/gmock.h>

#include "QelCommon/ControlCharacters.h"
#include "qel/cli/Command.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class HostileArgumentTest : public ToolTest {};

void expectUsageError(const std::vector<std::string>& arguments, const std::string& message) {
    const ToolRun run = runTool(arguments);
    EXPECT_EQ(run.code, ExitCode::usage);
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_EQ(run.err, "qel: " + message + "\n");
}

TEST(CommandLineTest, HelpListsGroups) {
    for (const char* option : {"--help", "-h"}) {
        const ToolRun run = runTool({option});
        EXPECT_EQ(run.code, ExitCode::success);
        EXPECT_THAT(run.out, AllOf(StartsWith("Usage: qel GROUP COMMAND ..."), HasSubstr("\n  cache")));
        EXPECT_THAT(run.err, IsEmpty());
    }
}

TEST(CommandLineTest, GroupHelpListsCommands) {
    const ToolRun run = runTool({"cache", "--help"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, AllOf(StartsWith("Usage: qel cache COMMAND ..."), HasSubstr("\n  check  Check a cache file")));
}

TEST(CommandLineTest, CommandHelpShowsArgumentsAndOptions) {
    const ToolRun run = runTool({"cache", "check", "--help"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, AllOf(StartsWith("Usage: qel cache check CACHE [OPTION...]\n"), HasSubstr("--json")));
}

TEST(CommandLineTest, EveryCommandHasHelp) {
    for (const auto& group : Qel::Tool::commandGroups()) {
        for (const auto& command : group.commands) {
            std::vector<std::string> words{std::string(group.name), std::string(command.name), "--help"};
            std::erase(words, "");
            const ToolRun run = runTool(words);
            EXPECT_EQ(run.code, ExitCode::success) << command.name;
            EXPECT_THAT(run.out, HasSubstr(std::string(command.summary)));
        }
    }
}

const std::string hostile = "\x1B]0;x\x07\n\u009B2J\u202E\x9B";

bool isEscaped(const std::string& output) {
    return Qel::showControls(output, "\n") == output;
}

TEST_F(HostileArgumentTest, CommandsEscapeControlCharactersOfArguments) {
    for (const auto& group : Qel::Tool::commandGroups()) {
        for (const auto& command : group.commands) {
            for (std::size_t count = 0; count < 5; ++count) {
                std::vector<std::string> words{std::string(group.name), std::string(command.name)};
                std::erase(words, "");
                words.insert(words.end(), count, path(hostile));
                const ToolRun run = runTool(words);
                // `host report` prints a message of arbitrary content, independent of the arguments.
                EXPECT_TRUE(group.name == "host" || isEscaped(run.out)) << command.name << ": " << run.out;
                EXPECT_TRUE(isEscaped(run.err)) << command.name << ": " << run.err;
                EXPECT_LE(std::count(run.err.begin(), run.err.end(), '\n'), count + 1) << command.name;
            }
        }
    }
}

TEST_F(HostileArgumentTest, ErrorsEscapeControlCharacters) {
    const ToolRun run = runTool({"event", "show", "\x1B[2J\nqel: all is well\u202E"});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, "qel: \\x1b[2J\\nqel: all is well\\xe2\\x80\\xae: No such file or directory\n");
    expectUsageError({"\x1B"}, "unknown group '\\x1b'; see `qel --help`");
    expectUsageError({"--\x1B"}, "unrecognised option '--\\x1b'; see `qel --help`");
}

TEST_F(HostileArgumentTest, ErrorsEscapeControlCharactersOfFileContent) {
    const ToolRun run =
        runTool({"record", "rewrite", "QelQoS", "-"}, "<message><qos\u009B><id>cpu</id></qos\u009B></message>");
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_THAT(run.err, HasSubstr("\\xc2\\x9b"));
    EXPECT_TRUE(isEscaped(run.err)) << run.err;
}

TEST(CommandLineTest, UnnamedCommandIsInvokedByGroupName) {
    const ToolRun run = runTool({"sid", "--help"});
    EXPECT_THAT(run.out, StartsWith("Usage: qel sid [TEXT] [OPTION...]\n"));
    expectUsageError({"sid", "a", "b"}, "unexpected argument 'b'; see `qel sid --help`");
    expectUsageError({"sid", "--loud"}, "unrecognised option '--loud'; see `qel sid --help`");
}

TEST(CommandLineTest, PrintsVersion) {
    const ToolRun run = runTool({"--version"});
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_THAT(run.out, testing::MatchesRegex("qel [0-9]+\\.[0-9]+\\.[0-9]+\n"));
}

TEST(CommandLineTest, MissingGroupIsUsageError) {
    expectUsageError({}, "missing argument GROUP; see `qel --help`");
}

TEST(CommandLineTest, UnknownGroupIsUsageError) {
    expectUsageError({"cash"}, "unknown group 'cash'; see `qel --help`");
}

TEST(CommandLineTest, MissingCommandIsUsageError) {
    expectUsageError({"cache"}, "missing argument COMMAND; see `qel cache --help`");
}

TEST(CommandLineTest, UnknownCommandIsUsageError) {
    expectUsageError({"cache", "chekc"}, "unknown command 'cache chekc'; see `qel cache --help`");
}

TEST(CommandLineTest, MissingArgumentIsUsageError) {
    expectUsageError({"cache", "check"}, "missing argument CACHE; see `qel cache check --help`");
}

TEST(CommandLineTest, ExtraArgumentIsUsageError) {
    expectUsageError({"cache", "check", "a", "b"}, "unexpected argument 'b'; see `qel cache check --help`");
}

TEST(CommandLineTest, UnknownOptionIsUsageErrorAtAnyPosition) {
    expectUsageError({"--loud"}, "unrecognised option '--loud'; see `qel --help`");
    expectUsageError({"cache", "--loud"}, "unrecognised option '--loud'; see `qel cache --help`");
    expectUsageError({"cache", "check", "a", "--loud"}, "unrecognised option '--loud'; see `qel cache check --help`");
}

TEST(CommandLineTest, AbbreviatedOptionIsUsageError) {
    expectUsageError({"cache", "check", "a", "--js"}, "unrecognised option '--js'; see `qel cache check --help`");
}

TEST(CommandLineTest, DoubleDashEndsOptions) {
    const ToolRun run = runTool({"cache", "check", "--", "--json"});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, "qel: --json: No such file or directory\n");
}

/// A stream buffer that accepts no characters, like a full disk.
struct FullBuffer : std::streambuf {
    int_type overflow(int_type) override { return traits_type::eof(); }
};

TEST(CommandLineTest, FailedWriteToStandardOutputIsReported) {
    FullBuffer full;
    std::istringstream in;
    std::ostream out(&full);
    std::ostringstream err;
    EXPECT_EQ(Qel::Tool::runCommandLine({"--help"}, {in, out, err}), ExitCode::failed);
    EXPECT_EQ(err.str(), "qel: cannot write to standard output\n");
}

} // namespace
