#pragma once

/// Element IDs of a configuration tree.  Its layout:
///
///     /  data  SECTION  configuration  OPTION...
///
/// Each section keeps its options in its own `configuration` element.
namespace Qel::ConfigurationElement {

inline constexpr int data = 1307;
inline constexpr int configuration = 1021;

// Sections.
inline constexpr int agent = 1044;
inline constexpr int security = 1858;
inline constexpr int serverGroup = 1875;

// Section `agent`.
inline constexpr int mappingTable = 1677;
inline constexpr int address = 1068;        ///< of a mapping entry, as plain text
inline constexpr int connectionInfo = 1876; ///< of a mapping entry

// Section `security`.
inline constexpr int builtinRealm = 2016;
inline constexpr int realms = 1960;
inline constexpr int realm = 1957;

// Section `serverGroup`.
inline constexpr int master = 1680;
inline constexpr int slaves = 1681;

// Common to all sections.
inline constexpr int id = 1010;
inline constexpr int entry = 1008; ///< of the mapping table and of the list of slaves

} // namespace Qel::ConfigurationElement
