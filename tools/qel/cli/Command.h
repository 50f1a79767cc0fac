#pragma once

#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "qel/cli/Console.h"
#include "qel/cli/Options.h"

namespace Qel::Tool {

/// The value of an option that is given or has a default; nothing for a flag.
using OptionValue = std::variant<std::monostate, std::string, std::vector<std::string>, int, double>;

/// One command line, parsed: as many arguments as the command takes, and its options.
struct Invocation {
    std::vector<std::string> arguments;
    std::map<std::string, OptionValue> options;

    [[nodiscard]] bool has(const std::string& option) const { return options.count(option) != 0; }
    // The option must have a value of this kind.
    [[nodiscard]] const std::string& text(const std::string& option) const;
    [[nodiscard]] const std::vector<std::string>& texts(const std::string& option) const;
    [[nodiscard]] int integer(const std::string& option) const;
    [[nodiscard]] double real(const std::string& option) const;
};

/// A command of the tool.
struct Command {
    /// Nothing for the only command of a group, which then has the group's name: "qel sid".
    std::string_view name;
    /// Names of the arguments as the help shows them, separated by blanks: "CACHE FILE...".  Each is mandatory unless
    /// it stands in brackets; a last one with an ellipsis takes one or more.
    std::string_view arguments;
    /// One sentence for the list of commands.
    std::string_view summary;
    /// Adds the command's options; null if it has none.
    void (*addOptions)(Options& options);
    ExitCode (*run)(const Invocation& invocation, const Console& console);
};

/// The commands that share a first word: "cache" of "qel cache check".
struct CommandGroup {
    std::string_view name;
    std::string_view summary;
    std::span<const Command> commands;
};

/// All groups, in the order in which the help lists them.
[[nodiscard]] std::span<const CommandGroup> commandGroups();

[[nodiscard]] CommandGroup backupUriCommands();
[[nodiscard]] CommandGroup cacheCommands();
[[nodiscard]] CommandGroup configCommands();
[[nodiscard]] CommandGroup envCommands();
[[nodiscard]] CommandGroup eventCommands();
[[nodiscard]] CommandGroup fileCommands();
[[nodiscard]] CommandGroup hostCommands();
[[nodiscard]] CommandGroup infoCommands();
[[nodiscard]] CommandGroup messageCommands();
[[nodiscard]] CommandGroup netCommands();
[[nodiscard]] CommandGroup perfCommands();
[[nodiscard]] CommandGroup poolCommands();
[[nodiscard]] CommandGroup profileCommands();
[[nodiscard]] CommandGroup recordCommands();
[[nodiscard]] CommandGroup scheduleCommands();
[[nodiscard]] CommandGroup sidCommands();
[[nodiscard]] CommandGroup vocCommands();

/// Adds `--json`, which every command has whose output programs may want.
void addJsonOption(Options& options);

} // namespace Qel::Tool
