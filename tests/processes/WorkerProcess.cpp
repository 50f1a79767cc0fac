#include "WorkerProcess.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Qel::TestSupport {

namespace {

void require(bool fulfilled) {
    if (!fulfilled)
        std::abort();
}

} // namespace

WorkerProcess::WorkerProcess(const std::string& program, const std::string& cacheFile) {
    int ends[2];
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
    m_channel = ends[0];
    const std::string errors = cacheFile + ".errors";
    posix_spawn_file_actions_t actions;
    require(posix_spawn_file_actions_init(&actions) == 0);
    require(posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO) == 0);
    require(posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO) == 0);
    require(posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_APPEND,
                                             S_IRUSR | S_IWUSR) == 0);
    std::string name = program;
    std::string file = cacheFile;
    const std::array<char*, 3> arguments{name.data(), file.data(), nullptr};
    require(posix_spawn(&m_process, program.c_str(), &actions, nullptr, arguments.data(), environ) == 0);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
}

WorkerProcess::~WorkerProcess() {
    if (m_process > 0) {
        kill();
        finish();
    }
}

void WorkerProcess::send(const std::string& command) const {
    const std::string line = command + '\n';
    // Ignore a failure: receive() reports that the process has ended.
    static_cast<void>(::send(m_channel, line.data(), line.size(), MSG_NOSIGNAL));
}

std::optional<std::string> WorkerProcess::receive() {
    std::size_t end;
    while ((end = m_received.find('\n')) == std::string::npos) {
        std::array<char, 4096> buffer;
        const ssize_t count = ::recv(m_channel, buffer.data(), buffer.size(), 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return std::nullopt;
        m_received.append(buffer.data(), static_cast<std::size_t>(count));
    }
    std::string line = m_received.substr(0, end);
    m_received.erase(0, end + 1);
    return line;
}

std::string WorkerProcess::ask(const std::string& command) {
    send(command);
    return receive().value_or("ended");
}

void WorkerProcess::kill() const {
    ::kill(m_process, SIGKILL);
}

int WorkerProcess::finish() {
    closeChannel();
    int status = 0;
    while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
    }
    m_process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

void WorkerProcess::closeChannel() {
    close(m_channel);
    m_channel = -1;
}

} // namespace Qel::TestSupport
