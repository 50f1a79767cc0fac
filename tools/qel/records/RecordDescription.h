#pragma once

#include <string>
#include <vector>

#include "QelMessage/QelRecordType.h"
#include "qel/cli/Json.h"

namespace Qel::Tool {

/// The namespace of a record type: "292 env", or "-" if it has none.
[[nodiscard]] std::string namespaceText(const QelRecordType& type);
/// The complex type of a record: "117 os", or "-" if it is not written to the element.
[[nodiscard]] std::string typeText(const QelRecordType& type);

/// A row of a record's table as strings.
struct DescribedRow {
    std::string writePlace; ///< 1-based position in writing order; "3.1" is the first row of the group in row 3
    std::string readPlace;  ///< 1-based position in reading order
    std::string name;
    std::string elements; ///< from the outermost: "1100 list / 1101 item (1001 key, 1002 value)"
    std::string kind;
    std::string onRead;
    std::string onWrite;
};

/// The rows of a table in writing order; a group is followed by its own rows.
[[nodiscard]] std::vector<DescribedRow> describeRows(const QelWireLayout& layout);

[[nodiscard]] Json describeAsJson(const QelWireLayout& layout);

} // namespace Qel::Tool
