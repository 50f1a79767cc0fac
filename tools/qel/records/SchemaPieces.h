#pragma once

#include <initializer_list>
#include <set>
#include <string>
#include <utility>

#include <pugixml.hpp>

#include "QelMessage/QelWireLayout.h"

/// The patterns of RELAX NG that schemas of messages are made of.
namespace Qel::Tool::Schema {

using Node = pugi::xml_node;
using Limits = std::initializer_list<std::pair<const char*, const char*>>;

inline constexpr int noNamespace = 0;
inline constexpr const char* instanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";

// Patterns that writeAnything() defines.
inline constexpr const char* anythingBelow = "below";     ///< any text and elements
inline constexpr const char* anything = "any";            ///< the same with any attributes
inline constexpr const char* anythingUntyped = "untyped"; ///< the same without a complex type
void writeAnything(Node grammar);

/// The message element with its envelope, as the start.
Node writeMessage(Node grammar);

Node append(Node parent, const char* element);
void appendRef(Node parent, const std::string& name);
/// A data type, with what its values are limited to.
void appendData(Node parent, const char* type, Limits limits = {});
Node appendAttribute(Node parent, const char* name, const char* ns = "");
/// A name class of one local name in some namespaces.
void appendNames(Node parent, const std::string& name, const std::set<int>& namespaces);

/// Makes a choice of elements with one name each of every element below that has several names: xmllint takes those for
/// any.
void splitNames(Node node);

void appendText(Node parent, QelWireForm form);
void appendTime(Node parent);
void appendReal(Node parent);
void appendBoolean(Node parent);

} // namespace Qel::Tool::Schema
