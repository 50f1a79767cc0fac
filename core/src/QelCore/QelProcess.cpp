#include "QelCore/QelProcess.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <sstream>

#include <sched.h>

namespace Qel {

void schedYield() noexcept {
    sched_yield();
}

std::string getproctitle() {
    std::ostringstream text;
    text << std::ifstream("/proc/self/cmdline", std::ios::binary).rdbuf();
    std::string title = text.str();
    title.erase(title.find_last_not_of('\0') + 1);
    std::replace(title.begin(), title.end(), '\0', ' ');
    // Fall back to the program name if /proc is not mounted or the process has cleared its arguments.
    return title.empty() ? program_invocation_short_name : title;
}

} // namespace Qel
