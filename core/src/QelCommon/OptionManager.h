#pragma once

#include <sstream>

#include "QelCommon/Debug.h"
#include "QelCommon/Log.h"

// Single options out of the global configuration file (see getConfigurationFile).  The file is read anew at each call.

namespace Qel {

/// Reads an option by its path as a plain cursor takes it: "/data/system/configuration/sorting_order".  0 when `value`
/// was set; otherwise nonzero, with the reason in the log.
///
/// Only int is instantiated, by the library that reads configurations.
template <class T> [[nodiscard]] int oh_read_global_config_option(const char* option, T& value);
template <> [[nodiscard]] int oh_read_global_config_option<int>(const char* option, int& value);

/// True if the value lies above the border, or with `inclusive` on it.
template <class T> [[nodiscard]] bool oh_check_min_border(const T& value, const T& min, bool inclusive) {
    return inclusive ? !(value < min) : min < value;
}

/// True if the value lies below the border, or with `inclusive` on it.
template <class T> [[nodiscard]] bool oh_check_max_border(const T& value, const T& max, bool inclusive) {
    return inclusive ? !(max < value) : value < max;
}

template <class T>
[[nodiscard]] bool oh_check_min_max_border(const T& value, const T& min, const T& max, bool inclusive) {
    return oh_check_min_border(value, min, inclusive) && oh_check_max_border(value, max, inclusive);
}

/// Reads an option that has to lie within bounds.  The result is that of the read: an option out of its bounds is
/// logged and 0 all the same, and `value` stays at the default that the caller had put there.
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
