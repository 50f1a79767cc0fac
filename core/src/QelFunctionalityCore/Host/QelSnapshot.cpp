#include "QelFunctionalityCore/Host/QelSnapshot.h"

#include <boost/make_shared.hpp>

#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

int readConfig(const QelMessageIterator& cursor, QelSnapshot& snapshot) {
    if (!snapshot.config)
        snapshot.config = boost::make_shared<QelEnvConfig>();
    if (cursor.getObj(*snapshot.config, "sample_config"_element) != 0)
        snapshot.config.reset();
    return 0;
}

int writeConfig(QelMessageIterator& cursor, const QelSnapshot& snapshot) {
    return snapshot.config ? cursor.putObj(*snapshot.config, "sample_config"_element) : 0;
}

} // namespace

template <> struct Wire<QelSnapshot> : WireWords<QelSnapshot> {
    static constexpr bool bestEffort = true;
    static constexpr QelWireField fields[] = {
        field<&R::id>(1010, required, always),
        field<&R::name>(1007, required, always),
        field<&R::text1026>(1026, required, always),
        field<&R::description>(1496, ignored, ifSet, base64),
        step<&readConfig, &writeConfig, QelEnvConfig>("config", "sample_config"_element, ignored, ifSet),
    };
};
const QelWireLayout& QelSnapshot::wire = wireLayoutOf<QelSnapshot>;

int QelSnapshot::Reader::operator()(const QelMessageIterator& cursor, QelSnapshot& snapshot) const {
    int result = 0;
    QelWireLayout row = QelSnapshot::wire;
    for (const auto order = row.readingOrder; const unsigned char& index : order) {
        row.readingOrder = {&index, 1};
        if (readByLayout(row, &snapshot, cursor) != 0)
            result = -1;
    }
    return result;
}

} // namespace Qel
