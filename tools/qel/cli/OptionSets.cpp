#include "qel/cli/OptionSets.h"

#include <algorithm>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Configuration/QelOptionsFileSerializer.h"
#include "qel/records/MessageFiles.h"

namespace po = boost::program_options;

namespace Qel::Tool {

namespace {

constexpr const char* loadOption = "options";
constexpr const char* saveOption = "save-options";

/// The file format requires a value for each option; a flag is stored with this one.
constexpr const char* valueOfFlag = "1";

bool hasName(const OptionSet& set, const std::string& name) {
    return std::any_of(set.begin(), set.end(), [&](const po::option& option) { return option.string_key == name; });
}

/// Returns the first value of an option, or null if the option is absent.
const std::string* valueOf(const OptionSet& set, const std::string& name) {
    const auto found =
        std::find_if(set.begin(), set.end(), [&](const po::option& option) { return option.string_key == name; });
    return found == set.end() || found->value.empty() ? nullptr : &found->value.front();
}

ExitCode failFile(const Console& console, ExitCode code, const std::string& path, const std::string& defaultReason) {
    const std::string& reason = getErrorMessage();
    return console.fail(code, reason.empty() ? path + ": " + defaultReason : reason);
}

} // namespace

void addOptionSetOptions(Options& options) {
    options.add({.name = loadOption, .value = "FILE", .help = "read missing arguments and options from this file"});
    options.add({.name = saveOption, .value = "FILE", .help = "save the arguments and options to this file"});
}

ExitCode lockOptions(const OptionSet& given, QelFileLock& lock, const Console& console) {
    const std::string* const loaded = valueOf(given, loadOption);
    const std::string* const saved = valueOf(given, saveOption);
    if (!loaded || !saved || !areSameFile(*loaded, *saved))
        return ExitCode::success;
    return lockFile(*saved, lock, console);
}

ExitCode loadOptions(OptionSet& given, const Options& known, const Console& console) {
    const std::string* const path = valueOf(given, loadOption);
    if (!path)
        return ExitCode::success;
    OptionSet loaded;
    clearErrorMessage();
    if (QelOptionsFileSerializer(*path).read(loaded) != 0)
        return failFile(console, ExitCode::badInput, *path, "not an options file");

    const OptionSet before = given;
    for (po::option& option : loaded) {
        if (option.string_key == loadOption || option.string_key == saveOption)
            return console.fail(ExitCode::badInput,
                                *path + ": option '--" + option.string_key +
                                    "' is only allowed on the command line; remove it from the file");
        if (!option.string_key.empty()) {
            const Option* const description = known.find(option.string_key);
            if (!description)
                return console.fail(ExitCode::badInput,
                                    *path + ": unknown option '--" + option.string_key + "' for this command");
            if (description->value.empty())
                option.value.clear();
        }
        if (!hasName(before, option.string_key))
            given.push_back(option);
    }
    return ExitCode::success;
}

ExitCode saveOptions(const OptionSet& given, const Console& console) {
    const std::string* const path = valueOf(given, saveOption);
    if (!path)
        return ExitCode::success;
    OptionSet saved;
    for (const po::option& option : given) {
        if (option.string_key == loadOption || option.string_key == saveOption)
            continue;
        saved.push_back(option);
        if (option.value.empty())
            saved.back().value = {valueOfFlag};
    }
    clearErrorMessage();
    if (QelOptionsFileSerializer(*path).write(saved) != 0)
        return failFile(console, ExitCode::failed, *path, "cannot write the file");
    return ExitCode::success;
}

} // namespace Qel::Tool
