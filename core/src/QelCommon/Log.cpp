#include "QelCommon/Log.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <utility>

#include "QelCommon/ControlCharacters.h"
#include "QelCommon/SettingsProvider.h"
#include "QelCommon/Strings.h"

namespace Qel {

int debug_level = LogLevel::error;

namespace {

/// What a line on standard error looks like.
struct LineStyle {
    int order = 0;
    int format = 0;
};

struct LogState {
    std::mutex mutex; ///< guards what follows
    LogSink sink;
    LineStyle style;
    Debug::ModuleFilter filter;
    std::shared_ptr<const Debug::SettingsProvider> provider;
};

// Leaked on purpose: records may still come while other static objects are being destroyed.
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

void writeToStandardError(const LogRecord& record, const LineStyle& style) {
    std::fprintf(stderr, "%s: %s\n", prefixOf(record, style).c_str(), showControls(record.text).c_str());
}

constexpr int highestLevel = 6;

bool isLevel(int level) {
    return level >= 0 && level <= highestLevel;
}

} // namespace

LogSink setLogSink(LogSink sink) {
    LogState& state = logState();
    const std::lock_guard guard(state.mutex);
    return std::exchange(state.sink, std::move(sink));
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

void Logger::emit(int level, const char* format, std::va_list arguments) const {
    if (level > debug_level)
        return;
    LogState& state = logState();
    const std::lock_guard guard(state.mutex);
    if (!state.filter.passes(m_module))
        return;
    const LogRecord record{
        m_module, m_file, m_line, m_function, m_prettyFunction, level, formatText(format, arguments)};
    if (state.sink)
        state.sink(record);
    else
        writeToStandardError(record, state.style);
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
    // Asked without the lock, and before anything is changed: a provider logs what it can't read.
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
