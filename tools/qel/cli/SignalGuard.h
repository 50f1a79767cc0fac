#pragma once

#include <array>
#include <chrono>
#include <csignal>

namespace Qel::Tool {

/// Blocks the termination signals SIGINT, SIGTERM, SIGHUP and SIGQUIT in the calling thread during its lifetime.
///
/// Every cache access runs under a guard.  A process that is terminated in the middle of a change leaves the file
/// damaged; one that is terminated while holding a snapshot leaks its blocks.  Nothing is printed under a guard, since
/// a write may block until a reader drains the pipe.
class SignalGuard {
public:
    SignalGuard();
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;
    /// Restores the signal mask; pending signals are delivered.
    ~SignalGuard();

    /// Waits for a blocked signal and consumes it.  Returns false on timeout.
    [[nodiscard]] bool waitFor(std::chrono::nanoseconds time) const;

private:
    sigset_t m_guarded;
    sigset_t m_before;
};

/// Installs a handler for SIGINT, SIGTERM and SIGHUP during its lifetime.
class InterruptionAction {
public:
    InterruptionAction(const InterruptionAction&) = delete;
    InterruptionAction& operator=(const InterruptionAction&) = delete;

protected:
    /// `flags`: sa_flags of sigaction(2).
    InterruptionAction(void (*handler)(int), int flags);
    ~InterruptionAction();

private:
    static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP};

    std::array<struct sigaction, signals.size()> m_before;
};

/// Makes an interruption end the process at once with exit status 0.  For commands that run until interrupted and hold
/// resources under a SignalGuard only.
class EndsWhenInterrupted : InterruptionAction {
public:
    EndsWhenInterrupted();
};

/// Records an interruption in a process-wide flag and makes blocking calls fail with EINTR.  A second signal of the
/// same number terminates the process.  At most one instance may exist at a time.
class NotesInterruption : InterruptionAction {
public:
    NotesInterruption();

    [[nodiscard]] static bool isInterrupted();
};

} // namespace Qel::Tool
