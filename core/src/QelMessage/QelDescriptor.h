#pragma once

#include <cerrno>
#include <unistd.h>

namespace Qel {

/// Repeats a system call while it is interrupted by signals (EINTR) and returns its result.
template <class Call> auto retried(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// Owns an open file descriptor.
class QelDescriptor {
public:
    explicit QelDescriptor(int descriptor = -1) noexcept : m_descriptor(descriptor) {}
    QelDescriptor(QelDescriptor&& other) noexcept : m_descriptor(other.release()) {}
    QelDescriptor& operator=(QelDescriptor&& other) noexcept {
        static_cast<void>(close());
        m_descriptor = other.release();
        return *this;
    }
    ~QelDescriptor() { static_cast<void>(close()); }

    [[nodiscard]] bool isOpen() const noexcept { return m_descriptor >= 0; }
    [[nodiscard]] int get() const noexcept { return m_descriptor; }
    /// Returns false with errno set if the file system reports a deferred write error.
    [[nodiscard]] bool close() noexcept {
        const int descriptor = release();
        return descriptor < 0 || ::close(descriptor) == 0;
    }

private:
    int release() noexcept {
        const int descriptor = m_descriptor;
        m_descriptor = -1;
        return descriptor;
    }

    int m_descriptor;
};

} // namespace Qel
