#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <memory>
#include <ostream>
#include <set>

#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelFunctionalityCore/Vocabulary/VocabularyElements.h"
#include "QelMessage/QelBinary.h"
#include "QelMessage/QelElementNames.h"
#include "qel/cli/Command.h"
#include "qel/cli/Json.h"
#include "qel/cli/Output.h"
#include "qel/records/MessageFiles.h"
#include "qel/vocabulary/VocFiles.h"

namespace Qel::Tool {

namespace {

namespace Element = VocabularyElement;
using Names = std::set<std::string>;

Names namesOf(const Invocation& invocation, const std::string& option) {
    if (!invocation.has(option))
        return {};
    const auto& given = invocation.strings(option);
    return {given.begin(), given.end()};
}

// --- qel voc list

void addListOptions(Options& options) {
    options.add({.name = "category",
                 .value = "ID",
                 .kind = OptionKind::strings,
                 .help = "list only the entries in this category; may be repeated to require several categories"});
    options.add({.name = "restrict",
                 .value = "NAME",
                 .kind = OptionKind::strings,
                 .help = "list only the vocabularies with this name; may be repeated"});
    addJsonOption(options);
}

/// A category or parameter of a vocabulary.
struct Item {
    std::string id;
    std::vector<std::string> categories;
    std::string type;  ///< value type of a counter
    std::string value; ///< value of a parameter
};

struct Contents {
    std::vector<Item> categories;
    std::vector<Item> parameters;
};

/// A vocabulary in a file, and its selected contents.
struct Listed {
    std::string file;
    std::string name;
    std::string version;
    Contents contents;
};

std::string typeAt(const QelVocIterator& at) {
    int type = 0;
    if (at.getValue(type, Element::valueType) != 0)
        return {};
    return type == 0 ? "double" : "integer";
}

Item itemAt(const QelVocIterator& at) {
    Item item;
    at.getID(item.id);
    at.getValue(item.value, "data"_element);
    item.type = typeAt(at);
    if (at.firstChild("category"_element) != 0)
        return item;
    do
        at.getValue(item.categories.emplace_back(), getEmptyID());
    while (at.nextSibling("category"_element) == 0);
    at.seekUp();
    return item;
}

/// Collects the items of the given categories.  `contents()` returns the Contents for the current position.
template <class Find> void collect(const QelVocIterator& at, const Names& categories, const Find& contents) {
    for (int result = at.firstCategory(categories); result == 0; result = at.nextCategory(categories))
        contents().categories.push_back(itemAt(at));
    for (int result = at.firstParameter(categories); result == 0; result = at.nextParameter(categories))
        contents().parameters.push_back(itemAt(at));
}

/// A query and its results.
struct Listing {
    Names categories;
    Names restriction;
    Names found; ///< subset of `restriction`
    std::vector<Listed> vocabularies;
};

/// Reports the vocabularies in a map that lack a name or version; iterators skip them.
ExitCode reportUnidentified(const std::string& file, QelMessage& message, const Console& console) {
    ExitCode worst = ExitCode::success;
    const std::unique_ptr<QelMessageIterator> cursor(message.rootIterator());
    int number = 0;
    for (int result = cursor->firstChild("vocabulary"_element); result == 0;
         result = cursor->nextSibling("vocabulary"_element)) {
        QelVocID id;
        ++number;
        if (cursor->getObj(id, getEmptyID()) != 0)
            worst = console.fail(ExitCode::badInput, shownName(file) + ": vocabulary " + std::to_string(number) +
                                                         " has no name or no parameter vocversion");
    }
    return worst;
}

ExitCode listMap(const std::string& file, QelMessage* message, const Console& console, Listing& listing) {
    const ExitCode code = reportUnidentified(file, *message, console);
    QelVocMap map(message);
    if (map.setRestrictVocSet(listing.restriction) != 0)
        return code;
    const std::unique_ptr<QelVocMapIterator> at(map.read());
    std::map<QelVocID, Contents> all;
    for (int result = at->firstVocabulary(); result == 0; result = at->nextVocabulary())
        all[at->getVocID()];
    collect(*at, listing.categories, [&]() -> Contents& { return all[at->getVocID()]; });
    for (auto& [id, contents] : all) {
        const std::string name = id.name.c_str();
        // A map that contains none of the names iterates over all vocabularies.
        if (!listing.restriction.empty() && !listing.restriction.contains(name))
            continue;
        listing.found.insert(name);
        listing.vocabularies.push_back({file, name, id.version.c_str(), std::move(contents)});
    }
    return code;
}

void listSingle(const std::string& file, QelMessage* message, Listing& listing) {
    QelVocPrototype voc(message);
    if (!listing.restriction.empty())
        return; // a single vocabulary has no name
    Listed listed{file, {}, voc.readVersion(), {}};
    const std::unique_ptr<QelVocIterator> at(voc.read());
    collect(*at, listing.categories, [&]() -> Contents& { return listed.contents; });
    listing.vocabularies.push_back(std::move(listed));
}

Json itemsAsJson(const std::vector<Item>& items, bool areParameters) {
    Json array = Json::array();
    for (const Item& item : items) {
        Json json{{"id", item.id}, {"categories", item.categories}};
        if (areParameters) {
            json["type"] = item.type.empty() ? Json() : Json(item.type);
            json["value"] = item.value;
        }
        array.push_back(std::move(json));
    }
    return array;
}

Json vocabulariesAsJson(const std::vector<Listed>& vocabularies) {
    Json document = Json::array();
    for (const Listed& each : vocabularies)
        document.push_back({{"file", each.file},
                            {"name", each.name},
                            {"version", each.version},
                            {"categories", itemsAsJson(each.contents.categories, false)},
                            {"parameters", itemsAsJson(each.contents.parameters, true)}});
    return document;
}

std::string joined(const std::vector<std::string>& words) {
    std::string string;
    for (const std::string& word : words)
        string += (string.empty() ? "" : ", ") + word;
    return string;
}

void printVocabularies(std::ostream& out, const std::vector<Listed>& vocabularies) {
    Table table;
    table.addRow({"vocabulary", "version", "kind", "id", "categories", "type", "value"});
    for (const Listed& each : vocabularies) {
        const auto addRows = [&](const char* kind, const std::vector<Item>& items) {
            for (const Item& item : items)
                table.addRow({each.name.empty() ? "-" : each.name, each.version.empty() ? "-" : each.version, kind,
                              item.id, joined(item.categories), item.type, item.value});
        };
        addRows("category", each.contents.categories);
        addRows("parameter", each.contents.parameters);
    }
    table.print(out);
}

ExitCode runList(const Invocation& invocation, const Console& console) {
    Listing listing{namesOf(invocation, "category"), namesOf(invocation, "restrict"), {}, {}};
    ExitCode worst = ExitCode::success;
    for (const std::string& file : invocation.arguments) {
        auto_destroy<QelMessage> message(new QelBinary);
        VocFileKind kind{};
        ExitCode code = readVocabularies(file, *message, kind, console);
        if (code == ExitCode::success && kind == VocFileKind::map)
            code = listMap(file, message.release(), console, listing);
        else if (code == ExitCode::success)
            listSingle(file, message.release(), listing);
        worst = std::max(worst, code);
    }
    Output(invocation, console)
        .print([&] { return vocabulariesAsJson(listing.vocabularies); },
               [&](std::ostream& out) { printVocabularies(out, listing.vocabularies); });
    for (const std::string& name : listing.restriction)
        if (!listing.found.contains(name))
            worst = std::max(worst, console.fail(ExitCode::negative, "no vocabulary '" + name + "'"));
    return worst;
}

// --- qel voc merge

void addMergeOptions(Options& options) {
    options.add(
        {.name = "name", .value = "NAME", .help = "name for a vocabulary without one; default: the name of its file"});
}

/// The target of a merge, and the report lines.
struct Merge {
    auto_destroy<QelMessage> target{new QelBinary};
    std::vector<std::string> lines{};
};

int countVocabularies(QelMessage& message) {
    const std::unique_ptr<QelMessageIterator> cursor(message.rootIterator());
    int count = 0;
    for (int result = cursor->firstChild("vocabulary"_element); result == 0;
         result = cursor->nextSibling("vocabulary"_element))
        ++count;
    return count;
}

/// Inserts one vocabulary by calling `insert`, and adds a report line.
template <class Insert>
ExitCode mergeOne(Merge& merge, const std::string& place, const QelVocID& id, const Console& console,
                  const Insert& insert) {
    const int before = countVocabularies(*merge.target);
    if (insert() != 0)
        return console.fail(ExitCode::failed, place + ": cannot copy the vocabulary");
    const char* const done = countVocabularies(*merge.target) == before ? "skipped " : "added ";
    merge.lines.push_back(done + std::string(id.name.c_str()) + ' ' + id.version.c_str());
    return ExitCode::success;
}

ExitCode mergeMap(Merge& merge, const std::string& file, QelMessage& message, const Console& console) {
    if (const ExitCode code = reportUnidentified(file, message, console); code != ExitCode::success)
        return code;
    const std::unique_ptr<QelMessageIterator> cursor(message.rootIterator());
    for (int result = cursor->firstChild("vocabulary"_element); result == 0;
         result = cursor->nextSibling("vocabulary"_element)) {
        QelVocID id;
        cursor->getObj(id, getEmptyID());
        const ExitCode code = mergeOne(merge, shownName(file), id, console,
                                       [&] { return QelVocMap::insert(merge.target.get(), cursor.get()); });
        if (code != ExitCode::success)
            return code;
    }
    return ExitCode::success;
}

ExitCode mergeSingle(Merge& merge, const std::string& file, QelMessage* message, const std::string& name,
                     const Console& console) {
    const boost::intrusive_ptr<QelVocPrototype> voc(new QelVocPrototype(message));
    if (voc->readVersion().empty())
        return console.fail(ExitCode::badInput, shownName(file) + ": the vocabulary has no parameter vocversion");
    const QelVocID id{name, voc->readVersion()};
    return mergeOne(merge, shownName(file), id, console,
                    [&] { return QelVocMap::insert(merge.target.get(), id, voc); });
}

/// Returns the name for the unnamed vocabulary in a file.  Reports an error and returns an empty string if there is no
/// valid name.
std::string nameFor(const std::string& file, const Invocation& invocation, const Console& console) {
    std::string name = invocation.has("name")   ? invocation.string("name")
                       : file == standardStream ? std::string()
                                                : std::filesystem::path(file).filename().string();
    if (!name.empty() && name.size() < sizeof(QelVocID::name))
        return name;
    console.fail(ExitCode::usage,
                 shownName(file) + ": the vocabulary has no name; use --name with 1 to 255 characters");
    return {};
}

ExitCode mergeFile(Merge& merge, const std::string& file, const Invocation& invocation, const Console& console) {
    auto_destroy<QelMessage> message(new QelBinary);
    VocFileKind kind{};
    if (const ExitCode code = readVocabularies(file, *message, kind, console); code != ExitCode::success)
        return code;
    if (kind == VocFileKind::map)
        return mergeMap(merge, file, *message, console);
    const std::string name = nameFor(file, invocation, console);
    return name.empty() ? ExitCode::usage : mergeSingle(merge, file, message.release(), name, console);
}

ExitCode runMerge(const Invocation& invocation, const Console& console) {
    const std::string& out = invocation.arguments[0];
    const bool toStream = out == standardStream;
    QelFileLock lock;
    if (const ExitCode code = lockFile(out, lock, console); code != ExitCode::success)
        return code;
    Merge merge;
    if (!toStream && !isMissing(out))
        if (const ExitCode code = readVocMap(out, *merge.target, console); code != ExitCode::success)
            return code;
    for (auto file = invocation.arguments.begin() + 1; file != invocation.arguments.end(); ++file)
        if (const ExitCode code = mergeFile(merge, *file, invocation, console); code != ExitCode::success)
            return code;
    if (const ExitCode code = writeMessage(out, *merge.target, console); code != ExitCode::success)
        return code;
    for (const std::string& line : merge.lines)
        if (!toStream)
            console.out << showControls(line) << '\n';
    return ExitCode::success;
}

// --- qel voc erase

ExitCode runErase(const Invocation& invocation, const Console& console) {
    const std::string& file = invocation.arguments[0];
    const std::string& name = invocation.arguments[1];
    const std::string& version = invocation.arguments[2];
    QelFileLock lock;
    if (const ExitCode code = lockFile(file, lock, console); code != ExitCode::success)
        return code;
    auto_destroy<QelMessage> message(new QelBinary);
    if (const ExitCode code = readVocMap(file, *message, console); code != ExitCode::success)
        return code;
    QelVocMap map(message.release());
    constexpr std::size_t tooLong = sizeof(QelVocID::name);
    if (name.size() >= tooLong || version.size() >= tooLong || map.erase({name, version}) != 0)
        return console.fail(ExitCode::negative, shownName(file) + ": no vocabulary " + name + ' ' + version);
    return writeMessage(file, *map.getMessage(), console);
}

// --- qel voc has

ExitCode runHas(const Invocation& invocation, const Console& console) {
    const std::string& file = invocation.arguments[0];
    const std::string& parameter = invocation.arguments[1];
    auto_destroy<QelMessage> message(new QelBinary);
    VocFileKind kind{};
    if (const ExitCode code = readVocabularies(file, *message, kind, console); code != ExitCode::success)
        return code;
    const bool hasIt = kind == VocFileKind::map ? QelVocMap(message.release()).isFeatureEnabled(parameter)
                                                : QelVocPrototype(message.release()).isFeatureEnabled(parameter);
    if (hasIt)
        return ExitCode::success;
    return console.fail(ExitCode::negative, shownName(file) + ": no parameter '" + parameter + "'");
}

} // namespace

CommandGroup vocCommands() {
    static constexpr std::array commands{
        Command{"list", "FILE...", "List the categories and parameters of vocabularies", addListOptions, runList},
        Command{"merge", "OUT IN...",
                "Add the vocabularies that a file does not contain; create the file if it does not exist",
                addMergeOptions, runMerge},
        Command{"erase", "FILE NAME VERSION", "Remove a vocabulary from a file", nullptr, runErase},
        Command{"has", "FILE PARAMETER", "Check whether a vocabulary has a parameter; the exit status is the result",
                nullptr, runHas},
    };
    return {"voc", "Vocabularies", commands};
}

} // namespace Qel::Tool
