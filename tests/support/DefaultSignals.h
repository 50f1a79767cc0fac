#pragma once

#include <array>
#include <csignal>
#include <cstddef>

namespace Qel::TestSupport {

/// Resets the termination signals to their default action for its lifetime, for this process and its children. Signals
/// that are ignored by the parent of the tests, for example because of nohup, would otherwise be ignored here too.
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
