#include "qel/cli/SignalGuard.h"

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <pthread.h>
#include <unistd.h>

namespace Qel::Tool {

SignalGuard::SignalGuard() : m_guarded(), m_before() {
    sigemptyset(&m_guarded);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT})
        sigaddset(&m_guarded, signal);
    pthread_sigmask(SIG_BLOCK, &m_guarded, &m_before);
}

SignalGuard::~SignalGuard() {
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

bool SignalGuard::waitFor(std::chrono::nanoseconds time) const {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    timespec left{};
    left.tv_sec = static_cast<time_t>(seconds.count());
    left.tv_nsec = static_cast<long>((time - seconds).count());
    // After EINTR the wait restarts with the full timeout, which is precise enough for polling.
    int signal = 0;
    do
        signal = sigtimedwait(&m_guarded, nullptr, &left);
    while (signal < 0 && errno == EINTR);
    return signal > 0;
}

InterruptionAction::InterruptionAction(void (*handler)(int), int flags) : m_before() {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    for (std::size_t i = 0; i < signals.size(); ++i)
        sigaction(signals[i], &action, &m_before[i]);
}

InterruptionAction::~InterruptionAction() {
    for (std::size_t i = 0; i < signals.size(); ++i)
        sigaction(signals[i], &m_before[i], nullptr);
}

EndsWhenInterrupted::EndsWhenInterrupted() : InterruptionAction([](int) { _exit(EXIT_SUCCESS); }, 0) {}

namespace {

volatile std::sig_atomic_t interrupted = 0;

} // namespace

NotesInterruption::NotesInterruption()
    : InterruptionAction([](int) { interrupted = 1; }, static_cast<int>(SA_RESETHAND)) {
    interrupted = 0;
}

bool NotesInterruption::isInterrupted() {
    return interrupted != 0;
}

} // namespace Qel::Tool
