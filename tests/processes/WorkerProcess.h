#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

namespace Qel::TestSupport {

/// A process of its own that runs a worker program on a cache file; killed if it still runs at the end.  What it says
/// on standard error goes to the file `CACHE.errors`.
class WorkerProcess {
public:
    WorkerProcess(const std::string& program, const std::string& cacheFile);
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;
    ~WorkerProcess();

    void send(const std::string& command) const;
    /// The next line of answer; nothing when the process has ended.
    [[nodiscard]] std::optional<std::string> receive();
    /// Sends a command and gives its answer, or "ended".
    std::string ask(const std::string& command);

    void kill() const;
    /// Lets the process come to its end, which it does once there are no more commands.  Its exit code, or minus the
    /// number of the signal that ended it.
    int finish();

private:
    void closeChannel();

    pid_t m_process = -1;
    int m_channel = -1;
    std::string m_received; // and not asked for yet
};

} // namespace Qel::TestSupport
