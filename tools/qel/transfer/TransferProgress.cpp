#include "qel/transfer/TransferProgress.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iomanip>
#include <ostream>
#include <sstream>

namespace Qel::Tool {

namespace {

constexpr auto interval = std::chrono::milliseconds(100);

std::string twoDigits(long number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

/// "1:05" or "2:00:05".
std::string describeTime(double seconds) {
    constexpr double longest = 359'999; // 99:59:59
    const auto all = static_cast<long>(std::min(std::ceil(seconds), longest));
    const long hours = all / 3600;
    const long minutes = all / 60 % 60;
    return (hours > 0 ? std::to_string(hours) + ':' + twoDigits(minutes) : std::to_string(minutes)) + ':' +
           twoDigits(all % 60);
}

std::string bar(double share, std::size_t inner) {
    const auto filled = static_cast<std::size_t>(share * static_cast<double>(inner));
    return '[' + std::string(filled, '=') + std::string(inner - filled, ' ') + "] ";
}

} // namespace

std::string describeBytes(double bytes) {
    static constexpr std::array units{"B", "KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    std::size_t unit = 0;
    // Values that would be rounded to 1024.0 are printed as 1.0 of the next unit.
    for (; bytes >= 1023.95 && unit + 1 < units.size(); ++unit)
        bytes /= 1024;
    std::ostringstream text;
    text << std::fixed << std::setprecision(unit == 0 ? 0 : 1) << bytes << ' ' << units[unit];
    return text.str();
}

std::string progressLine(long long moved, long long total, std::chrono::duration<double> elapsed, std::size_t width) {
    total = std::max(total, moved);
    const double share = total > 0 ? static_cast<double>(moved) / static_cast<double>(total) : 1;
    const double seconds = elapsed.count();
    const double rate = seconds > 0 ? static_cast<double>(moved) / seconds : 0;
    const std::string percent = std::to_string(static_cast<int>(share * 100));
    std::string text = std::string(3 - percent.size(), ' ') + percent + "%  " +
                       describeBytes(static_cast<double>(moved)) + " of " + describeBytes(static_cast<double>(total));
    if (rate > 0)
        text += "  " + describeBytes(rate) + "/s";
    if (moved >= total)
        text += "  " + describeTime(seconds);
    else if (rate > 0)
        text += "  " + describeTime(static_cast<double>(total - moved) / rate) + " left";

    constexpr std::size_t frame = 3; // brackets and a blank
    constexpr std::size_t shortestBar = 10;
    constexpr std::size_t longestBar = 40;
    if (width >= text.size() + frame + shortestBar)
        text.insert(0, bar(share, std::min(width - text.size() - frame, longestBar)));
    return text.substr(0, width);
}

TransferProgress::TransferProgress(std::ostream& out, long long total, std::size_t width)
    : m_out(out), m_total(total), m_width(width) {}

TransferProgress::~TransferProgress() {
    draw(Clock::now());
    m_out << std::endl;
}

void TransferProgress::show(long long moved, Clock::time_point now) {
    m_moved = moved;
    if (now < m_next)
        return;
    m_next = now + interval;
    draw(now);
}

void TransferProgress::draw(Clock::time_point now) {
    static constexpr const char* clearToEnd = "\x1B[K"; // ECMA-48, EL
    // Leave the last column free: some terminals wrap when it is filled.
    m_out << '\r' << progressLine(m_moved, m_total, now - m_start, m_width > 0 ? m_width - 1 : 0) << clearToEnd
          << std::flush;
}

} // namespace Qel::Tool
