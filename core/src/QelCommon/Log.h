#pragma once

#include <cstdarg>
#include <functional>
#include <string>

namespace Qel {

/// Levels of the log, 1 to 6.  A record is emitted when its level isn't above `debug_level` and the module filter lets
/// it pass (see SettingsProvider.h).  Nothing that is secret may go into a record.
namespace LogLevel {
inline constexpr int error = 1;        ///< something that was asked for could not be done
inline constexpr int cacheFailure = 2; ///< an operation of the shared cache failed
inline constexpr int trace = 4;        ///< what goes on, for whoever follows it
} // namespace LogLevel

/// The highest level that is emitted, 0 to 6; 0 silences the log.  1 at start.
extern int debug_level;

/// One emitted record.  The pointers are valid during the sink's call only.
struct LogRecord {
    const char* module;
    const char* file;
    int line;
    const char* function;
    const char* prettyFunction;
    int level;
    std::string text;
};

/// Where records go.
using LogSink = std::function<void(const LogRecord&)>;

/// Replaces the process's sink and returns the old one.  An empty sink selects standard error.
///
/// The sink may be called from any thread, one call at a time.  A record that is logged from within the sink goes to
/// standard error, so that a sink may use code that logs.
///
/// When setLogSink() returns, no call of the old sink is running and none follows.  It therefore waits for a call that
/// runs in another thread, and its caller must not hold a lock that the sink takes.  Called from within the sink it
/// does not wait: that one call runs to its end after the sink has been replaced.
LogSink setLogSink(LogSink sink);

/// An open log record: knows where it comes from and waits for its text.
class Logger {
public:
    Logger(const char* module, const char* file, int line, const char* function, const char* prettyFunction) noexcept
        : m_module(module), m_file(file), m_line(line), m_function(function), m_prettyFunction(prettyFunction) {}

    /// Emits the record with a text as of printf, or drops it when `level` is above `debug_level`.
    void put(int level, const char* format, ...) const __attribute__((format(printf, 3, 4)));
    /// The same for a text without a level, which is an error's.
    void put(const char* format, ...) const __attribute__((format(printf, 2, 3)));
    /// Emits an error that is the last record of the process.  If another thread's call of the sink does not end within
    /// a second, the record goes to standard error.
    void putLast(const std::string& text) const;

private:
    void emit(int level, const char* format, std::va_list arguments) const __attribute__((format(printf, 3, 0)));
    [[nodiscard]] LogRecord recordOf(int level, std::string text) const;

    const char* m_module;
    const char* m_file;
    int m_line;
    const char* m_function;
    const char* m_prettyFunction;
};

/// Opens a log record.
[[nodiscard]] inline Logger Log2(const char* module, const char* file, int line, const char* function,
                                 const char* prettyFunction) noexcept {
    return {module, file, line, function, prettyFunction};
}

} // namespace Qel
