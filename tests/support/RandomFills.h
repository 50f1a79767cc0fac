// What families make their random records of.

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "support/RandomRecord.h"

namespace Qel::TestSupport {

/// Nothing: for what is no element, or may not stand a second time.
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

/// What `fill` puts, or nothing.
inline RandomFill perhaps(const RandomFill& fill) {
    return [fill](RandomRecord& random, QelMessageIterator& cursor) {
        if (random.below(2) == 0)
            fill(random, cursor);
    };
}

/// What `fill` puts, up to `most` times.
inline RandomFill several(unsigned most, const RandomFill& fill) {
    return [most, fill](RandomRecord& random, QelMessageIterator& cursor) {
        for (unsigned left = random.below(most + 1); left > 0; --left)
            fill(random, cursor);
    };
}

/// The same, at least once.
inline RandomFill atLeastOne(unsigned most, const RandomFill& fill) {
    return [most, fill](RandomRecord& random, QelMessageIterator& cursor) {
        for (unsigned left = random.below(most) + 1; left > 0; --left)
            fill(random, cursor);
    };
}

/// What `fill` puts, but nothing so many levels down in itself: folders with as many folders again would go on for
/// ever.
inline RandomFill nested(unsigned levels, const RandomFill& fill) {
    return [levels, fill, level = 0U](RandomRecord& random, QelMessageIterator& cursor) mutable {
        if (++level <= levels)
            fill(random, cursor);
        --level;
    };
}

/// Text in child `id`, which `prefix` keeps from being empty.
inline RandomFill textIn(int id, const std::string& prefix = "") {
    return
        [id, prefix](RandomRecord& random, QelMessageIterator& cursor) { cursor.putValue(prefix + random.text(), id); };
}

/// This text in child `id`.
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

/// The fields of a record that has a table.
inline RandomFill record(std::string_view typeName) {
    return [typeName](RandomRecord& random, QelMessageIterator& cursor) {
        random.fill(cursor, typeName, findRecordType(typeName)->layout);
    };
}

/// One of several classes of a family, stamped.
inline RandomFill oneOf(std::initializer_list<std::string_view> classes) {
    return [classes = std::vector(classes)](RandomRecord& random, QelMessageIterator& cursor) {
        const QelRecordType& type = *findRecordType(classes[random.below(classes.size())]);
        cursor.setComplexType(type.nsId, type.typeId);
        random.fill(cursor, type.name, type.layout);
    };
}

} // namespace Qel::TestSupport
