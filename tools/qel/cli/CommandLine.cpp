#include "qel/cli/CommandLine.h"

#include <algorithm>
#include <new>
#include <optional>
#include <ostream>
#include <sstream>

#include <poll.h>
#include <unistd.h>

#include "QelMessage/QelFileLock.h"
#include "qel/cli/Command.h"
#include "qel/cli/LogSettings.h"
#include "qel/cli/OptionParser.h"
#include "qel/cli/OptionSets.h"
#include "qel/cli/Output.h"

namespace Qel::Tool {

namespace {

using Words = std::vector<std::string>;

constexpr std::string_view ellipsis = "...";

void addCommonOptions(Options& options) {
    options.add({.name = "help", .letter = 'h', .help = "show this help"});
}

/// Parses a command line without options files.  Returns an error message, or std::nullopt on success.
std::optional<std::string> parse(const Words& words, const Options& options, Invocation& invocation) {
    OptionSet given;
    const auto error = parseWords(words, options, given);
    return error ? error : makeInvocation(given, options, invocation);
}

/// Removes the leading options from `words` and returns them.
Words takeLeadingOptions(Words& words) {
    const auto first =
        std::find_if(words.begin(), words.end(), [](const auto& word) { return !word.starts_with('-'); });
    Words options(words.begin(), first);
    words.erase(words.begin(), first);
    return options;
}

Words splitAtBlanks(std::string_view string) {
    std::istringstream stream{std::string(string)};
    Words words;
    for (std::string word; stream >> word;)
        words.push_back(word);
    return words;
}

/// Checks the number of arguments.  Returns an error message, or std::nullopt if it is correct.
std::optional<std::string> findArgumentError(const Command& command, const Words& arguments) {
    const Words names = splitAtBlanks(command.arguments);
    if (arguments.size() < names.size() && !names[arguments.size()].starts_with('['))
        return "missing argument " + names[arguments.size()];
    if (arguments.size() > names.size() && !command.arguments.ends_with(ellipsis))
        return "unexpected argument '" + arguments[names.size()] + "'";
    return std::nullopt;
}

template <class Named> const Named* findByName(std::span<const Named> all, std::string_view name) {
    const auto found = std::find_if(all.begin(), all.end(), [&](const Named& each) { return each.name == name; });
    return found == all.end() ? nullptr : &*found;
}

template <class Named> void printSummaries(std::ostream& out, std::span<const Named> all) {
    Table table;
    for (const Named& each : all)
        table.addRow({"  " + std::string(each.name), std::string(each.summary)});
    table.print(out);
}

/// The words that invoke the command, such as "qel cache check".
std::string wordsOf(const CommandGroup& group, const Command& command) {
    const std::string words = "qel " + std::string(group.name);
    return command.name.empty() ? words : words + ' ' + std::string(command.name);
}

std::string usageOf(const CommandGroup& group, const Command& command) {
    std::string usage = wordsOf(group, command);
    if (!command.arguments.empty())
        usage += ' ' + std::string(command.arguments);
    return usage;
}

/// Reports a usage error with a pointer to the help.
ExitCode failUsage(const Console& console, const std::string& reason, const std::string& words) {
    return console.fail(ExitCode::usage, reason + "; see `" + words + " --help`");
}

ExitCode runCommand(const CommandGroup& group, const Command& command, const Words& words, const Console& console) {
    const std::string self = wordsOf(group, command);
    Options options;
    if (command.addOptions)
        command.addOptions(options);
    addOptionSetOptions(options);
    addLogOption(options);
    addCommonOptions(options);

    OptionSet given;
    Invocation invocation;
    QelFileLock optionsLock;
    if (const auto error = parseWords(words, options, given))
        return failUsage(console, *error, self);
    if (const ExitCode code = lockOptions(given, optionsLock, console); code != ExitCode::success)
        return code;
    if (const ExitCode code = loadOptions(given, options, console); code != ExitCode::success)
        return code;
    if (const auto error = makeInvocation(given, options, invocation))
        return failUsage(console, *error, self);
    if (invocation.has("help")) {
        console.out << "Usage: " << usageOf(group, command) << " [OPTION...]\n" << command.summary << "\n\n";
        printOptions(console.out, options);
        return ExitCode::success;
    }
    if (const auto error = findArgumentError(command, invocation.arguments))
        return failUsage(console, *error, self);
    if (const ExitCode code = saveOptions(given, console); code != ExitCode::success)
        return code;
    optionsLock.release(); // the command may run for a long time, or lock this file itself
    if (const ExitCode code = applyLogSettings(invocation, console); code != ExitCode::success)
        return code;
    return command.run(invocation, console);
}

ExitCode runGroup(const CommandGroup& group, Words words, const Console& console) {
    if (group.commands.front().name.empty())
        return runCommand(group, group.commands.front(), words, console);
    const std::string self = "qel " + std::string(group.name);
    Options options;
    addCommonOptions(options);
    Invocation leading;
    if (const auto error = parse(takeLeadingOptions(words), options, leading))
        return failUsage(console, *error, self);
    if (leading.has("help")) {
        console.out << "Usage: " << self << " COMMAND ...\n" << group.summary << "\n\nCommands:\n";
        printSummaries(console.out, group.commands);
        return ExitCode::success;
    }
    if (words.empty())
        return failUsage(console, "missing argument COMMAND", self);
    const Command* command = findByName(group.commands, words.front());
    if (!command)
        return failUsage(console, "unknown command '" + std::string(group.name) + ' ' + words.front() + "'", self);
    return runCommand(group, *command, Words(words.begin() + 1, words.end()), console);
}

ExitCode runTool(Words words, const Console& console) {
    Options options;
    addCommonOptions(options);
    options.add({.name = "version", .help = "show the version"});
    Invocation leading;
    if (const auto error = parse(takeLeadingOptions(words), options, leading))
        return failUsage(console, *error, "qel");
    if (leading.has("help")) {
        console.out << "Usage: qel GROUP COMMAND ...\n"
                    << "Inspect and edit message files, environment records and the shared cache\n\nGroups:\n";
        printSummaries(console.out, commandGroups());
        console.out << '\n';
        printOptions(console.out, options);
        return ExitCode::success;
    }
    if (leading.has("version")) {
        console.out << "qel " << QEL_VERSION << '\n';
        return ExitCode::success;
    }
    if (words.empty())
        return failUsage(console, "missing argument GROUP", "qel");
    const CommandGroup* group = findByName(commandGroups(), words.front());
    if (!group)
        return failUsage(console, "unknown group '" + words.front() + "'", "qel");
    return runGroup(*group, Words(words.begin() + 1, words.end()), console);
}

/// Whether standard output is a pipe or socket without readers.
bool hasLostReader() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
}

ExitCode runReportingOutOfMemory(const std::vector<std::string>& arguments, const Console& console) {
    try {
        return runTool(arguments, console);
    } catch (const std::bad_alloc&) {
        return console.fail(ExitCode::failed, "out of memory");
    }
}

} // namespace

ExitCode runCommandLine(const std::vector<std::string>& arguments, const Console& console) {
    const ExitCode code = runReportingOutOfMemory(arguments, console);
    console.out.flush();
    if (console.out)
        return code;
    // A reader such as head(1) may close the pipe early; that is not reported.
    return hasLostReader() ? ExitCode::failed : console.fail(ExitCode::failed, "cannot write to standard output");
}

} // namespace Qel::Tool
