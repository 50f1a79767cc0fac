#pragma once

#include <string>

#include "QelFunctionalityCore/Profile/QelTextBool.h"
#include "QelMessage/QelWireValue.h"

// Codec of QelTextBool for wire tables.  Private header.

namespace Qel {

template <> struct QelWireValue<QelTextBool> {
    static constexpr QelWireKind kind = QelWireKind::boolean;
    static int read(const QelMessageIterator& cursor, QelTextBool& value, int id, const QelWireField&) {
        std::string text;
        return cursor.getValue(text, id) == 0 ? value.fromString(text) : -1;
    }
    static int write(QelMessageIterator& cursor, const QelTextBool& value, int id, const QelWireField&) {
        return cursor.putValue(value.toString(), id);
    }
    static bool isSet(const QelTextBool& value) { return value; }
};

} // namespace Qel
