#pragma once

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <functional>

#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Qel::TestSupport {

/// A semaphore between processes: wait() blocks until the other process has called notify().
class Signal {
public:
    Signal() {
        if (pipe(m_ends))
            std::abort();
    }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    ~Signal() {
        close(m_ends[0]);
        close(m_ends[1]);
    }

    void notify() const {
        const char byte = 1;
        if (::write(m_ends[1], &byte, 1) != 1)
            std::abort();
    }
    void wait() const {
        char byte;
        ssize_t got = -1;
        do
            got = ::read(m_ends[0], &byte, 1);
        while (got < 0 && errno == EINTR);
        if (got != 1)
            std::abort();
    }

private:
    int m_ends[2];
};

/// A forked process that runs a function and exits with its result. The destructor kills it if it is still running.
class ChildProcess {
public:
    explicit ChildProcess(const std::function<int()>& main) : m_process(fork()) {
        if (m_process < 0)
            std::abort();
        if (m_process == 0)
            _exit(main());
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess() {
        if (m_process > 0) {
            kill();
            wait();
        }
    }

    /// Exit code of the process, or -1 if a signal ended it.
    int wait() {
        int status = 0;
        while (waitpid(m_process, &status, 0) < 0 && errno == EINTR) {
        }
        m_process = -1;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    void kill() { ::kill(m_process, SIGKILL); }

private:
    pid_t m_process;
};

/// Runs `main` in a forked process and returns its exit code.
inline int inChild(const std::function<int()>& main) {
    return ChildProcess(main).wait();
}

} // namespace Qel::TestSupport
