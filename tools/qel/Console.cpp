#include "qel/Console.h"

#include <ostream>

namespace Qel::Tool {

ExitCode Console::fail(ExitCode code, std::string_view text) const {
    err << "qel: " << text << '\n';
    return code;
}

} // namespace Qel::Tool
