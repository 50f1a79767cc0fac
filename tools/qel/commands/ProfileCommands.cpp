#include <array>
#include <memory>

#include <boost/make_shared.hpp>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Profile/QelProfile.h"
#include "QelMessage/QelBinary.h"
#include "qel/cli/Command.h"
#include "qel/records/MessageFiles.h"

namespace Qel::Tool {

namespace {

/// A message file with a profile in its first element.
class ProfileFile {
public:
    ProfileFile(const std::string& name, const Console& console) : m_name(name), m_console(console) {}

    ExitCode open() {
        if (const ExitCode code = readMessage(m_name, *m_message, m_console); code != ExitCode::success)
            return code;
        m_cursor.reset(m_message->rootIterator());
        if (m_cursor->firstChild() != 0)
            return m_console.fail(ExitCode::badInput, shownName(m_name) + ": contains no profile");
        m_element = m_cursor->curName();
        return ExitCode::success;
    }
    template <class Reader> ExitCode read(QelProfile& profile, const Reader& reader) const {
        clearErrorMessage();
        if (m_cursor->getObject(profile, reader, getEmptyID()) == 0)
            return ExitCode::success;
        return m_console.fail(ExitCode::badInput, shownName(m_name) + ": " + getErrorMessage());
    }
    /// Prints a message with the profile in an element named as in this file.
    ExitCode print(const QelProfile& profile) const {
        const auto_destroy<QelMessage> message(new QelBinary);
        const std::unique_ptr<QelMessageIterator> to(message->rootIterator());
        to->newChild(m_element);
        std::string text;
        if (to->putObj(profile, getEmptyID()) != 0 || toText(*message, text) != 0)
            return m_console.fail(ExitCode::failed, shownName(m_name) + ": " + getErrorMessage());
        return writeContent(std::string(standardStream), text, m_console);
    }

private:
    std::string m_name;
    const Console& m_console;
    auto_destroy<QelMessage> m_message{new QelBinary};
    std::unique_ptr<QelMessageIterator> m_cursor;
    std::string m_element;
};

// --- qel profile merge

ExitCode runMerge(const Invocation& invocation, const Console& console) {
    ProfileFile below(invocation.arguments[0], console);
    ProfileFile above(invocation.arguments[1], console);
    QelProfile profile;
    QelProfile other;
    for (const auto& [file, read] : {std::pair(&below, &profile), std::pair(&above, &other)}) {
        if (const ExitCode code = file->open(); code != ExitCode::success)
            return code;
        if (const ExitCode code = file->read(*read, QelProfile::Reader()); code != ExitCode::success)
            return code;
    }
    profile.merge(other);
    return below.print(profile);
}

// --- qel profile difference, qel profile intersection

void addFilterOptions(Options& options) {
    options.add({.name = "sections", .help = "use only the set of sections in B and ignore their content"});
}

template <class FilteredReader> ExitCode runFiltered(const Invocation& invocation, const Console& console) {
    ProfileFile stored(invocation.arguments[0], console);
    ProfileFile filterFile(invocation.arguments[1], console);
    for (ProfileFile* const file : {&stored, &filterFile})
        if (const ExitCode code = file->open(); code != ExitCode::success)
            return code;
    const auto filter = boost::make_shared<QelProfile>();
    if (const ExitCode code = invocation.has("sections") ? filterFile.read(*filter, QelProfile::filterReader())
                                                         : filterFile.read(*filter, QelProfile::Reader());
        code != ExitCode::success)
        return code;
    QelProfile profile;
    if (const ExitCode code = stored.read(profile, FilteredReader(filter)); code != ExitCode::success)
        return code;
    return stored.print(profile);
}

} // namespace

CommandGroup profileCommands() {
    static constexpr std::array commands{
        Command{"merge", "A B", "Merge the interface profile in message B into the one in A; B takes precedence",
                nullptr, runMerge},
        Command{"difference", "A B", "Print the parts of the profile in A that are not in B", addFilterOptions,
                runFiltered<QelProfile::differenceReader>},
        Command{"intersection", "A B", "Print the parts of the profile in A that are also in B", addFilterOptions,
                runFiltered<QelProfile::intersectionReader>},
    };
    return {"profile", "Interface profiles", commands};
}

} // namespace Qel::Tool
