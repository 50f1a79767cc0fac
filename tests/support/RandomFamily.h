#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>

#include "QelMessage/QelMessageIterator.h"

namespace Qel::TestSupport {

class RandomRecord;

/// Puts something random into the element under the cursor.
using RandomFill = std::function<void(RandomRecord& random, QelMessageIterator& cursor)>;

/// In what a record differs from what holds for all others when it is read and written.
struct OddRecord {
    /// What is read from what it wrote isn't written the same; only what is read from that is.
    bool settlesLate = false;
    /// A reader that fails leaves the cursor where it failed.
    bool staysWhereItFailed = false;
    /// The functors leave the cursor in a child of the record's element.
    bool leavesTheCursorDeeper = false;
    /// Whether reading what is under the cursor would end the process.
    bool (*isFatal)(const QelMessageIterator& cursor) = nullptr;
    /// Whether what was written, from what damaged elements left of a record, can be read again.
    bool (*isReadable)(const QelMessageIterator& cursor) = nullptr;
};

/// What random messages with the records of a family take beyond the records' tables.  Classes go by their name.
struct RandomFamily {
    /// The records that have no table, and those that stand for one of several classes.
    std::map<std::string, RandomFill> withoutTable{};
    /// Records of whose elements more is asked together than their tables can tell.
    std::map<std::string, RandomFill> insteadOfTable{};
    /// Steps, and fields of which more is asked than to be there, by the class of the table and the element.
    std::map<std::pair<std::string, int>, RandomFill> fields{};
    std::map<std::string, OddRecord> odd{};

    [[nodiscard]] OddRecord oddnessOf(const std::string& name) const {
        const auto found = odd.find(name);
        return found == odd.end() ? OddRecord() : found->second;
    }

    /// Takes in another family.
    void add(RandomFamily other) {
        withoutTable.merge(other.withoutTable);
        insteadOfTable.merge(other.insteadOfTable);
        fields.merge(other.fields);
        odd.merge(other.odd);
    }
};

} // namespace Qel::TestSupport
