#include "QelFunctionalityCore/Host/QelService.h"

#include <cstddef>

#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

constexpr bool isKnown(int state) {
    return state != QelService::unknownState;
}

// Description and state are written a second time, after the scripts, because peers expect them in both positions.
// Readers use the first occurrence.
int skipRepetition(const QelMessageIterator&, QelService&) {
    return 0;
}
int writeRepetition(QelMessageIterator& cursor, const QelService& service) {
    if (!service.description.empty() && cursor.putValueBase64(service.description, "description"_element) != 0)
        return -1;
    return isKnown(service.state) ? cursor.putValue(service.state, "state"_element) : 0;
}

int readLevel(const QelMessageIterator& cursor, QelService::ServiceLevelsListType& levels) {
    int level = 0;
    if (cursor.getValue(level, getEmptyID()) != 0 || level < 0 || level >= QelService::levelCount)
        return -1;
    levels.set(static_cast<std::size_t>(level));
    return 0;
}
int readLevels(const QelMessageIterator& cursor, QelService& service) {
    if (cursor.firstChild("service_level"_element) != 0)
        return 0;
    int result = 0;
    do
        result = readLevel(cursor, service.levels.get());
    while (result == 0 && cursor.nextSibling("service_level"_element) == 0);
    cursor.seekUp();
    if (result == 0)
        service.levels.specify(true);
    return result;
}
int writeLevels(QelMessageIterator& cursor, const QelService& service) {
    if (!service.levels.isSpecified())
        return 0;
    for (int level = 0; level < QelService::levelCount; ++level)
        if (service.levels.get()[static_cast<std::size_t>(level)] &&
            cursor.putValue(level, "service_level"_element) != 0)
            return -1;
    return 0;
}

} // namespace

template <> struct Wire<QelService> : WireWords<QelService> {
    static constexpr QelWireField fields[] = {
        field<&R::name>(1026, required, always),
        field<&R::description>("description"_element, ignored, ifSet, base64),
        fieldIf<&R::state, isKnown>("state"_element, ignored),
        field<&R::info>(1788, ignored, ifSet, base64),
        flag<&R::enabled>(1426),
        field<&R::status>(1192, ignored, ifSet),
        field<&R::startScript>(1728, ignored, ifSet),
        field<&R::stopScript>(1729, ignored, ifSet),
        step<&skipRepetition, &writeRepetition>("description and state, again", 0, ignored),
        list<&R::provides>(1735, optional),
        list<&R::requirements>(1734, optional),
        flag<&R::system>(1646),
        step<&readLevels, &writeLevels>("levels", "service_level"_element, optional, ifSet),
    };
    static constexpr int readOrder[] = {
        1026, "state"_element,        1426, "description"_element, 1788, 1728, 1192, 1729, 0, 1735, 1734,
        1646, "service_level"_element};
};
const QelWireLayout& QelService::wire = wireLayoutOf<QelService>;

} // namespace Qel
