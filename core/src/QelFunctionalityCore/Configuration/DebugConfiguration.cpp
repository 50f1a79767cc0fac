#include "QelFunctionalityCore/Configuration/DebugConfiguration.h"

#include "QelCommon/Log.h"
#include "QelCommon/OptionManager.h"

namespace Qel::Debug {

namespace {

constexpr const char* sourcePath = "core/src/QelFunctionalityCore/QelConfig";

// Signatures as they appear in the log, independent of the compiler's __PRETTY_FUNCTION__.
constexpr const char* levelSignature = "virtual int Qel::Debug::Configuration::level() const";
constexpr const char* filterSignature = "virtual Qel::Debug::ModuleFilter Qel::Debug::Configuration::filter() const";

constexpr int noLevel = -1;
constexpr int lowestLevel = 0;
constexpr int highestLevel = 6;

} // namespace

Configuration::Configuration(const QelConfiguration& configuration)
    : m_config(configuration), m_sectionIterator(m_config.getIterator()) {
    if (m_sectionIterator && m_sectionIterator->seek("system") != 0)
        m_sectionIterator.reset();
}

Configuration::~Configuration() = default;

int Configuration::level() const {
    const auto openLog = [](int line) { return Log2(QEL_MODULE, sourcePath, line, "level", levelSignature); };
    int level = noLevel;
    if (m_sectionIterator && m_sectionIterator->getValue(level, "log_level") != 0)
        openLog(__LINE__).put(LogLevel::error, "[%s] Reconfigure. Failed to read log_level from configuration.",
                              levelSignature);
    if (level < lowestLevel || level > highestLevel)
        openLog(__LINE__).put(LogLevel::error, "[%s] Invalid log_level value. It must be an integer between %d and %d",
                              levelSignature, lowestLevel, highestLevel);
    return level;
}

int Configuration::order() const {
    int order = 0;
    oh_get_global_config_option("/data/system/configuration/sorting_order", order, 0, 1, true);
    return order;
}

int Configuration::format() const {
    int format = 0;
    if (m_sectionIterator)
        m_sectionIterator->getValue(format, "log_func_name_level");
    return format;
}

ModuleFilter Configuration::filter() const {
    const auto openLog = [](int line) { return Log2(QEL_MODULE, sourcePath, line, "filter", filterSignature); };
    std::string processed;
    std::string ignored;
    if (m_sectionIterator) {
        if (m_sectionIterator->getValue(processed, "log_process_plugins") != 0)
            openLog(__LINE__).put(LogLevel::error, "[%s] Failed to read log_process_plugins from configuration.",
                                  filterSignature);
        if (m_sectionIterator->getValue(ignored, "log_ignore_plugins") != 0)
            openLog(__LINE__).put(LogLevel::error, "[%s] Failed to read log_ignore_plugins from configuration.",
                                  filterSignature);
    }
    return {processed, ignored};
}

} // namespace Qel::Debug
