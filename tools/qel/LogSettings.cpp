#include "qel/LogSettings.h"

#include <memory>

#include <boost/program_options/value_semantic.hpp>

#include "QelFunctionalityCore/Configuration/DebugConfiguration.h"
#include "QelMessage/QelBinary.h"
#include "qel/MessageFiles.h"

namespace Qel::Tool {

namespace {

constexpr const char* logOption = "log-settings";

} // namespace

void addLogOption(boost::program_options::options_description& options) {
    options.add_options()(logOption, boost::program_options::value<std::string>()->value_name("FILE"),
                          "log as this configuration of an agent says");
}

ExitCode applyLogSettings(const Invocation& invocation, const Console& console) {
    if (!invocation.has(logOption))
        return ExitCode::success;
    const auto_destroy<QelMessage> message(new QelBinary);
    const std::string& file = invocation.options[logOption].as<std::string>();
    if (const ExitCode code = readMessage(file, *message, console); code != ExitCode::success)
        return code;
    Debug::setSettingsProvider(std::make_shared<Debug::Configuration>(QelConfiguration(message.get())));
    return ExitCode::success;
}

} // namespace Qel::Tool
