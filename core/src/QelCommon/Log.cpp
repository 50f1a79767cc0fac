#include "QelCommon/Log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

#include "QelCommon/Strings.h"

namespace Qel {

int debug_level = LogLevel::error;

namespace {

// Leaked on purpose: records may still come while other static objects are being destroyed.
struct SinkSlot {
    std::mutex mutex;
    LogSink sink;
};

SinkSlot& sinkSlot() {
    static auto* slot = new SinkSlot;
    return *slot;
}

void writeToStandardError(const LogRecord& record) {
    std::fprintf(stderr, "%s[%d] %s: %s\n", record.module, record.level, record.function, record.text.c_str());
}

} // namespace

LogSink setLogSink(LogSink sink) {
    SinkSlot& slot = sinkSlot();
    const std::lock_guard guard(slot.mutex);
    return std::exchange(slot.sink, std::move(sink));
}

void Logger::put(int level, const char* format, ...) const {
    if (level > debug_level)
        return;
    std::va_list arguments;
    va_start(arguments, format);
    const LogRecord record{
        m_module, m_file, m_line, m_function, m_prettyFunction, level, formatText(format, arguments)};
    va_end(arguments);

    SinkSlot& slot = sinkSlot();
    const std::lock_guard guard(slot.mutex);
    if (slot.sink)
        slot.sink(record);
    else
        writeToStandardError(record);
}

} // namespace Qel
