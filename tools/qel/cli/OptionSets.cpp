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

/// An option in a file has a value at least.  This one stands for an option that takes none.
constexpr const char* valueOfFlag = "1";

bool hasName(const OptionSet& set, const std::string& name) {
    return std::any_of(set.begin(), set.end(), [&](const po::option& option) { return option.string_key == name; });
}

/// The value of an option; null if it isn't there.
const std::string* valueOf(const OptionSet& set, const std::string& name) {
    const auto found =
        std::find_if(set.begin(), set.end(), [&](const po::option& option) { return option.string_key == name; });
    return found == set.end() || found->value.empty() ? nullptr : &found->value.front();
}

ExitCode failFile(const Console& console, ExitCode code, const std::string& path, const std::string& otherwise) {
    const std::string& reason = getErrorMessage();
    return console.fail(code, reason.empty() ? path + ": " + otherwise : reason);
}

} // namespace

void addOptionSetOptions(Options& options) {
    options.add({.name = loadOption, .value = "FILE", .help = "take what the command line lacks from this file"});
    options.add({.name = saveOption, .value = "FILE", .help = "keep the arguments and options in this file"});
}

ExitCode lockOptions(const OptionSet& given, QelFileLock& lock, const Console& console) {
    const std::string* const loaded = valueOf(given, loadOption);
    const std::string* const saved = valueOf(given, saveOption);
    if (!loaded || !saved || !areOneFile(*loaded, *saved))
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
        return failFile(console, ExitCode::badInput, *path, "holds no options");

    const OptionSet before = given;
    for (po::option& option : loaded) {
        if (option.string_key == loadOption || option.string_key == saveOption)
            return console.fail(ExitCode::badInput,
                                *path + ": '--" + option.string_key +
                                    "' is accepted on the command line only, remove it from the file");
        if (!option.string_key.empty()) {
            const Option* const description = known.find(option.string_key);
            if (!description)
                return console.fail(ExitCode::badInput,
                                    *path + ": this command has no option '--" + option.string_key + "'");
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
        return failFile(console, ExitCode::failed, *path, "can't be written");
    return ExitCode::success;
}

} // namespace Qel::Tool
