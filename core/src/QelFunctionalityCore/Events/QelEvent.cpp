#include "QelFunctionalityCore/Events/QelEvent.h"

#include <ctime>

#include "QelFunctionalityCore/Configuration/QelConfiguration.h"
#include "QelFunctionalityCore/Security/QelToken.h"
#include "QelMessage/QelDerivedRegistry.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

int readTime(const QelMessageIterator& cursor, QelEvent& event) {
    if (cursor.getValueTime(event.time, "time"_element) != 0)
        cursor.getMessage()->getTime(&event.time);
    return 0;
}
int writeTime(QelMessageIterator& cursor, const QelEvent& event) {
    return cursor.putValueTime(event.time, "time"_element);
}

int readPayload(const QelMessageIterator& cursor, QelEvent& event) {
    return cursor.getObject(event.data,
                            QelReaderID(QelReaderDerived<QelEventData>(false), "event_data"_element, QelReaderOptional),
                            "data"_element);
}
int writePayload(QelMessageIterator& cursor, const QelEvent& event) {
    return event.data
               ? cursor.putObject(event.data, QelWriterID(QelWriterDerived<QelEventData>(), "event_data"_element),
                                  "data"_element)
               : 0;
}

} // namespace

template class QelDerivedParserFactory<QelEvent>;

QelDerivedParserFactoryT<QelEvent, QelEvent> factoryQelEvent(true);

template <> struct Wire<QelEvent> : WireWords<QelEvent> {
    static constexpr int nsId = 292, typeId = 160;
    static constexpr QelWireField fields[] = {
        field<&R::eid>(1866, required, always),
        step<&readTime, &writeTime>("time", "time"_element, ignored),
        field<&R::source>(1803, required, always),
        field<&R::category>(1264, required, always),
        field<&R::sid>(1911, ignored, always),
        field<&R::severity>(1259, required, always),
        field<&R::id>(1010, required, always),
        step<&readPayload, &writePayload>("data", "data"_element, ignored, ifSet),
        field<&R::info>(1134, required, always),
    };
    static constexpr int readOrder[] = {1866, "time"_element, 1803, 1264, 1259, 1010, 1911, "data"_element, 1134};
};
const QelWireLayout& QelEvent::wire = wireLayoutOf<QelEvent>;

QelEvent::QelEvent(std::string itsSource)
    : eid(QelConfiguration::getLocalEID()), time(std::time(nullptr)), source(std::move(itsSource)),
      sid(QelToken::getCurrent().sid) {
    id.generate();
}

} // namespace Qel
