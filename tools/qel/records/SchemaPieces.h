#pragma once

#include <initializer_list>
#include <set>
#include <string>
#include <utility>

#include <pugixml.hpp>

#include "QelMessage/QelWireLayout.h"

/// Helpers that build the RELAX NG patterns of message schemas.
namespace Qel::Tool::Schema {

using Node = pugi::xml_node;
using Limits = std::initializer_list<std::pair<const char*, const char*>>;

inline constexpr int noNamespace = 0;
inline constexpr const char* instanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";

// Patterns that writeAnything() defines.
inline constexpr const char* anythingBelow = "below";     ///< any text and elements
inline constexpr const char* anything = "any";            ///< any text, elements and attributes
inline constexpr const char* anythingUntyped = "untyped"; ///< any text, elements and attributes except a complex type
void writeAnything(Node grammar);

/// Writes the start pattern, the message element with its envelope attributes, and returns the element.
Node writeMessage(Node grammar);

Node append(Node parent, const char* element);
void appendRef(Node parent, const std::string& name);
/// Appends an XML Schema data type with limits on its values.
void appendData(Node parent, const char* type, Limits limits = {});
Node appendAttribute(Node parent, const char* name, const char* ns = "");
/// Appends a name class: one local name in any of several namespaces.
void appendNames(Node parent, const std::string& name, const std::set<int>& namespaces);

/// Replaces each descendant element pattern that has several names by a choice of patterns with one name each: xmllint
/// treats several names like anyName.
void splitNames(Node node);

void appendText(Node parent, QelWireForm form);
void appendTime(Node parent);
void appendReal(Node parent);
void appendBoolean(Node parent);

} // namespace Qel::Tool::Schema
