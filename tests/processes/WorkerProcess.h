#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

namespace Qel::TestSupport {

/// A process that runs a worker program on a cache file.  The destructor kills it if it is still running.  Standard
/// error is redirected to the file `CACHE.errors`.
class WorkerProcess {
public:
    WorkerProcess(const std::string& program, const std::string& cacheFile);
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;
    ~WorkerProcess();

    void send(const std::string& command) const;
    /// Reads the next answer; nullopt if the process has ended.
    [[nodiscard]] std::optional<std::string> receive();
    /// Sends a command and returns its answer, or "ended".
    std::string ask(const std::string& command);

    void kill() const;
    /// Closes the command channel, which ends the process, and waits for it.  Returns the exit code, or the negated
    /// number of the signal that killed the process.
    int finish();

private:
    void closeChannel();

    pid_t m_process = -1;
    int m_channel = -1;
    std::string m_received; // but not returned yet
};

} // namespace Qel::TestSupport
