#include <algorithm>
#include <array>
#include <ostream>
#include <set>
#include <span>
#include <string_view>

#include "qel/cachefile/CacheBytes.h"
#include "qel/cachefile/CacheFile.h"
#include "qel/cachefile/CacheFileChecker.h"
#include "qel/cachefile/Hexadecimal.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"

namespace Qel::Tool {

namespace {

namespace Format = CacheFormat;

/// The contents of a cache file and the result of checking them.
struct CacheFileImage {
    std::string path;
    std::vector<std::byte> bytes;
    CacheFileReport report;
};

// --- qel cache check

Json toJson(const Finding& finding) {
    return {{"offset", finding.offset},
            {"kind", nameOf(finding.kind)},
            {"class", nameOf(classOf(finding))},
            {"text", finding.text},
            {"advice", adviceOn(finding)}};
}

Json toJson(const HeldSnapshot& held) {
    return {{"offset", held.offset}, {"readers", held.readers}, {"records", held.records}};
}

template <class Element> Json toJsonArray(const std::vector<Element>& elements) {
    Json array = Json::array();
    for (const Element& element : elements)
        array.push_back(toJson(element));
    return array;
}

/// Counts the held snapshots, and the current one if it is readable.
std::size_t countSnapshots(const CacheFileReport& report) {
    return report.heldSnapshots.size() + (report.achievableSize != 0 ? 1 : 0);
}

Json checkAsJson(const CacheFileImage& file) {
    const CacheFileReport& report = file.report;
    return {{"file", file.path},
            {"findings", toJsonArray(report.findings)},
            {"records", report.records},
            {"snapshots", countSnapshots(report)},
            {"heldSnapshots", toJsonArray(report.heldSnapshots)},
            {"blocks", report.blocks},
            {"freeBlocks", report.freeBlocks}};
}

/// Prints the advice on all findings, each distinct advice once.
void printAdvice(std::ostream& out, const Findings& findings) {
    std::set<std::string_view> printed;
    for (const Finding& finding : findings)
        if (const std::string_view advice = adviceOn(finding); printed.insert(advice).second)
            out << titleOf(classOf(finding)) << ": " << advice << '\n';
}

void printCheck(std::ostream& out, const CacheFileImage& file) {
    const CacheFileReport& report = file.report;
    for (const Finding& finding : report.findings)
        out << finding.offset << ": " << titleOf(classOf(finding)) << ": " << finding.text << '\n';
    printAdvice(out, report.findings);
    for (const HeldSnapshot& held : report.heldSnapshots)
        out << "held snapshot at " << held.offset << ", records " << held.records << ", readers " << held.readers
            << '\n';
    if (report.findings.empty())
        out << showControls(file.path) << ": sound; records " << report.records << ", snapshots "
            << countSnapshots(report) << ", blocks " << report.blocks << ", free blocks " << report.freeBlocks << '\n';
}

ExitCode showCheck(const Invocation& invocation, const Console& console, const CacheFileImage& file) {
    Output(invocation, console)
        .print([&] { return checkAsJson(file); }, [&](std::ostream& out) { printCheck(out, file); });
    return file.report.findings.empty() ? ExitCode::success : ExitCode::negative;
}

// --- qel cache info

/// A header field for the text output; a pointer is shown as the offset of its target.
std::string fieldText(const CacheBytes& bytes, const Format::HeaderField& field) {
    if (field.isPointer) {
        const auto target = bytes.target(field.offset);
        return target ? std::to_string(*target) : "null";
    }
    const std::uint32_t value = bytes.word(field.offset);
    return field.offset == Format::Header::magic ? hexadecimal(value) : std::to_string(value);
}

Json fieldAsJson(const CacheBytes& bytes, const Format::HeaderField& field) {
    if (!field.isPointer)
        return bytes.word(field.offset);
    const auto target = bytes.target(field.offset);
    return target ? Json(*target) : Json();
}

/// A number in the output besides the header fields.
struct Measure {
    const char* jsonName;
    const char* label;
    std::int64_t value;
};

std::vector<Measure> measure(const CacheBytes& bytes, const CacheFileReport& report) {
    const auto number = [](auto value) { return static_cast<std::int64_t>(value); };
    return {
        {"fileSize", "file size", number(bytes.size())},
        {"managed", "bytes managed", bytes.word(Format::Header::size)},
        {"used", "bytes used", bytes.word(Format::Header::ttlAllocated)},
        {"free", "bytes free", number(report.freeBytes)},
        {"largestFree", "largest free block", number(report.largestFreeBlock)},
        {"records", "records", report.records},
        {"snapshotRefCount", "snapshot references", report.snapshotRefCount},
        {"achievableSize", "achievable size", number(report.achievableSize)},
    };
}

Json infoAsJson(const CacheFileImage& file) {
    const CacheBytes bytes(file.bytes);
    Json header = Json::object();
    for (const Format::HeaderField& field : Format::headerFields)
        header[std::string(field.name)] = fieldAsJson(bytes, field);
    Json document{{"file", file.path}, {"header", header}};
    for (const Measure& each : measure(bytes, file.report))
        document[each.jsonName] = each.value;
    return document;
}

void printInfo(std::ostream& out, const CacheFileImage& file) {
    const CacheBytes bytes(file.bytes);
    Table header({Table::Align::right});
    header.addRow({"offset", "header field", "value"});
    for (const Format::HeaderField& field : Format::headerFields)
        header.addRow({std::to_string(field.offset), std::string(field.name), fieldText(bytes, field)});
    header.print(out);
    out << '\n';
    Table table({Table::Align::left, Table::Align::right});
    for (const Measure& each : measure(bytes, file.report))
        table.addRow({each.label, std::to_string(each.value)});
    table.print(out);
}

ExitCode showInfo(const Invocation& invocation, const Console& console, const CacheFileImage& file) {
    Output(invocation, console)
        .print([&] { return infoAsJson(file); }, [&](std::ostream& out) { printInfo(out, file); });
    const auto isHarmless = [](const Finding& finding) { return classOf(finding) == FindingClass::harmlessLeak; };
    if (std::ranges::all_of(file.report.findings, isHarmless))
        return ExitCode::success;
    return console.fail(ExitCode::badInput,
                        file.path + ": the file is damaged, so the numbers may be wrong; see `qel cache check`");
}

/// Reads and checks the cache file in the first argument and passes it to `print`.
template <ExitCode (*print)(const Invocation&, const Console&, const CacheFileImage&)>
ExitCode runOnFile(const Invocation& invocation, const Console& console) {
    CacheFileImage file{invocation.arguments[0], {}, {}};
    std::string error;
    if (const ExitCode code = readCacheFile(file.path, file.bytes, error); code != ExitCode::success)
        return console.fail(code, error);
    file.report = checkCacheFile(file.bytes);
    return print(invocation, console, file);
}

} // namespace

CommandGroup cacheCommands() {
    static constexpr std::array commands{
        Command{"info", "CACHE", "Show the header and space usage of a cache file", addJsonOption, runOnFile<showInfo>},
        Command{"check", "CACHE", "Check a cache file for damage; exit with status 1 if there are findings",
                addJsonOption, runOnFile<showCheck>},
    };
    return {"cache", "Cache files", commands};
}

} // namespace Qel::Tool
