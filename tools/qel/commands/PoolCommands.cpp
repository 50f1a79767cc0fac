#include <array>
#include <memory>
#include <optional>
#include <ostream>

#include "QelCommon/ErrorMessage.h"
#include "QelCore/QelIPConversions.h"
#include "QelCore/QelIPv4.h"
#include "QelFunctionalityCore/Network/QelResource.h"
#include "QelMessage/QelBinary.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/MessageFiles.h"
#include "qel/records/RecordLimits.h"

namespace Qel::Tool {

namespace {

using AddressRange = range<unsigned>;

constexpr int typeElement = 1007;
constexpr int addressElement = 1262;
constexpr int rangeElement = 1662;
constexpr int poolElement = 1974;

/// Reads the pool in the current element.
ExitCode readPool(const std::string& file, const QelMessageIterator& cursor, QelResourceIpPool& pool,
                  const Console& console) {
    const std::string type = cursor.curType();
    if (!type.empty() && type != QelDerivedKey<QelResourceIpPool::Writer>())
        return console.fail(ExitCode::badInput, shownName(file) + ": element " + cursor.curName() + " has type " +
                                                    type + ", which is not an address pool");
    if (const auto reason = findFatalAddress(cursor))
        return console.fail(ExitCode::badInput, shownName(file) + ": " + *reason);
    if (cursor.getObj(pool, getEmptyID()) != 0)
        return console.fail(ExitCode::badInput, shownName(file) + ": " + getErrorMessage());
    return ExitCode::success;
}

/// Reads a message and the pool in its first element, and leaves `cursor` at that element.
ExitCode readPool(const std::string& file, QelMessage& message, QelMessageIterator& cursor, QelResourceIpPool& pool,
                  const Console& console) {
    if (const ExitCode code = readMessage(file, message, console); code != ExitCode::success)
        return code;
    cursor.seekRoot();
    if (cursor.firstChild() != 0)
        return console.fail(ExitCode::badInput, shownName(file) + ": empty message");
    return readPool(file, cursor, pool, console);
}

unsigned long long countAddresses(const AddressRange& one) {
    return one.end - one.start + 1ULL;
}

unsigned long long countAddresses(const QelResourceIpPool& pool) {
    unsigned long long count = 0;
    for (const AddressRange& each : pool.ranges)
        count += countAddresses(each);
    return count;
}

// --- qel pool show

Json poolAsJson(const QelResourceIpPool& pool) {
    Json ranges = Json::array();
    for (const AddressRange& each : pool.ranges)
        ranges.push_back(Json::array({ipToStr(each.start), ipToStr(each.end)}));
    return {{"ranges", ranges}, {"count", countAddresses(pool)}};
}

std::string counted(unsigned long long count, const std::string& one, const std::string& many) {
    return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

void printPool(std::ostream& out, const QelResourceIpPool& pool) {
    using Align = Table::Align;
    Table table({Align::left, Align::left, Align::right});
    table.addRow({"first", "last", "addresses"});
    for (const AddressRange& each : pool.ranges)
        table.addRow({ipToStr(each.start), ipToStr(each.end), std::to_string(countAddresses(each))});
    table.print(out);
    out << counted(countAddresses(pool), "address", "addresses") << " in "
        << counted(pool.ranges.size(), "range", "ranges") << '\n';
}

ExitCode runShow(const Invocation& invocation, const Console& console) {
    const auto_destroy<QelMessage> message(new QelBinary);
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    QelResourceIpPool pool;
    if (const ExitCode code = readPool(invocation.arguments[0], *message, *cursor, pool, console);
        code != ExitCode::success)
        return code;
    Output(invocation, console)
        .printLine([&] { return poolAsJson(pool); }, [&](std::ostream& out) { printPool(out, pool); });
    return ExitCode::success;
}

// --- qel pool add

/// Parses "ADDRESS" or "FIRST-LAST".  Returns an error message, or std::nullopt on success.
std::optional<std::string> parseRange(const std::string& string, AddressRange& parsed) {
    const std::size_t dash = string.find('-');
    const std::string firstString = string.substr(0, dash);
    const std::string lastString = dash == std::string::npos ? firstString : string.substr(dash + 1);
    QelIPv4 first;
    QelIPv4 last;
    if (first.fromString(firstString) != 0 || last.fromString(lastString) != 0)
        return "'" + string + "' is not an IPv4 address or a range FIRST-LAST";
    for (const QelIPv4& each : {first, last})
        if (!canBeInPool(each.numeric()))
            return "no pool can hold the address " + each.toString();
    if (last < first)
        return "'" + string + "' ends before it starts";
    parsed = {first.numeric(), last.numeric()};
    return std::nullopt;
}

/// Replaces the pool in the current element.  Unknown child elements are kept.
int replacePool(QelMessageIterator& cursor, const QelResourceIpPool& pool) {
    for (const int id : {typeElement, addressElement, rangeElement})
        while (cursor.deleteChild(id) == 0) {
        }
    return cursor.putObj(pool, getEmptyID());
}

ExitCode runAdd(const Invocation& invocation, const Console& console) {
    const std::string& file = invocation.arguments[0];
    std::vector<AddressRange> added;
    for (auto argument = invocation.arguments.begin() + 1; argument != invocation.arguments.end(); ++argument)
        if (const auto error = parseRange(*argument, added.emplace_back()))
            return console.fail(ExitCode::usage, *error);

    QelFileLock lock;
    if (const ExitCode code = lockFile(file, lock, console); code != ExitCode::success)
        return code;
    const auto_destroy<QelMessage> message(new QelBinary);
    const std::unique_ptr<QelMessageIterator> cursor(message->rootIterator());
    QelResourceIpPool pool;
    if (isMissing(file))
        cursor->newChild(poolElement);
    else if (const ExitCode code = readPool(file, *message, *cursor, pool, console); code != ExitCode::success)
        return code;
    pool.ranges.insert(added.begin(), added.end());
    pool.type = QelResourceType::ip; // the message may have omitted it
    if (replacePool(*cursor, pool) != 0)
        return console.fail(ExitCode::failed, shownName(file) + ": " + getErrorMessage());
    return writeMessage(file, *message, console);
}

} // namespace

CommandGroup poolCommands() {
    static constexpr std::array commands{
        Command{"show", "FILE", "Show the ranges of the address pool in a message", addJsonOption, runShow},
        Command{"add", "FILE ADDRESS|FIRST-LAST...",
                "Add addresses to the pool in a message; create the file if it does not exist", nullptr, runAdd},
    };
    return {"pool", "IPv4 address pools", commands};
}

} // namespace Qel::Tool
