#include "qel/cli/Options.h"

#include <algorithm>

namespace Qel::Tool {

const Option* Options::find(std::string_view name) const {
    const auto found = std::find_if(begin(), end(), [&](const Option& option) {
        return option.name == name || (option.letter != '\0' && name == std::string{'-', option.letter});
    });
    return found == end() ? nullptr : &*found;
}

} // namespace Qel::Tool
