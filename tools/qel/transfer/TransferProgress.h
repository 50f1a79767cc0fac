#pragma once

#include <chrono>
#include <cstddef>
#include <iosfwd>
#include <string>

namespace Qel::Tool {

/// A number of bytes in the largest suitable binary unit: "512 B", "1.5 KiB".
[[nodiscard]] std::string describeBytes(double bytes);

/// A progress line of at most `width` characters: a bar if there is room for one, the percentage, the bytes, the rate,
/// and the remaining time, or the elapsed time of a complete transfer.  If `moved` exceeds `total`, the transfer counts
/// as complete.
[[nodiscard]] std::string progressLine(long long moved, long long total, std::chrono::duration<double> elapsed,
                                       std::size_t width);

/// Shows the progress of a transfer in a terminal, on a line that is redrawn up to ten times per second.
class TransferProgress {
public:
    using Clock = std::chrono::steady_clock;

    /// `width`: number of columns of the terminal.
    TransferProgress(std::ostream& out, long long total, std::size_t width);
    TransferProgress(const TransferProgress&) = delete;
    TransferProgress& operator=(const TransferProgress&) = delete;
    /// Draws the final state and ends the line.
    ~TransferProgress();

    void show(long long moved, Clock::time_point now = Clock::now());
    /// Marks the transfer as complete: sets the total to the number of bytes copied.
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
