#pragma once

#include <array>
#include <optional>
#include <string>

#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Qel::Tool {

/// The terminal output of a program and its wait status.
struct TerminalRun {
    std::string out;
    int status;
};

/// Runs a shell command on a pseudo-terminal with 24 lines of 100 characters.  Returns std::nullopt if pseudo-terminals
/// are not available, as in some containers.
inline std::optional<TerminalRun> runOnTerminal(const std::string& command) {
    int terminal = -1;
    winsize size{};
    size.ws_row = 24;
    size.ws_col = 100;
    const pid_t process = forkpty(&terminal, nullptr, nullptr, &size);
    if (process < 0)
        return {};
    if (process == 0) {
        execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
        _exit(127);
    }
    TerminalRun run{};
    std::array<char, 4096> part{};
    for (ssize_t length = 0; (length = ::read(terminal, part.data(), part.size())) > 0;)
        run.out.append(part.data(), static_cast<std::size_t>(length));
    close(terminal);
    waitpid(process, &run.status, 0);
    return run;
}

} // namespace Qel::Tool
