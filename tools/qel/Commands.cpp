#include "qel/Command.h"

#include <array>

namespace Qel::Tool {

std::span<const CommandGroup> commandGroups() {
    static const std::array groups{
        backupUriCommands(), cacheCommands(),  configCommands(),   envCommands(), eventCommands(), fileCommands(),
        hostCommands(),      infoCommands(),   messageCommands(),  netCommands(), perfCommands(),  poolCommands(),
        profileCommands(),   recordCommands(), scheduleCommands(), sidCommands(), vocCommands()};
    return groups;
}

void addJsonOption(boost::program_options::options_description& options) {
    options.add_options()("json", "print JSON, for programs");
}

} // namespace Qel::Tool
