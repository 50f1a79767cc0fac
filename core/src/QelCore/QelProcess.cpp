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
    // Without /proc, and in a process that wiped its arguments, the name it was started under remains.
    return title.empty() ? program_invocation_short_name : title;
}

} // namespace Qel
