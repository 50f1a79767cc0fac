#include "QelCommon/Log.h"

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <mutex>
#include <utility>

#include "QelCommon/ControlCharacters.h"
#include "QelCommon/SettingsProvider.h"
#include "QelCommon/Strings.h"

namespace Qel {

int debug_level = LogLevel::error;

namespace {

/// Layout of a line on standard error.
struct LineStyle {
    int order = 0;
    int format = 0;
};

struct LogState {
    std::timed_mutex delivery;           ///< held while the sink runs; acquired before `mutex`
    std::mutex mutex;                    ///< guards the members below; never held while a sink or provider runs
    std::shared_ptr<const LogSink> sink; ///< null for standard error
    LineStyle style;
    Debug::ModuleFilter filter;
    std::shared_ptr<const Debug::SettingsProvider> provider;
};

// Leaked on purpose: records may still be logged while other static objects are destroyed.
LogState& logState() {
    static auto* state = new LogState;
    return *state;
}

constexpr int levelFirst = 1;
constexpr int withFunction = 1;

std::string prefixOf(const LogRecord& record, const LineStyle& style) {
    const std::string level = '[' + std::to_string(record.level) + ']';
    std::string prefix = style.order == levelFirst ? level + ' ' + record.module : record.module + level;
    if (style.format == withFunction)
        prefix += std::string(" ") + record.function;
    else if (style.format > withFunction)
        prefix += std::string(" ") + record.file + ':' + std::to_string(record.line) + ", " + record.prettyFunction;
    return prefix;
}

// stdio locks the stream for the whole call, so lines of different threads do not interleave.
void writeToStandardError(const LogRecord& record, const LineStyle& style) {
    std::fprintf(stderr, "%s: %s\n", prefixOf(record, style).c_str(), showControls(record.text).c_str());
}

// True while this thread runs the sink and therefore holds the delivery lock.
thread_local bool isInSink = false;

class SinkScope {
public:
    SinkScope() { isInSink = true; }
    SinkScope(const SinkScope&) = delete;
    SinkScope& operator=(const SinkScope&) = delete;
    ~SinkScope() { isInSink = false; }
};

// Requires the delivery lock.
bool deliverToSink(LogState& state, const LogRecord& record) {
    const SinkScope scope;
    // Copied because the sink may replace itself.
    std::shared_ptr<const LogSink> sink;
    {
        const std::lock_guard guard(state.mutex);
        sink = state.sink;
    }
    if (!sink)
        return false;
    (*sink)(record);
    return true;
}

using DeliveryLock = std::unique_lock<std::timed_mutex>;

bool waitForDelivery(DeliveryLock& lock, bool isLastRecord) {
    constexpr std::chrono::seconds longestWait(1);
    if (isLastRecord)
        return lock.try_lock_for(longestWait);
    lock.lock();
    return true;
}

void deliver(const LogRecord& record, bool isLastRecord) {
    LogState& state = logState();
    LineStyle style;
    {
        const std::lock_guard guard(state.mutex);
        if (!state.filter.passes(record.module))
            return;
        style = state.style;
    }
    DeliveryLock lock(state.delivery, std::defer_lock);
    if (!isInSink && waitForDelivery(lock, isLastRecord) && deliverToSink(state, record))
        return;
    writeToStandardError(record, style);
}

constexpr int highestLevel = 6;

bool isLevel(int level) {
    return level >= 0 && level <= highestLevel;
}

} // namespace

LogSink setLogSink(LogSink sink) {
    LogState& state = logState();
    auto replaced = sink ? std::make_shared<const LogSink>(std::move(sink)) : nullptr;
    {
        DeliveryLock lock(state.delivery, std::defer_lock);
        if (!isInSink)
            lock.lock();
        const std::lock_guard guard(state.mutex);
        state.sink.swap(replaced);
    }
    return replaced ? *replaced : LogSink();
}

void Logger::put(int level, const char* format, ...) const {
    std::va_list arguments;
    va_start(arguments, format);
    emit(level, format, arguments);
    va_end(arguments);
}

void Logger::put(const char* format, ...) const {
    std::va_list arguments;
    va_start(arguments, format);
    emit(LogLevel::error, format, arguments);
    va_end(arguments);
}

void Logger::putLast(const std::string& text) const {
    if (LogLevel::error <= debug_level)
        deliver(recordOf(LogLevel::error, text), true);
}

void Logger::emit(int level, const char* format, std::va_list arguments) const {
    if (level <= debug_level)
        deliver(recordOf(level, formatString(format, arguments)), false);
}

LogRecord Logger::recordOf(int level, std::string text) const {
    return {m_module, m_file, m_line, m_function, m_prettyFunction, level, std::move(text)};
}

void Debug::setSettingsProvider(std::shared_ptr<const SettingsProvider> provider) {
    LogState& state = logState();
    {
        const std::lock_guard guard(state.mutex);
        state.provider = std::move(provider);
        if (!state.provider) {
            debug_level = LogLevel::error;
            state.style = {};
            state.filter = {};
            return;
        }
    }
    reconfigure();
}

void Debug::reconfigure() {
    LogState& state = logState();
    std::shared_ptr<const SettingsProvider> provider;
    {
        const std::lock_guard guard(state.mutex);
        provider = state.provider;
    }
    if (!provider)
        return;
    // Query the provider without the lock, because it may log, and query all settings before changing any.
    const int level = provider->level();
    const LineStyle style{provider->order(), provider->format()};
    ModuleFilter filter = provider->filter();

    const std::lock_guard guard(state.mutex);
    if (isLevel(level))
        debug_level = level;
    state.style = style;
    state.filter = std::move(filter);
}

} // namespace Qel
