#include <csignal>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>

#include "qel/cli/CommandLine.h"

namespace {

/// Opens /dev/null for each standard stream that is closed.  Otherwise the next open(), perhaps of a cache file, would
/// reuse descriptor 0, 1 or 2, and output would overwrite that file.  Each substitute is opened in the opposite
/// direction, so that using it fails with EBADF, as a closed stream does.
void occupyClosedStreams() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        // open() returns the lowest free descriptor, which is this one.
        if (fcntl(descriptor, F_GETFD) == -1)
            (void)open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
    }
}

} // namespace

int main(int argc, char** argv) {
    occupyClosedStreams();
    // Report a closed pipe (EPIPE) and a file at its size limit (EFBIG) as failed writes instead of dying by signal.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    std::ios::sync_with_stdio(false);
    const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
    return static_cast<int>(Qel::Tool::runCommandLine(arguments, {std::cin, std::cout, std::cerr}));
}
