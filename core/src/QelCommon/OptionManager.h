#pragma once

#include <sstream>

#include "QelCommon/Debug.h"
#include "QelCommon/Export.h"
#include "QelCommon/Log.h"

// Access to single options of the global configuration file (see getConfigurationFile).  The file is read again on
// every call.

namespace Qel {

/// Reads an option by its path, in the syntax of a plain cursor: "/data/system/configuration/sorting_order".  Returns 0
/// and sets `value`; on failure returns nonzero and logs the reason.
///
/// Instantiated for int only, in the library that reads configurations.
template <class T> [[nodiscard]] int oh_read_global_config_option(const char* option, T& value);
template <> QEL_EXPORT [[nodiscard]] int oh_read_global_config_option<int>(const char* option, int& value);

/// True if `value` is greater than `min`, or equal to it if `inclusive`.
template <class T> [[nodiscard]] bool oh_check_min_border(const T& value, const T& min, bool inclusive) {
    return inclusive ? !(value < min) : min < value;
}

/// True if `value` is less than `max`, or equal to it if `inclusive`.
template <class T> [[nodiscard]] bool oh_check_max_border(const T& value, const T& max, bool inclusive) {
    return inclusive ? !(max < value) : value < max;
}

template <class T>
[[nodiscard]] bool oh_check_min_max_border(const T& value, const T& min, const T& max, bool inclusive) {
    return oh_check_min_border(value, min, inclusive) && oh_check_max_border(value, max, inclusive);
}

/// Reads an option that must be within bounds.  Returns the result of the read.  An out-of-range option is logged but
/// still yields 0, and `value` keeps the default that the caller stored in it.
template <class T>
int oh_get_global_config_option(const char* option, T& value, const T& min, const T& max, bool inclusive) {
    T read{};
    const int result = oh_read_global_config_option(option, read);
    if (result != 0)
        return result;
    if (oh_check_min_max_border(read, min, max, inclusive)) {
        value = read;
        return result;
    }
    std::ostringstream range;
    range << min << ".." << max;
    Log2(QEL_MODULE, "core/src/QelCommon/OptionManager", __LINE__, __func__, __PRETTY_FUNCTION__)
        .put(LogLevel::error, "[%s] Value : %s must be from %s", __func__, option, range.str().c_str());
    return result;
}

} // namespace Qel
