#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>

namespace Qel::Tool {

/// A number of bytes in the largest binary unit that it fills: "512 B", "1.5 KiB".
[[nodiscard]] std::string describeBytes(double bytes);

/// How far a transfer is, in one line of at most `width` characters: a bar if there is room for one, the share, the
/// bytes, their rate, and the time left; once all is there, the time that it took.  A total that was exceeded counts as
/// reached.
[[nodiscard]] std::string progressLine(long long moved, long long total, std::chrono::duration<double> elapsed,
                                       std::size_t width);

/// Shows on a terminal how far a transfer is, on a line that is drawn anew a few times in a second.
class TransferProgress {
public:
    using Clock = std::chrono::steady_clock;

    /// `width`: characters in a line of the terminal.
    TransferProgress(std::ostream& out, long long total, std::size_t width);
    TransferProgress(const TransferProgress&) = delete;
    TransferProgress& operator=(const TransferProgress&) = delete;
    /// Draws the last state and leaves the line.
    ~TransferProgress();

    void show(long long moved, Clock::time_point now = Clock::now());
    /// The bytes that were moved last are all that there are, whatever the total was expected to be.
    void complete() { m_total = m_moved; }

private:
    void draw(Clock::time_point now);

    std::ostream& m_out;
    long long m_total;
    std::size_t m_width;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_next = m_start;
    long long m_moved = 0;
};

} // namespace Qel::Tool
