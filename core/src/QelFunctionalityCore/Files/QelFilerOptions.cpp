#include "QelFunctionalityCore/Files/QelFilerOptions.h"

#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

using Options = QelFilerOptions;

// The outer element alone encodes option1138; with the inner element it encodes option1139.
constexpr int outerElement = 1138;
constexpr int innerElement = 1139;

int readNested(const QelMessageIterator& cursor, Options& options) {
    if (cursor.seek(outerElement) != 0)
        return 0;
    options.flags |= cursor.seekPresence(innerElement) == 0 ? Options::option1139 : Options::option1138;
    cursor.seekUp();
    return 0;
}

int writeNested(QelMessageIterator& cursor, const Options& options) {
    if (!options.has(Options::option1138) && !options.has(Options::option1139))
        return 0;
    cursor.newChild(outerElement);
    if (options.has(Options::option1139))
        cursor.putChild(innerElement);
    cursor.seekUp();
    return 0;
}

} // namespace

template <> struct Wire<QelFilerOptions> : WireWords<QelFilerOptions> {
    static constexpr QelWireField fields[] = {
        bits<&Options::flags, QelWireBit{Options::overwrite, 1152}, QelWireBit{Options::option1151, 1151},
             QelWireBit{Options::option1140, 1140}, QelWireBit{Options::option1170, 1170},
             QelWireBit{Options::option1174, 1174}>(),
        step<&readNested, &writeNested>("flags", outerElement, ignored, ifSet),
    };
};
const QelWireLayout& QelFilerOptions::wire = wireLayoutOf<QelFilerOptions>;

} // namespace Qel
