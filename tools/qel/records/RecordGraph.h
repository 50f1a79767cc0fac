#pragma once

#include <string>
#include <vector>

#include "QelMessage/QelRecordType.h"

namespace Qel::Tool {

/// A record type in the graph of record types that contain each other.
struct RecordNode {
    std::string name;
    const QelWireLayout* layout; ///< null for a record with hand-written marshalling
    int nsId;
    int typeId;

    /// True if the complex type is written to the record's element.
    [[nodiscard]] bool isTyped() const;
    /// The complex type as it appears in a message: "env:os".
    [[nodiscard]] std::string complexType() const;
};

[[nodiscard]] RecordNode recordOf(const QelRecordType& type);

/// The record type of a field's value.
[[nodiscard]] RecordNode recordOf(const QelWireCodec& codec);

/// The record types of a class family.
[[nodiscard]] std::vector<RecordNode> recordsOf(const QelWireClasses& classes);

/// The record types that a field's elements may contain, as far as its codec specifies them.
[[nodiscard]] std::vector<RecordNode> recordsIn(const QelWireCodec& codec);

} // namespace Qel::Tool
