#include "qel/cli/Console.h"

#include <ostream>

#include "QelCommon/ControlCharacters.h"

namespace Qel::Tool {

ExitCode Console::fail(ExitCode code, std::string_view message) const {
    err << "qel: " << showControls(message) << '\n';
    return code;
}

} // namespace Qel::Tool
