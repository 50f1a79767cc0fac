#include "QelFunctionalityCore/Backup/QelMigrateOptions.h"

#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

// Reads into the existing configuration, if any: replacing it would lose its derived class and the data of that class.
template <class Options> int readConfig(const QelMessageIterator& cursor, Options& options) {
    if (!options.config)
        options.config.reset(new QelEnvConfig);
    (void)cursor.getObj(*options.config, "env_config"_element);
    return 0;
}
template <class Options> int writeConfig(QelMessageIterator& cursor, const Options& options) {
    return options.config ? cursor.putObj(*options.config, "env_config"_element) : 0;
}

int readNestedName(const QelMessageIterator& cursor, QelP2VMigrateOptions& options) {
    if (cursor.seek("disk"_element) != 0)
        return 0;
    if (cursor.seek("partition"_element) == 0) {
        (void)cursor.getValue(options.nestedName, "name"_element);
        cursor.seekUp();
    }
    cursor.seekUp();
    return 0;
}
int writeNestedName(QelMessageIterator& cursor, const QelP2VMigrateOptions& options) {
    if (options.nestedName.empty())
        return 0;
    cursor.newChild("disk"_element);
    cursor.newChild("partition"_element);
    const int result = cursor.putValue(options.nestedName, "name"_element);
    cursor.seekUp();
    cursor.seekUp();
    return result;
}

} // namespace

template <> struct Wire<QelP2VMigrateOptions> : WireWords<QelP2VMigrateOptions> {
    using Options = QelP2VMigrateOptions;
    static constexpr int nsId = 294, typeId = 276;
    static constexpr QelWireField fields[] = {
        step<&readConfig<Options>, &writeConfig<Options>>("config", "env_config"_element, ignored, ifSet),
        wrapped<&Options::list1346>(1346, 1156, ignored, always),
        field<&Options::option1821>(1821, ignored, ifSet),
        list<&Options::services>(1100, ignored),
        step<&readNestedName, &writeNestedName>("nestedName", "disk"_element, ignored, ifSet),
    };
    static constexpr int readOrder[] = {"env_config"_element, 1821, 1346, 1100, "disk"_element};
};
const QelWireLayout& QelP2VMigrateOptions::wire = wireLayoutOf<QelP2VMigrateOptions>;

template <> struct Wire<QelCalculateHWNodeNotes> : WireWords<QelCalculateHWNodeNotes> {
    static constexpr int nsId = 294, typeId = 307;
};
const QelWireLayout& QelCalculateHWNodeNotes::wire = wireLayoutOf<QelCalculateHWNodeNotes>;

template <> struct Wire<QelV2PMigrateOptions> : WireWords<QelV2PMigrateOptions> {
    static constexpr int nsId = 294, typeId = 278;
};
const QelWireLayout& QelV2PMigrateOptions::wire = wireLayoutOf<QelV2PMigrateOptions>;

template <> struct Wire<QelV2VMigrateOptions> : WireWords<QelV2VMigrateOptions> {
    using Options = QelV2VMigrateOptions;
    static constexpr int nsId = 294, typeId = 277;
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        flag<&Options::option1152>(1152),
        flag<&Options::option1296>(1296),
        flag<&Options::option1014>(1014),
        field<&Options::text2103>(2103, ignored, ifSet),
        field<&Options::type>(1007, ignored, ifSet),
        step<&readConfig<Options>, &writeConfig<Options>>("config", "env_config"_element, ignored, ifSet),
    };
};
const QelWireLayout& QelV2VMigrateOptions::wire = wireLayoutOf<QelV2VMigrateOptions>;

template <> struct Wire<QelMigratorCloneOptions> : WireWords<QelMigratorCloneOptions> {
    static constexpr int nsId = 294, typeId = 275;
};
const QelWireLayout& QelMigratorCloneOptions::wire = wireLayoutOf<QelMigratorCloneOptions>;

template class QelDerivedParserFactory<QelP2VMigrateOptions>;
template class QelDerivedParserFactory<QelCalculateHWNodeNotes>;
template class QelDerivedParserFactory<QelV2PMigrateOptions>;
template class QelDerivedParserFactory<QelV2VMigrateOptions>;
template class QelDerivedParserFactory<QelMigratorCloneOptions>;

QelDerivedParserFactoryT<QelP2VMigrateOptions, QelP2VMigrateOptions> factoryQelP2VMigrateOptions(true);
QelDerivedParserFactoryT<QelCalculateHWNodeNotes, QelCalculateHWNodeNotes> factoryQelCalculateHWNodeNotes(true);
QelDerivedParserFactoryT<QelV2PMigrateOptions, QelV2PMigrateOptions> factoryQelV2PMigrateOptions(true);
QelDerivedParserFactoryT<QelV2VMigrateOptions, QelV2VMigrateOptions> factoryQelV2VMigrateOptions(true);
QelDerivedParserFactoryT<QelMigratorCloneOptions, QelMigratorCloneOptions> factoryQelMigratorCloneOptions(true);

} // namespace Qel
