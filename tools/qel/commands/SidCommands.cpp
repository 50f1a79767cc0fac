#include <array>
#include <ostream>
#include <vector>

#include <boost/algorithm/hex.hpp>

#include "QelCommon/Strings.h"
#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Security/QelLocalSID.h"
#include "QelMessage/QelBinary.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/MessageFiles.h"

namespace Qel::Tool {

namespace {

void addSidOptions(Options& options) {
    options.add(
        {.name = "binary", .value = "HEX", .help = "read the binary form, given in hexadecimal, instead of TEXT"});
    options.add({.name = "local",
                 .value = "ID TYPE EID",
                 .kind = OptionKind::words,
                 .help = "use the identifier of a local principal: its number, its type from 1 to 4 and the EID of its "
                         "environment"});
    options.add({.name = "config",
                 .value = "FILE",
                 .help = "agent configuration that defines the well-known local identifiers"});
    addJsonOption(options);
}

// --- input

ExitCode fromString(const std::string& string, QelSID& sid, const Console& console) {
    if (sid.fromString(string) == 0)
        return ExitCode::success;
    return console.fail(ExitCode::badInput, "'" + string + "' is not a security identifier");
}

ExitCode fromHexadecimal(const std::string& digits, QelSID& sid, const Console& console) {
    std::string bytes;
    try {
        bytes = boost::algorithm::unhex(digits);
    } catch (const boost::algorithm::hex_decode_error&) {
        return console.fail(ExitCode::badInput, "'" + digits + "' is not hexadecimal");
    }
    // fromBinary() takes a size of 0 to mean that the size is encoded in the data.
    if (!bytes.empty() && sid.fromBinary(bytes.data(), static_cast<unsigned>(bytes.size())) == 0)
        return ExitCode::success;
    return console.fail(ExitCode::badInput, "'" + digits + "' is not a security identifier in binary form");
}

ExitCode fromLocal(const std::vector<std::string>& parts, QelSID& sid, const Console& console) {
    constexpr std::size_t partCount = 3;
    unsigned id = 0;
    int type = QelLocalSID::notLocal;
    QelEID eid;
    if (parts.size() != partCount || !parseNumber(parts[0], id) || !parseNumber(parts[1], type) ||
        type < QelLocalSID::type1 || type > QelLocalSID::type4 || eid.fromString(parts[2].c_str()) != 0)
        return console.fail(ExitCode::usage, "--local requires a number, a type from 1 to 4 and an EID");
    sid = QelLocalSID(id, static_cast<QelLocalSID::PrincipalType>(type), eid).getSID();
    return ExitCode::success;
}

ExitCode readSid(const Invocation& invocation, QelSID& sid, const Console& console) {
    const auto ways =
        invocation.arguments.size() + (invocation.has("binary") ? 1 : 0) + (invocation.has("local") ? 1 : 0);
    if (ways != 1)
        return console.fail(ExitCode::usage, "give a security identifier as TEXT, --binary or --local");
    if (invocation.has("binary"))
        return fromHexadecimal(invocation.string("binary"), sid, console);
    if (invocation.has("local"))
        return fromLocal(invocation.strings("local"), sid, console);
    return fromString(invocation.arguments[0], sid, console);
}

// --- output

/// Sets the local configuration of this process during its lifetime.
class LocalConfiguration {
public:
    LocalConfiguration() = default;
    LocalConfiguration(const LocalConfiguration&) = delete;
    LocalConfiguration& operator=(const LocalConfiguration&) = delete;
    ~LocalConfiguration() { QelConfiguration::setLocalConfig(nullptr); }

    [[nodiscard]] static ExitCode load(const std::string& file, const Console& console) {
        const auto_destroy<QelMessage> message(new QelBinary);
        if (const ExitCode code = readMessage(file, *message, console); code != ExitCode::success)
            return code;
        QelConfiguration::setLocalConfig(message.get());
        if (QelConfiguration::getLocalEID().isValid())
            return ExitCode::success;
        return console.fail(ExitCode::badInput, shownName(file) + ": the configuration contains no agent EID");
    }
};

/// Whether `sid` has a well-known role.  Without an agent identity, the SIDs of the agents and of the administrators
/// are the default SID, which must not match them.
bool isWellKnown(const QelSID& sid, QelSID::WellKnownSIDs which) {
    const bool isAgents =
        which == QelSID::localAdministrators || which == QelSID::localAgent || which == QelSID::masterAgent;
    return sid.isWellKnownSID(which) && !(isAgents && sid == QelSID());
}

std::vector<QelSID::WellKnownSIDs> wellKnownOf(const QelSID& sid) {
    std::vector<QelSID::WellKnownSIDs> found;
    for (int number = 0; number < QelSID::wellKnownSIDCount; ++number)
        if (const auto which = static_cast<QelSID::WellKnownSIDs>(number); isWellKnown(sid, which))
            found.push_back(which);
    return found;
}

/// The role of a well-known SID for the text output, empty for the other well-known SIDs.
const char* roleOf(QelSID::WellKnownSIDs which) {
    switch (which) {
    case QelSID::localAdministrators:
        return " administrators of the local host";
    case QelSID::anonymous:
        return " anonymous";
    case QelSID::localAgent:
        return " local agent";
    case QelSID::anyAgent:
        return " agent of an environment";
    case QelSID::masterAgent:
        return " agent of the server group's master";
    case QelSID::nobody:
        return " nobody"; // language: allow
    default:
        return "";
    }
}

std::string hexadecimalOf(const QelSID& sid) {
    std::string digits;
    boost::algorithm::hex_lower(sid.toBinary().begin(), sid.toBinary().end(), std::back_inserter(digits));
    return digits;
}

Json sidAsJson(const QelSID& sid) {
    const QelLocalSID local(sid);
    Json document{{"text", sid.toString()}, {"binary", hexadecimalOf(sid)}, {"wellKnown", wellKnownOf(sid)}};
    document["local"] = Json();
    if (local.type != QelLocalSID::notLocal)
        document["local"] = {{"id", local.id}, {"type", static_cast<int>(local.type)}, {"eid", local.eid.toString()}};
    return document;
}

void printSid(std::ostream& out, const QelSID& sid) {
    const QelLocalSID local(sid);
    Table table;
    table.addRow({"text", sid.toString()});
    table.addRow({"binary", hexadecimalOf(sid)});
    for (const QelSID::WellKnownSIDs which : wellKnownOf(sid))
        table.addRow({"well known", std::to_string(which) + roleOf(which)});
    if (local.type != QelLocalSID::notLocal) {
        table.addRow({"local id", std::to_string(local.id)});
        table.addRow({"local type", std::to_string(local.type)});
        table.addRow({"local eid", local.eid.toString()});
    }
    table.print(out);
}

ExitCode runSid(const Invocation& invocation, const Console& console) {
    QelSID sid;
    if (const ExitCode code = readSid(invocation, sid, console); code != ExitCode::success)
        return code;
    const LocalConfiguration configuration;
    if (invocation.has("config"))
        if (const ExitCode code = LocalConfiguration::load(invocation.string("config"), console);
            code != ExitCode::success)
            return code;
    Output(invocation, console).print([&] { return sidAsJson(sid); }, [&](std::ostream& out) { printSid(out, sid); });
    return ExitCode::success;
}

} // namespace

CommandGroup sidCommands() {
    static constexpr std::array commands{
        Command{"", "[TEXT]", "Show all forms of a security identifier, and its well-known role or local principal",
                addSidOptions, runSid},
    };
    return {"sid", "Security identifiers", commands};
}

} // namespace Qel::Tool
