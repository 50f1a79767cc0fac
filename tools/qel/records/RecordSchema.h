#pragma once

#include <span>
#include <string>

#include "QelMessage/QelRecordType.h"

namespace Qel::Tool {

/// An allowed child of the root of a message.
struct SchemaElement {
    std::string name; ///< empty: any name
    const QelRecordType* type = nullptr;
};

/// Generates a RELAX NG schema (ISO/IEC 19757-2, XML syntax) for the text form of messages that contain any number of
/// these elements.  If `elements` is empty, the schema validates elements with the complex type of a record and accepts
/// all others.
///
/// The schema is generated from the tables of the records.  Like the readers, it accepts the elements of a record in
/// any order.  It rejects elements that are not in the table, unless a part of the record has hand-written marshalling
/// whose elements are unknown.  A record without a table may contain anything.
[[nodiscard]] std::string recordSchema(std::span<const SchemaElement> elements);

} // namespace Qel::Tool
