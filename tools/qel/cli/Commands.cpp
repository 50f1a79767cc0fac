#include "qel/cli/Command.h"

#include <array>

namespace Qel::Tool {

const std::string& Invocation::string(const std::string& option) const {
    return std::get<std::string>(options.at(option));
}

const std::vector<std::string>& Invocation::strings(const std::string& option) const {
    return std::get<std::vector<std::string>>(options.at(option));
}

int Invocation::integer(const std::string& option) const {
    return std::get<int>(options.at(option));
}

double Invocation::real(const std::string& option) const {
    return std::get<double>(options.at(option));
}

std::span<const CommandGroup> commandGroups() {
    static const std::array groups{
        backupUriCommands(), cacheCommands(),  configCommands(),   envCommands(), eventCommands(), fileCommands(),
        hostCommands(),      infoCommands(),   messageCommands(),  netCommands(), perfCommands(),  poolCommands(),
        profileCommands(),   recordCommands(), scheduleCommands(), sidCommands(), vocCommands()};
    return groups;
}

void addJsonOption(Options& options) {
    options.add({.name = "json", .help = "print JSON"});
}

} // namespace Qel::Tool
