#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "QelMessage/QelMessageIterator.h"

namespace Qel::TestSupport {

class RandomRecord;

/// Fills the current element with random content.
using RandomFill = std::function<void(RandomRecord& random, QelMessageIterator& cursor)>;

/// Exceptions of a record from the properties that hold for all others when it is read and written.
struct OddRecord {
    /// The first round trip may change the written form; only the second is stable.
    bool settlesLate = false;
    /// A failed read does not restore the cursor.
    bool staysWhereItFailed = false;
    /// The functors leave the cursor in a descendant of the record's element.
    bool leavesTheCursorDeeper = false;
    /// Returns whether reading the current element would end the process.
    bool (*isFatal)(const QelMessageIterator& cursor) = nullptr;
    /// Returns whether a record that was read from a damaged message and written again can be read back.
    bool (*isReadable)(const QelMessageIterator& cursor) = nullptr;
};

/// What random messages need for the records of one family in addition to their tables. Classes are identified by name.
struct RandomFamily {
    /// Records without a table, and abstract records that are written as one of several classes.
    std::map<std::string, RandomFill> withoutTable{};
    /// Records with constraints between their fields, which tables cannot express.
    std::map<std::string, RandomFill> insteadOfTable{};
    /// Steps, and fields with constraints on their values, by the class of the table and the element ID.
    std::map<std::pair<std::string, int>, RandomFill> fields{};
    std::map<std::string, OddRecord> odd{};

    [[nodiscard]] OddRecord oddnessOf(const std::string& name) const {
        const auto found = odd.find(name);
        return found == odd.end() ? OddRecord() : found->second;
    }

    /// Merges another family into this one.
    void add(RandomFamily other) {
        withoutTable.merge(other.withoutTable);
        insteadOfTable.merge(other.insteadOfTable);
        fields.merge(other.fields);
        odd.merge(other.odd);
    }
};

} // namespace Qel::TestSupport
