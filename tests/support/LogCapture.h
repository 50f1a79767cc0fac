#pragma once

#include <string>
#include <vector>

#include "QelCommon/Log.h"

namespace Qel::TestSupport {

/// Collects the log records up to a level that are written during its lifetime.
class LogCapture {
public:
    static constexpr int allLevels = 6;

    struct Line {
        std::string module;
        std::string file;
        int line;
        std::string function;
        int level;
        std::string text;
    };

    explicit LogCapture(int level = allLevels) : m_oldLevel(debug_level) {
        debug_level = level;
        m_oldSink = setLogSink([this](const LogRecord& record) {
            m_lines.push_back({record.module, record.file, record.line, record.function, record.level, record.text});
        });
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture() {
        setLogSink(std::move(m_oldSink));
        debug_level = m_oldLevel;
    }

    [[nodiscard]] const std::vector<Line>& lines() const { return m_lines; }

    /// The module and source path of each record, separated by a space.
    [[nodiscard]] std::vector<std::string> sources() const {
        std::vector<std::string> sources;
        for (const Line& line : m_lines)
            sources.push_back(line.module + ' ' + line.file);
        return sources;
    }

    /// The records in the form "LEVEL TEXT".
    [[nodiscard]] std::vector<std::string> messages() const {
        std::vector<std::string> messages;
        for (const Line& line : m_lines)
            messages.push_back(std::to_string(line.level) + ' ' + line.text);
        return messages;
    }

private:
    int m_oldLevel;
    LogSink m_oldSink;
    std::vector<Line> m_lines;
};

} // namespace Qel::TestSupport
