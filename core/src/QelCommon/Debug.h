#pragma once

#include "QelCommon/Export.h"

/// The module name in every log record and fatal report of these libraries.
#define QEL_MODULE "QelFunctionalityCore"

namespace Qel {

namespace Debug {

/// Returns its argument.  Checks are active in every build: they guard formats in shared memory or on the wire, and
/// continuing after a violation would damage data of other processes.
[[nodiscard]] constexpr bool check(bool holds) noexcept {
    return holds;
}

} // namespace Debug

/// Reports a failed check on standard error and in the log, then terminates the process with SIGABRT.
///
/// `file` and `line` identify the check, not a position in the sources of this build.  Administrators search for them
/// in reports, so they do not change when code moves.
QEL_EXPORT [[noreturn]] void abort(const char* module, const char* file, int line, const char* function,
                                   const char* prettyFunction);

} // namespace Qel

/// Terminates the process unless `condition` holds.  `file` and `line` are literals that identify the check (see
/// Qel::abort).
#define QEL_CHECK_AT(condition, file, line)                                                                            \
    do {                                                                                                               \
        if (!::Qel::Debug::check(static_cast<bool>(condition)))                                                        \
            ::Qel::abort(QEL_MODULE, file, line, __func__, __PRETTY_FUNCTION__);                                       \
    } while (false)

/// QEL_CHECK_AT for a check whose line number is not part of a documented report.
#define QEL_CHECK(condition, file) QEL_CHECK_AT(condition, file, __LINE__)
