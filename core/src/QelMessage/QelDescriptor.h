#pragma once

#include <cerrno>
#include <unistd.h>

namespace Qel {

/// The result of a system call, which is repeated while signals interrupt it.
template <class Call> auto retried(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// The owner of an open file.
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
    /// False, with errno, if the file system reports only now that a write failed.
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
