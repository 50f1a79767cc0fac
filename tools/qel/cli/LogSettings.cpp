#include "qel/cli/LogSettings.h"

#include <memory>

#include "QelFunctionalityCore/Configuration/DebugConfiguration.h"
#include "QelMessage/QelBinary.h"
#include "qel/records/MessageFiles.h"

namespace Qel::Tool {

namespace {

constexpr const char* logOption = "log-settings";

} // namespace

void addLogOption(Options& options) {
    options.add({.name = logOption, .value = "FILE", .help = "use the log settings of this agent configuration"});
}

ExitCode applyLogSettings(const Invocation& invocation, const Console& console) {
    if (!invocation.has(logOption))
        return ExitCode::success;
    const auto_destroy<QelMessage> message(new QelBinary);
    const std::string& file = invocation.string(logOption);
    if (const ExitCode code = readMessage(file, *message, console); code != ExitCode::success)
        return code;
    Debug::setSettingsProvider(std::make_shared<Debug::Configuration>(QelConfiguration(message.get())));
    return ExitCode::success;
}

} // namespace Qel::Tool
