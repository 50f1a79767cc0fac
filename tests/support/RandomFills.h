// Building blocks for the random records of families.

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "support/RandomRecord.h"

namespace Qel::TestSupport {

/// Fills nothing: for fields without an element of their own, or whose elements must not be repeated.
inline RandomFill nothing() {
    return [](RandomRecord&, QelMessageIterator&) {};
}

inline RandomFill inChild(int id, const RandomFill& fill) {
    return [id, fill](RandomRecord& random, QelMessageIterator& cursor) {
        cursor.newChild(id);
        fill(random, cursor);
        cursor.seekUp();
    };
}

inline RandomFill inTurn(std::initializer_list<RandomFill> fills) {
    return [fills = std::vector(fills)](RandomRecord& random, QelMessageIterator& cursor) {
        for (const RandomFill& fill : fills)
            fill(random, cursor);
    };
}

/// Runs `fill` or does nothing, at random.
inline RandomFill optionally(const RandomFill& fill) {
    return [fill](RandomRecord& random, QelMessageIterator& cursor) {
        if (random.below(2) == 0)
            fill(random, cursor);
    };
}

/// Runs `fill` 0 to `most` times.
inline RandomFill several(unsigned most, const RandomFill& fill) {
    return [most, fill](RandomRecord& random, QelMessageIterator& cursor) {
        for (unsigned left = random.below(most + 1); left > 0; --left)
            fill(random, cursor);
    };
}

/// Runs `fill` 1 to `most` times.
inline RandomFill atLeastOne(unsigned most, const RandomFill& fill) {
    return [most, fill](RandomRecord& random, QelMessageIterator& cursor) {
        for (unsigned left = random.below(most) + 1; left > 0; --left)
            fill(random, cursor);
    };
}

/// Runs `fill`, but stops at a recursion depth of `levels`. Prevents infinite recursion, for example for folders in
/// folders.
inline RandomFill nested(unsigned levels, const RandomFill& fill) {
    return [levels, fill, level = 0U](RandomRecord& random, QelMessageIterator& cursor) mutable {
        if (++level <= levels)
            fill(random, cursor);
        --level;
    };
}

/// A random string in child `id`, non-empty if `prefix` is.
inline RandomFill textIn(int id, const std::string& prefix = "") {
    return
        [id, prefix](RandomRecord& random, QelMessageIterator& cursor) { cursor.putValue(prefix + random.text(), id); };
}

/// A fixed string in child `id`.
inline RandomFill fixedIn(int id, const std::string& text) {
    return [id, text](RandomRecord&, QelMessageIterator& cursor) { cursor.putValue(text, id); };
}

inline RandomFill numberIn(int id, int least = 0, int greatest = 1999) {
    return [id, least, greatest](RandomRecord& random, QelMessageIterator& cursor) {
        cursor.putValue(least + static_cast<int>(random.below(static_cast<unsigned>(greatest - least + 1))), id);
    };
}

inline RandomFill bigNumberIn(int id) {
    return [id](RandomRecord& random, QelMessageIterator& cursor) { cursor.putValueLongLong(random.bigNumber(), id); };
}

inline RandomFill timeIn(int id) {
    return [id](RandomRecord& random, QelMessageIterator& cursor) { cursor.putValueTime(random.time(), id); };
}

/// The fields of a record with a table.
inline RandomFill record(std::string_view typeName) {
    return [typeName](RandomRecord& random, QelMessageIterator& cursor) {
        random.fill(cursor, typeName, findRecordType(typeName)->layout);
    };
}

/// One of several classes of a family, with its complex type.
inline RandomFill oneOf(std::initializer_list<std::string_view> classes) {
    return [classes = std::vector(classes)](RandomRecord& random, QelMessageIterator& cursor) {
        const QelRecordType& type = *findRecordType(classes[random.below(classes.size())]);
        cursor.setComplexType(type.nsId, type.typeId);
        random.fill(cursor, type.name, type.layout);
    };
}

} // namespace Qel::TestSupport
