#pragma once

#include <string>
#include <vector>

#include "QelMessage/QelRecordType.h"
#include "qel/cli/Json.h"

namespace Qel::Tool {

/// "292 env", or "-" for a type that has none.
[[nodiscard]] std::string namespaceText(const QelRecordType& type);
/// "117 os", or "-" for a type that is not stamped.
[[nodiscard]] std::string typeText(const QelRecordType& type);

/// A row of a record's table, in words.
struct DescribedRow {
    std::string writePlace; ///< in writing order, from 1; "3.1" for the first row of a group that is the third
    std::string readPlace;  ///< in reading order
    std::string name;
    std::string elements; ///< the outer one first: "1100 list / 1101 item (1001 key, 1002 value)"
    std::string kind;
    std::string onRead;
    std::string onWrite;
};

/// The rows of a table in writing order, and behind a group its own.
[[nodiscard]] std::vector<DescribedRow> describeRows(const QelWireLayout& layout);

[[nodiscard]] Json describeAsJson(const QelWireLayout& layout);

} // namespace Qel::Tool
