#include <array>
#include <ostream>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Backup/QelBackupURI.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/RecordInMessage.h"

// A backup URI contains the storage password, encoded as hexadecimal digits but not encrypted.  Error messages must not
// quote a URI.

namespace Qel::Tool {

namespace {

// --- qel backup-uri parse

void addParseOptions(Options& options) {
    addJsonOption(options);
    options.add({.name = "show-secrets", .help = "show the storage password"});
}

Json storageAsJson(const QelDSLocation& location, bool showSecrets) {
    Json json{{"type", location.type}, {"path", location.path}};
    if (location.authName.name.isSpecified())
        json["user"] = location.authName.name.get();
    if (location.authName.domain.isSpecified())
        json["domain"] = location.authName.domain.get();
    if (location.authName.realm.isValid())
        json["realm"] = location.authName.realm.toString();
    if (showSecrets)
        json["password"] = location.password;
    return json;
}

Json nameAsJson(const QelBackupURI& name, bool showSecrets) {
    Json document;
    document["valid"] = name.isValid();
    document["backup"] = name.backup();
    document["subPath"] = name.subPath();
    document["storage"] = name.storage().isSpecified() ? storageAsJson(name.storage().get(), showSecrets) : Json();
    return document;
}

void addStorage(Table& table, const QelDSLocation& location, bool showSecrets) {
    table.addRow({"storage type", std::to_string(location.type)});
    table.addRow({"storage path", location.path});
    if (location.authName.name.isSpecified())
        table.addRow({"user", location.authName.name.get()});
    if (location.authName.domain.isSpecified())
        table.addRow({"domain", location.authName.domain.get()});
    if (location.authName.realm.isValid())
        table.addRow({"realm", location.authName.realm.toString()});
    if (!location.password.empty())
        table.addRow({"password", showSecrets ? location.password : hiddenValue});
}

void printName(std::ostream& out, const QelBackupURI& name, bool showSecrets) {
    Table table;
    table.addRow({"backup", name.backup()});
    table.addRow({"subpath", name.subPath().empty() ? "none" : name.subPath()});
    if (name.storage().isSpecified())
        addStorage(table, name.storage().get(), showSecrets);
    else
        table.addRow({"storage", "none"});
    table.print(out);
}

/// Explains why a string is not a backup URI.  `storageError` is the error message from reading its storage, or empty.
std::string reasonOf(const std::string& string, const std::string& storageError) {
    QelURI uri;
    uri.setUri(string);
    if (uri.getUriType() != QelBackupURI::TYPE)
        return "it does not start with " + QelBackupURI::TYPE + "://";
    return storageError.empty() ? "no slash after the first component of the backup name"
                                : "cannot read the storage: " + storageError;
}

ExitCode runParse(const Invocation& invocation, const Console& console) {
    const std::string& uri = invocation.arguments[0];
    const bool showSecrets = invocation.has("show-secrets");
    clearErrorMessage();
    const QelBackupURI name(uri);
    const std::string& storageError = getErrorMessage();
    Output(invocation, console)
        .print([&] { return nameAsJson(name, showSecrets); },
               [&](std::ostream& out) {
                   if (name.isValid())
                       printName(out, name, showSecrets);
               });
    return name.isValid() ? ExitCode::success
                          : console.fail(ExitCode::negative, "not a backup URI: " + reasonOf(uri, storageError));
}

// --- qel backup-uri build

void addBuildOptions(Options& options) {
    options.add({.name = "storage",
                 .value = "FILE",
                 .help = "include the storage described in this message, with its password"});
}

bool areEqual(const QelBackupURI& a, const QelBackupURI& b) {
    return a.backup() == b.backup() && a.subPath() == b.subPath() &&
           a.storage().isSpecified() == b.storage().isSpecified();
}

ExitCode runBuild(const Invocation& invocation, const Console& console) {
    const std::string subPath = invocation.arguments.size() > 1 ? invocation.arguments[1] : "";
    QelBackupURI name(invocation.arguments[0], subPath);
    if (invocation.has("storage")) {
        QelDSLocation location;
        const std::string& file = invocation.text("storage");
        if (const ExitCode code = readRecord(file, location, console); code != ExitCode::success)
            return code;
        name.storage(location);
    }
    QelURI uri;
    if (name.isValid() && name.uri(uri) != 0)
        return console.fail(ExitCode::failed, "cannot encode the storage in a URI: " + getErrorMessage());
    // The format has no escapes, so some names do not survive the round trip.
    if (!name.isValid() || !areEqual(QelBackupURI(uri.getUri()), name))
        return console.fail(ExitCode::usage, "cannot encode this backup name in a URI: a name has two components "
                                             "separated by a slash, without other slashes, backslashes or '&'");
    printValue(console, uri.getUri());
    return ExitCode::success;
}

} // namespace

CommandGroup backupUriCommands() {
    static constexpr std::array commands{
        Command{"parse", "URI", "Show the backup that a URI names, and its storage", addParseOptions, runParse},
        Command{"build", "BACKUP [SUBPATH]", "Print the URI of a backup, or of a path in it", addBuildOptions,
                runBuild},
    };
    return {"backup-uri", "Backup URIs", commands};
}

} // namespace Qel::Tool
