#pragma once

#include <string>
#include <vector>

#include "QelMessage/QelRecordType.h"

namespace Qel::Tool {

/// A record among those that hold each other, as its table tells.
struct RecordNode {
    std::string name;
    const QelWireLayout* layout; ///< null for one that is read and written by hand
    int nsId;
    int typeId;

    /// Whether the record's type is stamped on its element.
    [[nodiscard]] bool isTyped() const;
    /// The type as it stands in a message: "env:os".
    [[nodiscard]] std::string complexType() const;
};

[[nodiscard]] RecordNode recordOf(const QelRecordType& type);

/// The record that a field holds.
[[nodiscard]] RecordNode recordOf(const QelWireCodec& codec);

/// The records of a family.
[[nodiscard]] std::vector<RecordNode> recordsOf(const QelWireClasses& classes);

/// The records that a field's elements may hold, as far as it tells.
[[nodiscard]] std::vector<RecordNode> recordsIn(const QelWireCodec& codec);

} // namespace Qel::Tool
