#pragma once

#include <array>
#include <csignal>
#include <cstddef>

namespace Qel::TestSupport {

/// While it lives, the signals that ask a process to end have their default effect, here and in processes that are
/// started.  Otherwise a signal that the parent of the tests ignores, as nohup does, would be ignored here too.
class DefaultSignals {
public:
    DefaultSignals() {
        for (std::size_t i = 0; i < signals.size(); ++i)
            m_before[i] = std::signal(signals[i], SIG_DFL);
    }
    DefaultSignals(const DefaultSignals&) = delete;
    DefaultSignals& operator=(const DefaultSignals&) = delete;
    ~DefaultSignals() {
        for (std::size_t i = 0; i < signals.size(); ++i)
            std::signal(signals[i], m_before[i]);
    }

private:
    static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

    std::array<void (*)(int), signals.size()> m_before{};
};

} // namespace Qel::TestSupport
