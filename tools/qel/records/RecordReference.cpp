#include "qel/records/RecordReference.h"

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelMessage/QelWireLayout.h"
#include "qel/records/RecordDescription.h"
#include "qel/records/RecordGraph.h"

namespace Qel::Tool {

namespace {

using Names = std::set<std::string>;

/// The containment relation between record types.
struct Neighbours {
    std::map<std::string, Names> held;
    std::map<std::string, Names> holders;
};

Neighbours findNeighbours() {
    Neighbours found;
    for (const QelRecordType& type : recordTypes()) {
        if (!type.layout)
            continue;
        for (const QelWireField& field : type.layout->fields)
            for (const RecordNode& record : recordsIn(*field.codec))
                if (findRecordType(record.name) && record.name != type.name) {
                    found.held[std::string(type.name)].insert(record.name);
                    found.holders[record.name].insert(std::string(type.name));
                }
    }
    return found;
}

std::string fileOf(std::string name) {
    for (auto colons = name.find("::"); colons != std::string::npos; colons = name.find("::"))
        name.replace(colons, 2, ".");
    return name + ".md";
}

std::string linkTo(const std::string& name) {
    return '[' + name + "](" + fileOf(name) + ')';
}

/// Escapes a string for a Markdown table cell.
std::string cell(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '|')
            escaped += '\\';
        escaped += c;
    }
    return escaped;
}

void printRow(std::ostream& out, std::initializer_list<std::string> cells) {
    for (const std::string& text : cells)
        out << "| " << cell(text) << ' ';
    out << "|\n";
}

void printLinks(std::ostream& out, const char* title, const std::map<std::string, Names>& neighbours,
                const std::string& name) {
    const auto found = neighbours.find(name);
    if (found == neighbours.end())
        return;
    out << '\n' << title;
    const char* separator = ": ";
    for (const std::string& neighbour : found->second) {
        out << separator << linkTo(neighbour);
        separator = ", ";
    }
    out << ".\n";
}

std::string pageOf(const QelRecordType& type, const Neighbours& neighbours) {
    const std::string name(type.name);
    std::ostringstream out;
    out << "# " << name << "\n\nNamespace " << namespaceText(type) << ", type " << typeText(type) << ".\n\n";
    if (!type.layout) {
        out << "No field table; read and written by custom code.\n";
    } else if (type.layout->fields.empty()) {
        out << "No fields.\n";
    } else {
        printRow(out, {"write", "read", "field", "elements", "kind", "on read", "on write"});
        printRow(out, {"---:", "---:", "---", "---", "---", "---", "---"});
        for (const DescribedRow& row : describeRows(*type.layout))
            printRow(out, {row.writePlace, row.readPlace, '`' + row.name + '`', row.elements, row.kind, row.onRead,
                           row.onWrite});
    }
    printLinks(out, "Contains", neighbours.held, name);
    printLinks(out, "Contained in", neighbours.holders, name);
    return out.str();
}

std::string indexPage() {
    std::ostringstream out;
    out << "# Record types\n\nGenerated from the wire tables by `qel record reference`.  "
           "docs/add-a-record.md in the source tree explains the terms.\n\n";
    printRow(out, {"record", "namespace", "type"});
    printRow(out, {"---", "---", "---"});
    for (const QelRecordType& type : recordTypes())
        printRow(out, {linkTo(std::string(type.name)), namespaceText(type), typeText(type)});
    return out.str();
}

} // namespace

std::vector<ReferencePage> referencePages() {
    const Neighbours neighbours = findNeighbours();
    std::vector<ReferencePage> pages{{"index.md", indexPage()}};
    for (const QelRecordType& type : recordTypes())
        pages.push_back({fileOf(std::string(type.name)), pageOf(type, neighbours)});
    return pages;
}

} // namespace Qel::Tool
