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

/// Properties that all other records have when they are read and written, but this one lacks.
struct RecordExceptions {
    /// The first round trip may change the written form; only the second is stable.
    bool needsSecondRoundTrip = false;
    /// A failed read does not restore the cursor.
    bool keepsPositionOnFailure = false;
    /// The functors leave the cursor in a descendant of the record's element.
    bool leavesCursorInDescendant = false;
    /// Returns whether reading the current element would end the process.
    bool (*isFatal)(const QelMessageIterator& cursor) = nullptr;
    /// Returns whether a record that was read from a damaged message and written again can be read back.
    bool (*isReadable)(const QelMessageIterator& cursor) = nullptr;
};

/// Supplements the tables of one family's records for random messages. Classes are identified by name.
struct RandomFamily {
    /// Records without a table, and abstract records that are written as one of several classes.
    std::map<std::string, RandomFill> withoutTable{};
    /// Records with constraints between their fields, which tables cannot express.
    std::map<std::string, RandomFill> replacesTable{};
    /// Steps, and fields with constraints on their values, by the class of the table and the element ID.
    std::map<std::pair<std::string, int>, RandomFill> fields{};
    std::map<std::string, RecordExceptions> exceptions{};

    [[nodiscard]] RecordExceptions exceptionsOf(const std::string& name) const {
        const auto found = exceptions.find(name);
        return found == exceptions.end() ? RecordExceptions() : found->second;
    }

    /// Merges another family into this one.
    void add(RandomFamily other) {
        withoutTable.merge(other.withoutTable);
        replacesTable.merge(other.replacesTable);
        fields.merge(other.fields);
        exceptions.merge(other.exceptions);
    }
};

} // namespace Qel::TestSupport
