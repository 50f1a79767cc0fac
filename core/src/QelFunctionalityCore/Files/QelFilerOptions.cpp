#include "QelFunctionalityCore/Files/QelFilerOptions.h"

#include "QelFunctionalityCore/Files/PresenceBits.h"

namespace Qel {

namespace {

constexpr PresenceBit plainFlags[] = {
    {QelFilerOptions::overwrite, 1152},  {QelFilerOptions::option1151, 1151}, {QelFilerOptions::option1140, 1140},
    {QelFilerOptions::option1170, 1170}, {QelFilerOptions::option1174, 1174},
};

// The element by itself is the one flag, and with the other element in it the other.
constexpr int outerElement = 1138;
constexpr int innerElement = 1139;

} // namespace

int QelFilerOptions::Reader::operator()(const QelMessageIterator& cursor, QelFilerOptions& options) const {
    unsigned flags = readPresenceBits(cursor, plainFlags);
    if (cursor.seek(outerElement) == 0) {
        flags |= cursor.seekPresence(innerElement) == 0 ? option1139 : option1138;
        cursor.seekUp();
    }
    options = QelFilerOptions(flags);
    return 0;
}

int QelFilerOptions::Writer::operator()(QelMessageIterator& cursor, const QelFilerOptions& options) const {
    writePresenceBits(cursor, options.flags(), plainFlags);
    if (options.has(option1138) || options.has(option1139)) {
        cursor.newChild(outerElement);
        if (options.has(option1139))
            cursor.putChild(innerElement);
        cursor.seekUp();
    }
    return 0;
}

} // namespace Qel
