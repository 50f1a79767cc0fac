#include <array>
#include <ostream>

#include "QelCommon/ErrorMessage.h"
#include "QelFunctionalityCore/Backup/QelBackupURI.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/RecordInMessage.h"

// The URI of a backup holds the password of its storage, hidden by nothing but hexadecimal digits.  So no message here
// repeats a URI.

namespace Qel::Tool {

namespace {

// --- qel backup-uri parse

void addParseOptions(Options& options) {
    addJsonOption(options);
    options.add({.name = "show-secrets", .help = "show the storage's password too"});
}

Json toJson(const QelDSLocation& location, bool showSecrets) {
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

void printAsJson(std::ostream& out, const QelBackupURI& name, bool showSecrets) {
    Json document;
    document["valid"] = name.isValid();
    document["backup"] = name.backup();
    document["subPath"] = name.subPath();
    document["storage"] = name.storage().isSpecified() ? toJson(name.storage().get(), showSecrets) : Json();
    printJson(out, document);
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

void print(std::ostream& out, const QelBackupURI& name, bool showSecrets) {
    Table table;
    table.addRow({"backup", name.backup()});
    table.addRow({"subpath", name.subPath().empty() ? "none" : name.subPath()});
    if (name.storage().isSpecified())
        addStorage(table, name.storage().get(), showSecrets);
    else
        table.addRow({"storage", "none"});
    table.print(out);
}

/// Why a text names no backup; `storageError` is what reading its storage left behind.
std::string reasonOf(const std::string& text, const std::string& storageError) {
    QelURI uri;
    uri.setUri(text);
    if (uri.getUriType() != QelBackupURI::TYPE)
        return "it doesn't begin with " + QelBackupURI::TYPE + "://";
    return storageError.empty() ? "no slash behind the first part of the backup's name"
                                : "its storage can't be read: " + storageError;
}

ExitCode runParse(const Invocation& invocation, const Console& console) {
    const std::string& text = invocation.arguments[0];
    const bool showSecrets = invocation.has("show-secrets");
    clearErrorMessage();
    const QelBackupURI name(text);
    const std::string& storageError = getErrorMessage();
    if (invocation.has("json"))
        printAsJson(console.out, name, showSecrets);
    else if (name.isValid())
        print(console.out, name, showSecrets);
    return name.isValid() ? ExitCode::success
                          : console.fail(ExitCode::notSo, "not the URI of a backup: " + reasonOf(text, storageError));
}

// --- qel backup-uri build

void addBuildOptions(Options& options) {
    options.add({.name = "storage",
                 .value = "FILE",
                 .help = "put the storage in this message into the URI, its password included"});
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
        return console.fail(ExitCode::failed, "the storage can't be put into a URI: " + getErrorMessage());
    // Nothing is escaped in a URI, so that not every name comes back.
    if (!name.isValid() || !areEqual(QelBackupURI(uri.getUri()), name))
        return console.fail(ExitCode::usage, "this backup can't be told in a URI: its name is two parts with a slash "
                                             "between them, and without other slashes, backslashes and '&'");
    printValue(console, uri.getUri());
    return ExitCode::success;
}

} // namespace

CommandGroup backupUriCommands() {
    static constexpr std::array commands{
        Command{"parse", "URI", "Shows which backup a URI names and where that lies.", addParseOptions, runParse},
        Command{"build", "BACKUP [SUBPATH]", "Prints the URI of a backup, or of a path in it.", addBuildOptions,
                runBuild},
    };
    return {"backup-uri", "Names of backups as URIs.", commands};
}

} // namespace Qel::Tool
