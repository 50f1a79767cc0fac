#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

#include "qel/cli/CommandLine.h"

namespace {

/// Fills the places of standard streams that the caller closed.  Otherwise the next file opened, a cache file perhaps,
/// would take the place, and output would be written into it.  The substitutes fail on use, as a closed stream does.
void occupyClosedStreams() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        // open() gives the lowest free descriptor, which is this one when it is closed.
        if (fcntl(descriptor, F_GETFD) == -1)
            (void)open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

} // namespace

int main(int argc, char** argv) {
    occupyClosedStreams();
    // A reader that went away shows as a failed write, like any other, and not as a death by signal.
    std::signal(SIGPIPE, SIG_IGN);
    // And so does a file that grew to the limit of its size.
    std::signal(SIGXFSZ, SIG_IGN);
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return static_cast<int>(Qel::Tool::runCommandLine(arguments, {std::cin, std::cout, std::cerr}));
}
