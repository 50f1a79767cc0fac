#include "qel/records/RecordSchema.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelMessage/QelNames.h"
#include "QelMessage/QelWireLayout.h"
#include "qel/records/RecordGraph.h"
#include "qel/records/SchemaPieces.h"

namespace Qel::Tool {

namespace {

using namespace Schema;

/// True if a field has hand-written marshalling and does not declare the content of its element.
bool isOpaque(const QelWireField& field) {
    return field.codec->kind == QelWireKind::step && !field.codec->item;
}

/// The record types reachable from the given ones, and the namespaces in which their elements can occur.
///
/// A writer puts its elements into its own namespace; elements after a nested record with a namespace have none.  A
/// writer without a namespace uses that of the enclosing record.
class Reachable {
public:
    explicit Reachable(const std::vector<RecordNode>& roots) {
        for (const RecordNode& record : roots)
            add(record, {noNamespace});
    }

    [[nodiscard]] const std::map<std::string, RecordNode>& records() const { return m_records; }
    [[nodiscard]] const std::set<int>& namespacesOf(const std::string& record) const { return m_namespaces.at(record); }

private:
    void add(const RecordNode& record, std::set<int> around) {
        if (record.nsId != noNamespace)
            around.insert(record.nsId);
        RecordNode& kept = m_records.emplace(record.name, record).first->second;
        // The base class of a family may be added first without its table, for any class of the family, and later with
        // it.
        const bool isNew = !m_namespaces.contains(record.name) || (record.layout && !kept.layout);
        if (isNew)
            kept = record;
        std::set<int>& known = m_namespaces[record.name];
        const std::size_t before = known.size();
        known.insert(around.begin(), around.end());
        if ((!isNew && known.size() == before) || !record.layout)
            return;
        const std::set<int> within = known; // a copy: the set may grow during the recursion
        for (const QelWireField& field : record.layout->fields)
            for (const RecordNode& inner : recordsIn(*field.codec))
                add(inner, within);
    }

    std::map<std::string, RecordNode> m_records;
    std::map<std::string, std::set<int>> m_namespaces;
};

void appendType(Node parent, const RecordNode& record) {
    append(appendAttribute(parent, "type", instanceNamespace), "value").text() = record.complexType().c_str();
}

/// The name of a record's pattern.  The colons of a nested class are not valid in a pattern name.
std::string patternOf(const RecordNode& record) {
    std::string name = record.name;
    std::replace_if(
        name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '.');
    return name;
}

/// Writes one pattern for the content of each record.
class PatternWriter {
public:
    PatternWriter(Node grammar, const Reachable& reachable) : m_grammar(grammar), m_reachable(reachable) {}

    void writeAll() {
        for (const auto& [name, record] : m_reachable.records())
            write(record);
    }

    /// Appends the content of an element that contains a record of exactly this class.
    void appendRecord(Node element, const RecordNode& record) const {
        if (!record.layout) {
            appendWithoutTable(element, record);
            return;
        }
        if (const RecordNode stamp = stampOf(record); stamp.isTyped())
            appendType(append(element, "optional"), stamp);
        appendRef(element, patternOf(record));
    }

    /// Appends the content of an element that contains a record of this class and must have its complex type.
    void appendTyped(Node parent, const RecordNode& record) const {
        Node group = append(parent, "group");
        appendType(group, record);
        if (record.layout)
            appendRef(group, patternOf(record));
        else
            appendRef(group, anythingBelow);
    }

private:
    /// The table of the record that shares the element of the field's owner; null if there is none.
    static const QelWireLayout* layoutWithin(const QelWireField& field) {
        const QelWireKind kind = field.codec->kind;
        if (kind == QelWireKind::base || (kind == QelWireKind::record && field.id == 0))
            return recordOf(*field.codec).layout;
        return nullptr;
    }

    /// True if a field writes elements that it does not declare.
    static bool hidesElements(const QelWireField& field) {
        const QelWireLayout* const within = layoutWithin(field);
        return isOpaque(field) || (within && std::any_of(within->fields.begin(), within->fields.end(), hidesElements));
    }

    /// Appends the content of a record without a table.  Identifiers are frequent enough to have a specific pattern.
    static void appendWithoutTable(Node element, const RecordNode& record) {
        if (record.name == "QelGUID" || record.name == "QelEID")
            appendData(element, "token", {{"pattern", "[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}"}});
        else
            appendRef(element, anything);
    }

    /// The record whose complex type the element has: the record itself, or one that shares its element.
    static RecordNode stampOf(const RecordNode& record) {
        if (record.isTyped())
            return record;
        for (const QelWireField& field : record.layout->fields)
            if (field.codec->kind == QelWireKind::record && field.id == 0)
                return recordOf(*field.codec);
        return record;
    }

    void write(const RecordNode& record) {
        if (!record.layout)
            return;
        Node define = append(m_grammar, "define");
        define.append_attribute("name") = patternOf(record).c_str();
        m_namespaces = &m_reachable.namespacesOf(record.name);
        appendFields(define, record.layout->fields);
        splitNames(define);
    }

    /// Appends the content of an element with these fields.  The fields of base classes are part of the same
    /// interleave, because xmllint does not support nested interleaves.
    void appendFields(Node parent, std::span<const QelWireField> fields) {
        if (std::any_of(fields.begin(), fields.end(), acceptsAnything)) {
            appendRef(parent, anythingUntyped);
            return;
        }
        Node interleave = append(parent, "interleave");
        append(interleave, "empty");
        m_mayRepeat = std::any_of(fields.begin(), fields.end(),
                                  [](const auto& field) { return isOpaque(field) && field.id == 0; });
        appendEach(interleave, fields);
        m_mayRepeat = false;
        if (std::any_of(fields.begin(), fields.end(), hidesElements))
            appendOthers(interleave, fields);
    }

    void appendEach(Node interleave, std::span<const QelWireField> fields) {
        for (const QelWireField& field : fields)
            if (const QelWireLayout* const within = layoutWithin(field))
                appendEach(interleave, within->fields);
            else
                appendField(interleave, field);
    }

    /// True if a field writes a record without a table to the element of its owner.
    static bool acceptsAnything(const QelWireField& field) {
        return field.ownID() == 0 && field.codec->kind != QelWireKind::step && !layoutWithin(field);
    }

    /// Accepts all elements except those declared by a field.
    static void appendOthers(Node parent, std::span<const QelWireField> fields) {
        Node element = append(append(parent, "zeroOrMore"), "element");
        Node any = append(element, "anyName");
        Node except; // created on demand, since it must not be empty
        for (const QelWireField& field : fields)
            for (const int id : idsOf(field)) {
                if (!except)
                    except = append(any, "except");
                appendNames(except, QelNames::elementName(id), allNamespaces());
            }
        appendRef(element, anything);
    }

    static std::set<int> allNamespaces() {
        std::set<int> all{noNamespace};
        for (const QelNames::Entry& entry : QelNames::namespaces())
            all.insert(entry.id);
        return all;
    }

    /// The child elements that a field declares.
    static std::vector<int> idsOf(const QelWireField& field) {
        std::vector<int> ids;
        if (isOpaque(field))
            return ids;
        if (const QelWireLayout* const within = layoutWithin(field)) {
            for (const QelWireField& inner : within->fields)
                for (const int id : idsOf(inner))
                    ids.push_back(id);
        } else if (field.codec->kind == QelWireKind::bits && field.id == 0) {
            for (const QelWireBit& bit : field.codec->bits)
                ids.push_back(bit.id);
        } else {
            ids.push_back(field.ownID());
        }
        return ids;
    }

    void appendField(Node parent, const QelWireField& field) {
        const QelWireCodec& codec = *field.codec;
        switch (codec.kind) {
        case QelWireKind::group:
            appendGroup(occurring(parent, field), field);
            break;
        case QelWireKind::bits:
            appendBits(parent, field);
            break;
        case QelWireKind::sequence:
        case QelWireKind::set:
        case QelWireKind::map:
            appendRun(parent, field);
            break;
        case QelWireKind::step:
            appendStep(parent, field);
            break;
        default:
            appendContent(appendElement(occurring(parent, field), field.id, codec), codec, field.form);
        }
    }

    void appendGroup(Node parent, const QelWireField& field) {
        const QelWireLayout& layout = *field.codec->layout();
        const std::set<int>* const around = m_namespaces;
        std::set<int> within = *around;
        within.insert(layout.nsId);
        m_namespaces = &within;
        appendFields(appendElement(parent, field.id, *field.codec), layout.fields);
        m_namespaces = around;
    }

    /// An element is mandatory if the reader requires it and the writer always writes it.
    Node occurring(Node parent, const QelWireField& field) const {
        const bool isNeeded = field.read == QelWireRead::required && field.write == QelWireWrite::always;
        if (m_mayRepeat)
            return running(parent, isNeeded);
        return isNeeded ? parent : append(parent, "optional");
    }

    static Node running(Node parent, bool isNeeded) { return append(parent, isNeeded ? "oneOrMore" : "zeroOrMore"); }

    /// Appends an element in the namespaces of the enclosing record and of the record that it contains.
    Node appendElement(Node parent, int id, const QelWireCodec& codec) const {
        std::set<int> namespaces = *m_namespaces;
        for (const RecordNode& record : recordsIn(codec))
            if (const RecordNode stamp = record.layout ? stampOf(record) : record; stamp.nsId != noNamespace)
                namespaces.insert(stamp.nsId);
        Node element = append(parent, "element");
        appendNames(element, QelNames::elementName(id), namespaces);
        return element;
    }

    void appendBits(Node parent, const QelWireField& field) const {
        Node holder = field.id == 0
                          ? parent
                          : append(appendElement(occurring(parent, field), field.id, *field.codec), "interleave");
        for (const QelWireBit& bit : field.codec->bits)
            append(appendElement(append(holder, "optional"), bit.id, *field.codec), "empty");
    }

    void appendRun(Node parent, const QelWireField& field) {
        Node holder = field.id == 0 ? parent : appendElement(occurring(parent, field), field.id, *field.codec);
        const bool isNeeded = field.isNonEmpty || (field.id == 0 && field.read == QelWireRead::required);
        Node item = appendElement(running(holder, isNeeded), field.item, *field.codec);
        if (field.codec->kind == QelWireKind::map)
            appendEntry(item, field);
        else
            appendValue(item, field);
    }

    void appendEntry(Node item, const QelWireField& field) {
        const QelWireCodec& value = *field.codec->item;
        const QelWireLayout* const inEntry =
            field.value == 0 && value.kind == QelWireKind::record ? recordOf(value).layout : nullptr;
        if (field.value == 0 &&
            (!inEntry || std::any_of(inEntry->fields.begin(), inEntry->fields.end(), hidesElements))) {
            appendRef(item, anything);
            return;
        }
        Node entry = append(item, "interleave");
        appendContent(appendElement(entry, field.key, *field.codec->key), *field.codec->key, field.form);
        if (inEntry)
            appendEach(entry, inEntry->fields);
        else
            appendValue(entry, field);
    }

    /// Appends an item's value, in a child element if the field has one.
    void appendValue(Node item, const QelWireField& field) const {
        const QelWireCodec& value = *field.codec->item;
        if (field.value != 0)
            appendContent(appendElement(item, field.value, value), value, field.form);
        else
            appendContent(item, value, field.form);
    }

    void appendStep(Node parent, const QelWireField& field) const {
        if (isOpaque(field))
            return; // accepted by appendOthers()
        const QelWireCodec& content = *field.codec->item;
        const bool isRun = content.kind == QelWireKind::sequence || content.kind == QelWireKind::set;
        Node holder = isRun ? running(parent, false) : occurring(parent, field);
        const QelWireCodec& each = isRun ? *content.item : content;
        appendContent(appendElement(holder, field.id, each), each, field.form);
    }

    void appendContent(Node element, const QelWireCodec& codec, QelWireForm form) const {
        switch (codec.kind) {
        case QelWireKind::text:
            appendText(element, form);
            break;
        case QelWireKind::integer: // signed or unsigned, 32 bits
            appendData(element, "long", {{"minInclusive", "-2147483648"}, {"maxInclusive", "4294967295"}});
            break;
        case QelWireKind::longInteger:
            if (form == QelWireForm::time)
                appendTime(element);
            else
                appendData(element, "long");
            break;
        case QelWireKind::real:
            appendReal(element);
            break;
        case QelWireKind::boolean:
            appendBoolean(element);
            break;
        case QelWireKind::presence:
            append(element, "empty");
            break;
        case QelWireKind::record:
            appendRecord(element, recordOf(codec));
            break;
        case QelWireKind::derived:
            appendDerived(element, codec.classes());
            break;
        default:
            appendRef(element, anything);
        }
    }

    void appendDerived(Node element, const QelWireClasses& classes) const {
        Node choice = append(element, "choice");
        append(choice, "notAllowed");
        for (const RecordNode& record : recordsOf(classes)) {
            appendTyped(choice, record);
            if (record.complexType() != classes.byDefault)
                continue;
            if (record.layout)
                appendRef(choice, patternOf(record));
            else
                appendRef(choice, anythingUntyped);
        }
    }

    Node m_grammar;
    const Reachable& m_reachable;
    const std::set<int>* m_namespaces = nullptr; ///< of the record being written
    bool m_mayRepeat = false; ///< a field declares no elements, so it may repeat those of other fields
};

/// Writes the elements that contain the requested records.
void writeElements(Node choice, std::span<const SchemaElement> elements, const Reachable& reachable,
                   const PatternWriter& patterns) {
    for (const SchemaElement& element : elements) {
        const RecordNode record = recordOf(*element.type);
        Node node = append(choice, "element");
        if (element.name.empty())
            append(node, "anyName");
        else
            appendNames(node, element.name, reachable.namespacesOf(record.name));
        patterns.appendRecord(node, record);
    }
}

/// Writes the elements with the complex type of a record, or with none.  Arbitrary content has separate element
/// patterns, because xmllint rejects a choice between it and the fields of a record.
void writeTypedElements(Node choice, const std::vector<RecordNode>& records, const PatternWriter& patterns) {
    const auto appendAnyElement = [&] {
        Node element = append(choice, "element");
        append(element, "anyName");
        return element;
    };
    Node contents = append(appendAnyElement(), "choice");
    for (const RecordNode& record : records)
        patterns.appendTyped(record.layout ? contents : appendAnyElement(), record);
    appendRef(appendAnyElement(), anythingUntyped);
}

std::vector<RecordNode> recordsOf(std::span<const SchemaElement> elements) {
    std::vector<RecordNode> records;
    for (const SchemaElement& element : elements)
        records.push_back(recordOf(*element.type));
    return records;
}

std::vector<RecordNode> typedRecords() {
    std::vector<RecordNode> records;
    for (const QelRecordType& type : recordTypes())
        if (const RecordNode record = recordOf(type); record.isTyped())
            records.push_back(record);
    return records;
}

} // namespace

std::string recordSchema(std::span<const SchemaElement> elements) {
    pugi::xml_document document;
    Node grammar = document.append_child("grammar");
    grammar.append_attribute("xmlns") = "http://relaxng.org/ns/structure/1.0";
    grammar.append_attribute("datatypeLibrary") = "http://www.w3.org/2001/XMLSchema-datatypes";
    Node message = writeMessage(grammar);
    const std::vector<RecordNode> roots = elements.empty() ? typedRecords() : recordsOf(elements);
    const Reachable reachable(roots);
    PatternWriter patterns(grammar, reachable);
    if (std::any_of(elements.begin(), elements.end(), [](const auto& each) { return each.type->isWholeMessage; })) {
        appendRef(message, anythingBelow);
    } else {
        Node choice = append(append(message, "zeroOrMore"), "choice");
        if (elements.empty())
            writeTypedElements(choice, roots, patterns);
        else
            writeElements(choice, elements, reachable, patterns);
    }
    patterns.writeAll();
    writeAnything(grammar);

    std::ostringstream text;
    document.save(text, "  ", pugi::format_default, pugi::encoding_utf8);
    return text.str();
}

} // namespace Qel::Tool
