#include "QelCommon/OptionManager.h"

#include <memory>

#include "QelCommon/InstanceFolders.h"
#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelMessage/QelMessage.h"

namespace Qel {

namespace {

constexpr const char* sourcePath = "core/src/QelCommon/OptionManager";
constexpr const char* functionName = "oh_read_global_config_option";

// Result for every failure to find or read the option, regardless of the cursor's result.
constexpr int notRead = 1;
constexpr int noCursor = -1;

Logger openLog(int line) {
    return Log2(QEL_MODULE, sourcePath, line, functionName,
                "int Qel::oh_read_global_config_option(const char*, T&) [with T = int]");
}

int readOption(QelMessage& message, const char* option, int& value) {
    const std::unique_ptr<QelMessageIterator> cursor(message.rootIterator());
    if (!cursor) {
        openLog(__LINE__).put(LogLevel::error, "[%s] iterator is NULL: ", functionName);
        return noCursor;
    }
    if (cursor->seekRoot() != 0) {
        openLog(__LINE__).put(LogLevel::error, "[%s] Can't seek root", functionName);
        return notRead;
    }
    if (cursor->seek(std::string(option)) != 0) {
        openLog(__LINE__).put(LogLevel::error, "[%s] Can't seek path: %s", functionName, option);
        return notRead;
    }
    if (cursor->getValue(value, getEmptyID()) != 0) {
        openLog(__LINE__).put(LogLevel::error, "[%s] Can't parse %s option from global config with error %d.",
                              functionName, option, notRead);
        return notRead;
    }
    return 0;
}

} // namespace

template <> int oh_read_global_config_option<int>(const char* option, int& value) {
    openLog(__LINE__).put(LogLevel::trace, "Calling [%s] for %s", functionName, option);
    const std::string path = getConfigurationFile();
    openLog(__LINE__).put(LogLevel::trace, "[%s] read config file from: %s", functionName, path.c_str());

    QelConfiguration configuration;
    if (configuration.readFromFile(path) != 0) {
        openLog(__LINE__).put(LogLevel::error, "[%s] can't read config file: %s", functionName, path.c_str());
        return notRead;
    }
    if (const int result = readOption(*configuration.getMessage(), option, value))
        return result;
    openLog(__LINE__).put(LogLevel::trace, "Get %d for %s", value, option);
    return 0;
}

} // namespace Qel
