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

/// The value of an option, given or by default; std::monostate for a flag.
using OptionValue = std::variant<std::monostate, std::string, std::vector<std::string>, int, double>;

/// A parsed command line.  The number of arguments and the option values are valid for the command.
struct Invocation {
    std::vector<std::string> arguments;
    std::map<std::string, OptionValue> options;

    [[nodiscard]] bool has(const std::string& option) const { return options.count(option) != 0; }
    // These require the option to have a value of the requested kind.
    [[nodiscard]] const std::string& string(const std::string& option) const;
    [[nodiscard]] const std::vector<std::string>& strings(const std::string& option) const;
    [[nodiscard]] int integer(const std::string& option) const;
    [[nodiscard]] double real(const std::string& option) const;
};

/// A command of the tool.
struct Command {
    /// Empty for the only command of a group, which is called by the group's name: "qel sid".
    std::string_view name;
    /// Argument names as shown in the help, separated by spaces: "CACHE FILE...".  A name in brackets is optional; an
    /// ellipsis after the last name allows more than one.
    std::string_view arguments;
    /// One line for the list of commands.
    std::string_view summary;
    /// Adds the command's options; null if it has none.
    void (*addOptions)(Options& options);
    ExitCode (*run)(const Invocation& invocation, const Console& console);
};

/// The commands with a common first word, such as "cache" in "qel cache check".
struct CommandGroup {
    std::string_view name;
    std::string_view summary;
    std::span<const Command> commands;
};

/// All groups, in help order.
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

/// Adds `--json`.  A command with this option prints its result through Output.
void addJsonOption(Options& options);

} // namespace Qel::Tool
