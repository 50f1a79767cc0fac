#include "qel/records/SchemaPieces.h"

#include <functional>
#include <string_view>

#include "QelMessage/QelNames.h"

namespace Qel::Tool::Schema {

Node append(Node parent, const char* element) {
    return parent.append_child(element);
}

void appendRef(Node parent, const std::string& name) {
    append(parent, "ref").append_attribute("name") = name.c_str();
}

void appendData(Node parent, const char* type, Limits limits) {
    Node data = append(parent, "data");
    data.append_attribute("type") = type;
    for (const auto& [name, value] : limits) {
        Node limit = append(data, "param");
        limit.append_attribute("name") = name;
        limit.text() = value;
    }
}

Node appendAttribute(Node parent, const char* name, const char* ns) {
    Node attribute = append(parent, "attribute");
    attribute.append_attribute("name") = name;
    attribute.append_attribute("ns") = ns;
    return attribute;
}

void appendNames(Node parent, const std::string& name, const std::set<int>& namespaces) {
    Node names = namespaces.size() == 1 ? parent : append(parent, "choice");
    for (const int nsID : namespaces) {
        Node each = append(names, "name");
        each.append_attribute("ns") = nsID == noNamespace ? "" : ("urn:qel:" + QelNames::namespaceName(nsID)).c_str();
        each.text() = name.c_str();
    }
}

void splitNames(Node node) {
    for (Node child = node.first_child(); child;) {
        const Node next = child.next_sibling();
        splitNames(child);
        child = next;
    }
    Node names = node.first_child();
    const auto isNamed = [](Node each, std::string_view name) { return each.name() == name; };
    if (!isNamed(node, "element") || !isNamed(names, "choice") || !isNamed(names.first_child(), "name"))
        return;
    Node choice = node.parent().insert_child_before("choice", node);
    for (const Node name : names.children()) {
        Node copy = choice.append_copy(node);
        copy.remove_child(copy.first_child());
        copy.prepend_copy(name);
    }
    node.parent().remove_child(node);
}

void appendText(Node parent, QelWireForm form) {
    if (form == QelWireForm::base64) {
        appendData(parent, "base64Binary");
        return;
    }
    // A string that XML cannot represent is encoded in base64 and marked with an attribute.
    append(appendAttribute(append(parent, "optional"), "encoding"), "value").text() = "base64";
    append(parent, "text");
}

void appendTime(Node parent) {
    Node choice = append(parent, "choice");
    appendData(choice, "dateTime");
    appendData(choice, "long");
}

void appendReal(Node parent) {
    Node choice = append(parent, "choice");
    appendData(choice, "double");
    for (const char* const special : {"inf", "-inf", "nan"})
        append(choice, "value").text() = special;
}

// An empty element means true.
void appendBoolean(Node parent) {
    Node choice = append(parent, "choice");
    appendData(choice, "boolean");
    append(choice, "empty");
}

namespace {

void define(Node grammar, const char* name, const std::function<void(Node)>& write) {
    Node made = append(grammar, "define");
    made.append_attribute("name") = name;
    write(made);
}

Node anyAttribute(Node parent) {
    return append(append(append(parent, "zeroOrMore"), "attribute"), "anyName");
}

} // namespace

void writeAnything(Node grammar) {
    define(grammar, anythingBelow, [](Node below) {
        Node choice = append(append(below, "zeroOrMore"), "choice");
        append(choice, "text");
        Node element = append(choice, "element");
        append(element, "anyName");
        appendRef(element, anything);
    });
    define(grammar, anything, [](Node all) {
        anyAttribute(all);
        appendRef(all, anythingBelow);
    });
    define(grammar, anythingUntyped, [](Node all) {
        Node type = append(append(anyAttribute(all), "except"), "name");
        type.append_attribute("ns") = instanceNamespace;
        type.text() = "type";
        appendRef(all, anythingBelow);
    });
}

Node writeMessage(Node grammar) {
    Node message = append(append(grammar, "start"), "element");
    message.append_attribute("name") = "message";
    message.append_attribute("ns") = "";
    for (const char* const name : {"time", "request-id", "sender", "session", "origin", "subscriptions"})
        appendAttribute(append(message, "optional"), name);
    return message;
}

} // namespace Qel::Tool::Schema
