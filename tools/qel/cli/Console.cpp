#include "qel/cli/Console.h"

#include <ostream>

#include "QelCommon/ControlCharacters.h"

namespace Qel::Tool {

ExitCode Console::fail(ExitCode code, std::string_view text) const {
    err << "qel: " << showControls(text) << '\n';
    return code;
}

} // namespace Qel::Tool
