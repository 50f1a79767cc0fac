#pragma once

/// The module name in every log record and fatal report of these libraries.
#define QEL_MODULE "QelFunctionalityCore"

namespace Qel {

namespace Debug {

/// Gives back its argument.  A check stays active in every build: what it guards is a format in shared memory or on the
/// wire, and going on after a broken one would damage data of other processes.
[[nodiscard]] constexpr bool check(bool holds) noexcept {
    return holds;
}

} // namespace Debug

/// Reports a failed check on standard error and in the log, and ends the process with SIGABRT.
///
/// `file` and `line` name the check within the system, not a place in this build's sources: they are part of the report
/// that administrators search for, so they don't move when code does.
[[noreturn]] void abort(const char* module, const char* file, int line, const char* function,
                        const char* prettyFunction);

} // namespace Qel

/// Ends the process unless `condition` holds, reporting `file` and `line`, which are literals (see Qel::abort).
#define QEL_CHECK_AT(condition, file, line)                                                                            \
    do {                                                                                                               \
        if (!::Qel::Debug::check(static_cast<bool>(condition)))                                                        \
            ::Qel::abort(QEL_MODULE, file, line, __func__, __PRETTY_FUNCTION__);                                       \
    } while (false)

/// The same for a check whose line is nobody's business but ours.
#define QEL_CHECK(condition, file) QEL_CHECK_AT(condition, file, __LINE__)
