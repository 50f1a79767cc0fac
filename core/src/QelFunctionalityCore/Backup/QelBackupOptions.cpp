#include "QelFunctionalityCore/Backup/QelBackupOptions.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

// The presence of the element encodes the option; the string is nested in it, and is therefore never sent without the
// option.
int readOption1014(const QelMessageIterator& cursor, QelBackupOptions& options) {
    options.option1014 = cursor.seek("option_1014"_element) == 0;
    if (options.option1014) {
        (void)cursor.getValue(options.text1006, "backup"_element);
        cursor.seekUp();
    }
    return 0;
}
int writeOption1014(QelMessageIterator& cursor, const QelBackupOptions& options) {
    if (!options.option1014 && options.text1006.empty())
        return 0;
    cursor.newChild("option_1014"_element);
    const int result = options.text1006.empty() ? 0 : cursor.putValue(options.text1006, "backup"_element);
    cursor.seekUp();
    return result;
}

constexpr bool isBound(long time) {
    return time > 0;
}

} // namespace

template <> struct Wire<QelBackupOptions> : WireWords<QelBackupOptions> {
    static constexpr int nsId = 282, typeId = 107;
    static constexpr QelWireField fields[] = {
        field<&R::operation>(0, ignored, always),
        wrappedBits<&R::kind, QelWireBit{1, 1627}, QelWireBit{2, 1628}>(1197, ifSet).kept(),
        field<&R::description>(1496, ignored, ifSet, base64),
        step<&readOption1014, &writeOption1014>("option1014", "option_1014"_element, ignored, ifSet),
        wrapped<&R::paths>(1980, 1156, ignored, always),
        field<&R::excludes>(1981, ignored, always),
        field<&R::storage>(1828, ignored, ifSet).bestEffort(),
    };
};
const QelWireLayout& QelBackupOptions::wire = wireLayoutOf<QelBackupOptions>;

template <> struct Wire<QelRestoreOptions> : WireWords<QelRestoreOptions> {
    static constexpr int nsId = 282, typeId = 108;
    static constexpr QelWireField fields[] = {
        flag<&R::option1152>(1152),
        field<&R::storage>(1828, ignored, ifSet).bestEffort(),
    };
};
const QelWireLayout& QelRestoreOptions::wire = wireLayoutOf<QelRestoreOptions>;

template <> struct Wire<QelSelectiveRestoreOptions> : WireWords<QelSelectiveRestoreOptions> {
    static constexpr int nsId = 282, typeId = 109;
    static constexpr QelWireField fields[] = {flag<&R::option1832>(1832)};
};
const QelWireLayout& QelSelectiveRestoreOptions::wire = wireLayoutOf<QelSelectiveRestoreOptions>;

template <> struct Wire<QelBackupGetInfoOptions> : WireWords<QelBackupGetInfoOptions> {
    static constexpr int nsId = 282, typeId = 282;
};
const QelWireLayout& QelBackupGetInfoOptions::wire = wireLayoutOf<QelBackupGetInfoOptions>;

template <> struct Wire<QelBackupGetEnvInfoOptions> : WireWords<QelBackupGetEnvInfoOptions> {
    static constexpr int nsId = 282, typeId = 283;
    static constexpr QelWireField fields[] = {
        flag<&R::option1624>(1624),
        flag<&R::option2064>(2064),
    };
};
const QelWireLayout& QelBackupGetEnvInfoOptions::wire = wireLayoutOf<QelBackupGetEnvInfoOptions>;

template <> struct Wire<QelRemoveBackupOptions> : WireWords<QelRemoveBackupOptions> {
    static constexpr QelWireField fields[] = {
        field<&R::eid>(1866, ignored, ifSet),
        flag<&R::option1015>(1015),
        field<&R::storage>(1828, ignored, ifSet).bestEffort(),
    };
};
const QelWireLayout& QelRemoveBackupOptions::wire = wireLayoutOf<QelRemoveBackupOptions>;

template <> struct Wire<QelListBackupOptions> : WireWords<QelListBackupOptions> {
    static constexpr QelWireField fields[] = {
        field<&R::eid>(1866, ignored, ifSet),
        flag<&R::option1626>(1626),
        flag<&R::option1134>(1134),
        field<&R::eid2028>(2028, ignored, ifSet),
        field<&R::storage>(1828, ignored, ifSet).bestEffort(),
    };
};
const QelWireLayout& QelListBackupOptions::wire = wireLayoutOf<QelListBackupOptions>;

template <> struct Wire<QelSearchBackupOptions> : WireWords<QelSearchBackupOptions> {
    static constexpr QelWireField fields[] = {
        field<&R::hostName>(1261, ignored, ifSet),
        field<&R::ip>(1262, ignored, ifSet),
        fieldIf<&R::timeFrom, isBound>(1146, ignored, time),
        fieldIf<&R::timeTo, isBound>(1147, ignored, time),
        field<&R::storage>(1828, ignored, ifSet).bestEffort(),
    };
};
const QelWireLayout& QelSearchBackupOptions::wire = wireLayoutOf<QelSearchBackupOptions>;

int QelSearchBackupOptions::Reader::operator()(const QelMessageIterator& cursor,
                                               QelSearchBackupOptions& options) const {
    traceBackupCall(__PRETTY_FUNCTION__);
    options.timeFrom = options.timeTo = 0;
    return readByLayout(QelSearchBackupOptions::wire, &options, cursor);
}

template class QelDerivedParserFactory<QelBackupOptions>;
template class QelDerivedParserFactory<QelRestoreOptions>;
template class QelDerivedParserFactory<QelSelectiveRestoreOptions>;
template class QelDerivedParserFactory<QelBackupGetInfoOptions>;

QelDerivedParserFactoryT<QelBackupOptions, QelBackupOptions> factoryQelBackupOptions(true);
QelDerivedParserFactoryT<QelRestoreOptions, QelRestoreOptions> factoryQelRestoreOptions(true);
QelDerivedParserFactoryT<QelSelectiveRestoreOptions, QelSelectiveRestoreOptions>
    factoryQelSelectiveRestoreOptions(true);
QelDerivedParserFactoryT<QelBackupGetInfoOptions, QelBackupGetInfoOptions> factoryQelBackupGetInfoOptions(true);
QelDerivedParserFactoryT<QelBackupGetEnvInfoOptions, QelBackupGetInfoOptions> factoryQelBackupGetEnvInfoOptions(false);

} // namespace Qel
