#include "qel/Command.h"

#include <array>

namespace Qel::Tool {

std::span<const CommandGroup> commandGroups() {
    static const std::array groups{cacheCommands()};
    return groups;
}

} // namespace Qel::Tool
