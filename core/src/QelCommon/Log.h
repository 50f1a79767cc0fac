#pragma once

#include <cstdarg>
#include <functional>
#include <string>

#include "QelCommon/Export.h"

namespace Qel {

/// Log levels, 1 to 6.  A record is emitted if its level is at most `debug_level` and the module filter accepts it (see
/// SettingsProvider.h).  Records must not contain secrets.
namespace LogLevel {
inline constexpr int error = 1;        ///< a requested operation failed
inline constexpr int cacheFailure = 2; ///< an operation of the shared cache failed
inline constexpr int trace = 4;        ///< trace of normal operation
} // namespace LogLevel

/// The highest level that is emitted, 0 to 6; 0 disables the log.  Initially 1.
QEL_EXPORT extern int debug_level;

/// An emitted record.  The pointers are valid only during the call of the sink.
struct LogRecord {
    const char* module;
    const char* file;
    int line;
    const char* function;
    const char* prettyFunction;
    int level;
    std::string text;
};

/// Receives emitted records.
using LogSink = std::function<void(const LogRecord&)>;

/// Replaces the sink of the process and returns the previous one.  An empty sink selects standard error.
///
/// The sink may be called from any thread, but calls never overlap.  A record logged from within the sink goes to
/// standard error, so a sink may use code that logs.
///
/// When setLogSink() returns, the previous sink is not running and will not be called again.  It therefore waits for a
/// call in progress in another thread, and the caller must not hold a lock that the sink acquires.  Called from within
/// the sink it does not wait: the current call completes after the replacement.
QEL_EXPORT LogSink setLogSink(LogSink sink);

/// A log record whose origin is known and whose message is still to be supplied.
class QEL_EXPORT Logger {
public:
    Logger(const char* module, const char* file, int line, const char* function, const char* prettyFunction) noexcept
        : m_module(module), m_file(file), m_line(line), m_function(function), m_prettyFunction(prettyFunction) {}

    /// Emits the record with a message formatted as by printf, or discards it if `level` is above `debug_level`.
    void put(int level, const char* format, ...) const __attribute__((format(printf, 3, 4)));
    /// Emits the record at LogLevel::error.
    void put(const char* format, ...) const __attribute__((format(printf, 2, 3)));
    /// Emits the last record of the process, at LogLevel::error.  If a call of the sink in another thread does not
    /// return within one second, the record goes to standard error.
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

/// Creates a log record for its origin.
[[nodiscard]] inline Logger Log2(const char* module, const char* file, int line, const char* function,
                                 const char* prettyFunction) noexcept {
    return {module, file, line, function, prettyFunction};
}

} // namespace Qel
