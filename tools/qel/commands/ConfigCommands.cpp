#include <algorithm>
#include <array>
#include <memory>
#include <ostream>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Configuration/QelConfigurationIterator.h"
#include "QelFunctionalityCore/Values/QelEIDList.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelElementNames.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/MessageFiles.h"

namespace Qel::Tool {

namespace {

using Cursor = std::unique_ptr<QelMessageIterator>;

constexpr int passwordElement = 1032;

ExitCode readConfiguration(const std::string& file, QelMessage& message, const Console& console) {
    if (const ExitCode code = readMessage(file, message, console); code != ExitCode::success)
        return code;
    const Cursor cursor(message.rootIterator());
    if (cursor->seekPresence("data"_element) != 0)
        return console.fail(ExitCode::badInput, file + ": not a configuration: the data element is missing");
    return ExitCode::success;
}

/// Enters the `configuration` element between a section and its options, which paths do not name.  `depth` is the
/// number of path components above the cursor.
bool enterOptions(const QelMessageIterator& cursor, int depth) {
    constexpr int sectionDepth = 1;
    return depth != sectionDepth || cursor.seek("configuration"_element) == 0;
}

void addBase64Option(Options& options) {
    options.add({.name = "base64", .help = "the value is stored in base64"});
}

// --- qel config get

ExitCode runGet(const Invocation& invocation, const Console& console) {
    const std::string& file = invocation.arguments[0];
    const std::string& path = invocation.arguments[1];
    auto_destroy<QelMessage> message(new QelBinary);
    if (const ExitCode code = readConfiguration(file, *message, console); code != ExitCode::success)
        return code;
    QelConfigurationIterator at(message.release());
    if (at.seek(path) != 0)
        return console.fail(ExitCode::negative, file + ": no element at " + path);
    at.seekRoot();
    std::string value;
    if ((invocation.has("base64") ? at.getValueBase64(value, path) : at.getValue(value, path)) != 0)
        return console.fail(ExitCode::badInput, file + ": cannot read the value at " + path);
    printValue(console, value);
    return ExitCode::success;
}

// --- qel config set

/// Checks the path argument of `set`.  Returns an error message, or null if the path is valid.
const char* findPathError(const std::string& path) {
    if (path.find('/', path.starts_with('/') ? 1 : 0) == std::string::npos)
        return "is not the path of an option, such as /system/log_level";
    if (path.ends_with('/') || path.find("//") != std::string::npos)
        return "contains an empty name";
    return nullptr;
}

ExitCode readOrCreate(const std::string& file, QelMessage& message, const Console& console) {
    if (!isMissing(file))
        return readConfiguration(file, message, console);
    const Cursor cursor(message.rootIterator());
    cursor->newChild("data"_element);
    return ExitCode::success;
}

ExitCode runSet(const Invocation& invocation, const Console& console) {
    const std::string& file = invocation.arguments[0];
    const std::string& path = invocation.arguments[1];
    const std::string& value = invocation.arguments[2];
    if (const char* const error = findPathError(path))
        return console.fail(ExitCode::usage, "'" + path + "' " + error);
    QelFileLock lock;
    if (const ExitCode code = lockFile(file, lock, console); code != ExitCode::success)
        return code;
    auto_destroy<QelMessage> message(new QelBinary);
    if (const ExitCode code = readOrCreate(file, *message, console); code != ExitCode::success)
        return code;
    QelConfigurationIterator at(message.release());
    // Absolute and relative paths both start at the data element, the initial position of the iterator.
    if ((invocation.has("base64") ? at.putValueBase64(value, path) : at.putValue(value, path)) != 0)
        return console.fail(ExitCode::failed, file + ": cannot set the value at " + path);
    return writeMessage(file, *at.getMessage(), console);
}

// --- qel config list

/// Whether the element is a password.  Its value and its child elements must not be shown.
bool isSecret(const QelMessageIterator& cursor) {
    return cursor.curID() == passwordElement;
}

/// The value of an element, or a placeholder if it is secret and not empty.
std::string shownValue(const QelMessageIterator& cursor) {
    std::string value;
    cursor.getValue(value, getEmptyID());
    if (!isSecret(cursor))
        return value;
    const Cursor child(cursor.newIterator(false));
    return value.empty() && child->firstChild() != 0 ? "" : hiddenValue;
}

/// Calls `visit` with a cursor on each child element that a path can name and that may be shown.
template <class Visit> void forEachChild(const QelMessageIterator& cursor, int depth, const Visit& visit) {
    const Cursor child(cursor.newIterator(false));
    if (isSecret(*child) || !enterOptions(*child, depth) || child->firstChild() != 0)
        return;
    do
        visit(*child);
    while (child->nextSibling() == 0);
}

void printTree(std::ostream& out, const QelMessageIterator& cursor, int depth, int indent) {
    forEachChild(cursor, depth, [&](const QelMessageIterator& child) {
        const std::string value = shownValue(child);
        out << std::string(static_cast<std::size_t>(2 * indent), ' ') << showControls(child.curName())
            << (value.empty() ? "" : " = " + showControls(value)) << '\n';
        printTree(out, child, depth + 1, indent + 1);
    });
}

Json treeAsJson(const QelMessageIterator& cursor, int depth) {
    Json children = Json::array();
    forEachChild(cursor, depth, [&](const QelMessageIterator& child) {
        Json node;
        node["name"] = child.curName();
        node["value"] = shownValue(child);
        node["children"] = treeAsJson(child, depth + 1);
        children.push_back(std::move(node));
    });
    return children;
}

/// Moves the cursor from the data element down a path.  Returns the depth, or -1 if not found.  Stops at a password, so
/// that the result does not reveal which elements it contains.
int seekPath(const QelMessageIterator& cursor, std::string_view path) {
    int depth = 0;
    if (path.starts_with('/'))
        path.remove_prefix(1);
    while (!path.empty() && !isSecret(cursor)) {
        const std::string_view name = path.substr(0, path.find('/'));
        if (!enterOptions(cursor, depth) || cursor.seek(std::string(name)) != 0)
            return -1;
        ++depth;
        path.remove_prefix(std::min(name.size() + 1, path.size()));
    }
    return depth;
}

ExitCode runList(const Invocation& invocation, const Console& console) {
    const std::string& file = invocation.arguments[0];
    const std::string path = invocation.arguments.size() > 1 ? invocation.arguments[1] : "/";
    const auto_destroy<QelMessage> message(new QelBinary);
    if (const ExitCode code = readConfiguration(file, *message, console); code != ExitCode::success)
        return code;
    const Cursor cursor(message->rootIterator());
    cursor->seek("data"_element);
    const int depth = seekPath(*cursor, path);
    if (depth < 0)
        return console.fail(ExitCode::negative, file + ": no element at " + path);
    Output(invocation, console)
        .print([&] { return treeAsJson(*cursor, depth); },
               [&](std::ostream& out) { printTree(out, *cursor, depth, 0); });
    return ExitCode::success;
}

// --- qel config identity

constexpr std::string_view ownEIDPath = "/agent/id";
constexpr std::string_view masterEIDPath = "/server_group/master/id";

/// Malformed EIDs: path and value.
using MalformedEIDs = std::vector<std::pair<std::string, std::string>>;

struct Identity {
    std::string eid;
    std::string role;
    std::string master;
    std::vector<std::string> slaves;
    std::map<QelEID, QelConnectionInfo> mappings;
    MalformedEIDs malformed;

    [[nodiscard]] bool isMalformed(std::string_view path) const {
        return std::any_of(malformed.begin(), malformed.end(), [&](const auto& each) { return each.first == path; });
    }
};

/// Adds the EID in the current element if it exists and is malformed.
void addMalformed(const QelMessageIterator& cursor, const std::string& path, MalformedEIDs& malformed) {
    QelEID eid;
    std::string value;
    if (cursor.getValue(value, "id"_element) == 0 && cursor.getObj(eid, "id"_element) != 0)
        malformed.emplace_back(path, value);
}

/// Moves the cursor to the element at a path, or to its options if it is a section.
bool seekOptions(const QelMessageIterator& cursor, std::string_view path) {
    cursor.seekRoot();
    cursor.seek("data"_element);
    const int depth = seekPath(cursor, path);
    return depth >= 0 && enterOptions(cursor, depth);
}

MalformedEIDs findMalformedEIDs(QelMessage& message) {
    MalformedEIDs malformed;
    const Cursor cursor(message.rootIterator());
    constexpr std::string_view idName = "/id";
    for (const std::string_view path : {ownEIDPath, masterEIDPath})
        if (seekOptions(*cursor, path.substr(0, path.size() - idName.size())))
            addMalformed(*cursor, std::string(path), malformed);
    for (const char* const path : {"/server_group/slaves", "/agent/mapping_table"}) {
        if (!seekOptions(*cursor, path))
            continue;
        for (int found = cursor->firstChild("entry"_element); found == 0; found = cursor->nextSibling("entry"_element))
            addMalformed(*cursor, path + std::string("/entry/id"), malformed);
    }
    return malformed;
}

std::string stringOf(const QelEID& eid) {
    return eid.isValid() ? eid.toString() : "";
}

std::string roleOf(const QelConfiguration& configuration) {
    if (!configuration.isInServerGroup())
        return "alone";
    if (configuration.isMaster())
        return "master";
    return configuration.isSlave() ? "slave" : "unknown";
}

Identity identityOf(const QelConfiguration& configuration) {
    Identity identity;
    identity.malformed = findMalformedEIDs(*configuration.getMessage());
    QelEID own;
    configuration.getEID(own);
    identity.eid = stringOf(own);
    identity.role = roleOf(configuration);
    QelEID master;
    configuration.getMaster(master);
    identity.master = stringOf(master);
    QelEIDList slaves;
    configuration.getGroupSlaves(slaves);
    for (const QelEID& slave : slaves)
        identity.slaves.push_back(slave.toString());
    configuration.getMappingTable(identity.mappings);
    return identity;
}

Json orNull(const std::string& string) {
    return string.empty() ? Json() : Json(string);
}

Json identityAsJson(const Identity& identity) {
    Json document;
    document["eid"] = orNull(identity.eid);
    document["role"] = identity.role;
    document["master"] = orNull(identity.master);
    document["slaves"] = identity.slaves;
    Json& mappings = document["mappings"] = Json::array();
    for (const auto& [eid, info] : identity.mappings)
        mappings.push_back({{"eid", eid.toString()},
                            {"protocol", info.protocol},
                            {"address", info.address},
                            {"port", info.port},
                            {"user", info.authName.name.get()}});
    return document;
}

void printIdentity(std::ostream& out, const Identity& identity) {
    const auto shown = [&](const std::string& eid, std::string_view path) {
        if (!eid.empty())
            return eid;
        return std::string(identity.isMalformed(path) ? "malformed" : "none");
    };
    Table table;
    table.addRow({"eid", shown(identity.eid, ownEIDPath)});
    table.addRow({"role", identity.role});
    table.addRow({"master", shown(identity.master, masterEIDPath)});
    for (const std::string& slave : identity.slaves)
        table.addRow({"slave", slave});
    table.print(out);
    if (identity.mappings.empty())
        return;
    out << '\n';
    using Align = Table::Align;
    Table mappings({Align::left, Align::left, Align::left, Align::right});
    mappings.addRow({"agent", "protocol", "address", "port", "user"});
    for (const auto& [eid, info] : identity.mappings)
        mappings.addRow({eid.toString(), info.protocol, info.address, info.port > 0 ? std::to_string(info.port) : "",
                         info.authName.name.get()});
    mappings.print(out);
}

ExitCode runIdentity(const Invocation& invocation, const Console& console) {
    const auto_destroy<QelMessage> message(new QelBinary);
    if (const ExitCode code = readConfiguration(invocation.arguments[0], *message, console); code != ExitCode::success)
        return code;
    const Identity identity = identityOf(QelConfiguration(message.get()));
    Output(invocation, console)
        .print([&] { return identityAsJson(identity); }, [&](std::ostream& out) { printIdentity(out, identity); });
    ExitCode worst = ExitCode::success;
    for (const auto& [path, value] : identity.malformed)
        worst = console.fail(ExitCode::badInput, shownName(invocation.arguments[0]) + ": " + path + ": '" +
                                                     showControls(value) + "' is not a valid EID");
    return worst;
}

} // namespace

CommandGroup configCommands() {
    static constexpr std::array commands{
        Command{"get", "FILE PATH", "Print the value at a path, such as /system/log_level", addBase64Option, runGet},
        Command{"set", "FILE PATH VALUE",
                "Set the value at a path; create missing elements, and the file if it does not exist", addBase64Option,
                runSet},
        Command{"list", "FILE [PATH]",
                "Show the elements below a path, or all elements, as a tree; passwords are hidden", addJsonOption,
                runList},
        Command{"identity", "FILE",
                "Show the agent's EID, its role in the server group and the agents it can connect to", addJsonOption,
                runIdentity},
    };
    return {"config", "Agent configurations", commands};
}

} // namespace Qel::Tool
