#include "qel/Command.h"

#include <array>

namespace Qel::Tool {

std::span<const CommandGroup> commandGroups() {
    static const std::array groups{envCommands(),  cacheCommands(),   configCommands(), fileCommands(),
                                   hostCommands(), messageCommands(), recordCommands(), scheduleCommands()};
    return groups;
}

void addJsonOption(boost::program_options::options_description& options) {
    options.add_options()("json", "print JSON, for programs");
}

} // namespace Qel::Tool
