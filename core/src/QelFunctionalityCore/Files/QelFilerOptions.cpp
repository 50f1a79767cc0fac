#include "QelFunctionalityCore/Files/QelFilerOptions.h"

#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

using Options = QelFilerOptions;

// The outer element alone encodes option1138; with the inner element it encodes option1139.

int readNested(const QelMessageIterator& cursor, Options& options) {
    if (cursor.seek("filer_option_1138"_element) != 0)
        return 0;
    options.flags |= cursor.seekPresence("filer_option_1139"_element) == 0 ? Options::option1139 : Options::option1138;
    cursor.seekUp();
    return 0;
}

int writeNested(QelMessageIterator& cursor, const Options& options) {
    if (!options.has(Options::option1138) && !options.has(Options::option1139))
        return 0;
    cursor.newChild("filer_option_1138"_element);
    if (options.has(Options::option1139))
        cursor.putChild("filer_option_1139"_element);
    cursor.seekUp();
    return 0;
}

} // namespace

template <> struct Wire<QelFilerOptions> : WireWords<QelFilerOptions> {
    static constexpr QelWireField fields[] = {
        bits<&Options::flags, QelWireBit{Options::overwrite, 1152}, QelWireBit{Options::option1151, 1151},
             QelWireBit{Options::option1140, 1140}, QelWireBit{Options::option1170, 1170},
             QelWireBit{Options::option1174, 1174}>(),
        step<&readNested, &writeNested>("flags", "filer_option_1138"_element, ignored, ifSet),
    };
};
const QelWireLayout& QelFilerOptions::wire = wireLayoutOf<QelFilerOptions>;

} // namespace Qel
