#include <array>
#include <ctime>
#include <memory>
#include <ostream>

#include "QelCommon/ErrorMessage.h"
#include "QelMessage/QelBinary.h"
#include "qel/cli/Command.h"
#include "qel/host/HostCollector.h"
#include "qel/host/HostTables.h"
#include "qel/records/MessageFiles.h"

namespace Qel::Tool {

namespace {

void addReportOptions(Options& options) {
    options.add({.name = "arguments",
                 .help = "include process arguments; omitted by default because they may contain passwords"});
    options.add({.name = "binary", .help = "write the binary form"});
}

void reportProblems(const Problems& problems, const Console& console) {
    for (const std::string& problem : problems)
        static_cast<void>(console.fail(ExitCode::success, problem));
}

// --- qel host report

ExitCode runReport(const Invocation& invocation, const Console& console) {
    HostCollector collector(invocation.has("arguments") ? HostCollector::Arguments::included
                                                        : HostCollector::Arguments::omitted);
    const HostReport report = collector.collect();
    Problems problems = collector.problems();
    const auto_destroy<QelMessage> message(new QelBinary);
    message->setTime(static_cast<long>(std::time(nullptr)));
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    writeReport(*cursor, report, problems);
    reportProblems(problems, console);
    std::string content;
    if ((invocation.has("binary") ? message->toBinary(content) : toText(*message, content)) != 0)
        return console.fail(ExitCode::failed, getErrorMessage());
    console.out << content;
    return ExitCode::success;
}

// --- qel host show

ExitCode runShow(const Invocation& invocation, const Console& console) {
    const std::string& file = invocation.arguments[0];
    const auto_destroy<QelMessage> message(new QelBinary);
    if (const ExitCode code = readMessage(file, *message, console); code != ExitCode::success)
        return code;
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    Problems problems;
    const HostReport report = readReport(*cursor, problems);
    if (report.isEmpty() && problems.empty())
        return console.fail(ExitCode::badInput, shownName(file) + ": contains no host report");
    printReport(console.out, report);
    for (const std::string& problem : problems)
        static_cast<void>(console.fail(ExitCode::badInput, shownName(file) + ": " + problem));
    return problems.empty() ? ExitCode::success : ExitCode::badInput;
}

} // namespace

CommandGroup hostCommands() {
    static constexpr std::array commands{
        Command{"report", "", "Print a message that describes this machine; report the parts that cannot be read",
                addReportOptions, runReport},
        Command{"show", "FILE", "Show a host report as tables; - is standard input", nullptr, runShow},
    };
    return {"host", "Inventory of the machine that an agent runs on", commands};
}

} // namespace Qel::Tool
