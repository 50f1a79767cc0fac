#pragma once

#include <span>
#include <string>

#include "QelMessage/QelRecordType.h"

namespace Qel::Tool {

/// A kind of element that may stand below the root of a message.
struct SchemaElement {
    std::string name; ///< empty for any
    const QelRecordType* type = nullptr;
};

/// A schema in RELAX NG (ISO/IEC 19757-2, XML syntax) for the text form of messages that hold these elements, as often
/// as they like.  Without any it describes the elements that bear the type of a record, and lets the others pass.
///
/// The schema is made from the tables of the records.  It takes the elements of a record in any order, as readers do,
/// and none that the table doesn't tell; where a part of a record is read and written by hand and doesn't tell what it
/// amounts to, other elements pass, and so does anything in a record that has no table.
[[nodiscard]] std::string recordSchema(std::span<const SchemaElement> elements);

} // namespace Qel::Tool
