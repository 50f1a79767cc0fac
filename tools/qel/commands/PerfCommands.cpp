#include <array>
#include <memory>
#include <ostream>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Monitoring/QelMonitorData.h"
#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelValueText.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/MessageFiles.h"
#include "qel/vocabulary/VocFiles.h"

namespace Qel::Tool {

namespace {

void addShowOptions(Options& options) {
    addVocOption(options, "vocabularies that define which counters are floating-point");
    addJsonOption(options);
}

/// Reads the report in the first element of a message.
ExitCode readReport(const std::string& file, const QelVocMapSP& vocabulary, QelMonitorData& report,
                    const Console& console) {
    const auto_destroy<QelMessage> message(new QelBinary);
    if (const ExitCode code = readMessage(file, *message, console); code != ExitCode::success)
        return code;
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    if (cursor->firstChild() != 0)
        return console.fail(ExitCode::badInput, shownName(file) + ": empty message");
    if (cursor->getObject(report, QelMonitorData::Reader(vocabulary), getEmptyID()) != 0)
        return console.fail(ExitCode::badInput, shownName(file) + ": " + getErrorMessage());
    return ExitCode::success;
}

/// An output column with a value of each counter.
struct Column {
    const char* name;
    QelPerfValue QelPerfStat::*member;
};
constexpr std::array<Column, 4> columns{{{"current", &QelPerfStat::current},
                                         {"stat_1060", &QelPerfStat::stat1060},
                                         {"stat_1061", &QelPerfStat::stat1061},
                                         {"stat_1062", &QelPerfStat::stat1062}}};

template <class Visit> void forEachCounter(const QelMonitorData& report, const Visit& visit) {
    for (const auto& [subsystem, instances] : report.data)
        for (const auto& [instance, counters] : instances)
            for (const auto& [counter, stat] : counters)
                visit(subsystem, instance, counter, stat);
}

std::string timeString(const QelTimeInterval& interval, long time) {
    return std::string(QelValueText::ofTimeZone(time, interval.zone).view());
}

Json reportAsJson(const QelMonitorData& report) {
    Json document;
    document["environment"] = report.eid.toString();
    document["from"] = timeString(report.interval, report.interval.startTime);
    document["to"] = timeString(report.interval, report.interval.endTime);
    Json& counters = document["counters"] = Json::array();
    forEachCounter(report, [&](const auto& subsystem, const auto& instance, const auto& counter, const auto& stat) {
        Json json{{"subsystem", subsystem},
                  {"instance", instance},
                  {"counter", counter},
                  {"type", stat.isInteger ? "integer" : "double"}};
        for (const auto& [name, member] : columns)
            json[name] = stat.isInteger ? Json((stat.*member).integer) : Json((stat.*member).real);
        counters.push_back(std::move(json));
    });
    return document;
}

std::string valueString(const QelPerfStat& stat, const QelPerfValue& value) {
    return std::string(
        (stat.isInteger ? QelValueText::ofInteger(value.integer) : QelValueText::ofDouble(value.real)).view());
}

void printReport(std::ostream& out, const QelMonitorData& report) {
    Table head;
    head.addRow({"environment", report.eid.toString()});
    head.addRow({"from", timeString(report.interval, report.interval.startTime)});
    head.addRow({"to", timeString(report.interval, report.interval.endTime)});
    head.print(out);
    if (report.data.empty())
        return;

    out << '\n';
    using Align = Table::Align;
    Table table({Align::left, Align::left, Align::left, Align::right, Align::right, Align::right, Align::right});
    std::vector<std::string> titles{"subsystem", "instance", "counter"};
    for (const Column& column : columns)
        titles.emplace_back(column.name);
    table.addRow(std::move(titles));
    forEachCounter(report, [&](const auto& subsystem, const auto& instance, const auto& counter, const auto& stat) {
        std::vector<std::string> cells{subsystem, instance, counter};
        for (const Column& column : columns)
            cells.push_back(valueString(stat, stat.*column.member));
        table.addRow(std::move(cells));
    });
    table.print(out);
}

ExitCode runShow(const Invocation& invocation, const Console& console) {
    QelVocMapSP vocabulary;
    if (const ExitCode code = readVocOption(invocation, console, vocabulary); code != ExitCode::success)
        return code;
    QelMonitorData report;
    if (const ExitCode code = readReport(invocation.arguments[0], vocabulary, report, console);
        code != ExitCode::success)
        return code;
    Output(invocation, console)
        .print([&] { return reportAsJson(report); }, [&](std::ostream& out) { printReport(out, report); });
    return ExitCode::success;
}

} // namespace

CommandGroup perfCommands() {
    static constexpr std::array commands{
        Command{"show", "FILE", "Show the monitoring report in a message as a table", addShowOptions, runShow},
    };
    return {"perf", "Performance counters", commands};
}

} // namespace Qel::Tool
