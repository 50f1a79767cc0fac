#pragma once

#include <array>
#include <chrono>
#include <csignal>

namespace Qel::Tool {

/// Keeps the signals that ask a process to end waiting while it lives.
///
/// What is done to a cache is done under such a guard: a process that ends between two steps of a change leaves the
/// file damaged, and one that ends while it holds a snapshot leaves its blocks in use for ever.  No output is written
/// under a guard, since that may wait for a reader.
class SignalGuard {
public:
    SignalGuard();
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;
    /// A signal that came meanwhile takes effect now.
    ~SignalGuard();

    /// Waits for such a signal and takes it.  False if none came in this time.
    [[nodiscard]] bool waitFor(std::chrono::nanoseconds time) const;

private:
    sigset_t m_guarded;
    sigset_t m_before;
};

/// While it lives a signal that asks the process to end has another effect.
class InterruptionAction {
public:
    InterruptionAction(const InterruptionAction&) = delete;
    InterruptionAction& operator=(const InterruptionAction&) = delete;

protected:
    /// `flags` as of sigaction(2).
    InterruptionAction(void (*handler)(int), int flags);
    ~InterruptionAction();

private:
    static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP};

    std::array<struct sigaction, signals.size()> m_before;
};

/// While it lives an interruption ends the process at once, with success: for what goes on until it is interrupted, and
/// holds nothing but under a guard.
class EndsWhenInterrupted : InterruptionAction {
public:
    EndsWhenInterrupted();
};

/// While it lives an interruption is noted, and ends a call that waits; a second one of its kind ends the process.  One
/// at a time: the note is the process's.
class NotesInterruption : InterruptionAction {
public:
    NotesInterruption();

    [[nodiscard]] static bool isInterrupted();
};

} // namespace Qel::Tool
