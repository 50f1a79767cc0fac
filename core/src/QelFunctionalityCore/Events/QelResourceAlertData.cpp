#include "QelFunctionalityCore/Events/QelResourceAlertData.h"

#include <iterator>
#include <span>

#include "QelCommon/Strings.h"
#include "QelFunctionalityCore/Events/QelInfo.h"
#include "QelFunctionalityCore/Values/QelValueCodecs.h"
#include "QelFunctionalityCore/Vocabulary/QelVocMap.h"
#include "QelMessage/QelElementNames.h"
#include "QelMessage/QelWireTable.h"

namespace Qel {

namespace {

// All values are read or written even if one of them fails.
template <class Reader, class Member>
int getPerfValues(const QelMessageIterator& cursor, QelResourceAlertData& alert, Member QelPerfValue::*member) {
    const Reader reader;
    const int current = cursor.getObject(alert.current.*member, reader, "current"_element);
    alert.soft.specify(cursor.getObject(alert.soft.get().*member, reader, "soft_limit"_element) == 0);
    return current | cursor.getObject(alert.hard.*member, reader, "hard_limit"_element);
}
template <class Writer, class Member>
int putPerfValues(QelMessageIterator& cursor, const QelResourceAlertData& alert, Member QelPerfValue::*member) {
    const Writer writer;
    const int current = cursor.putObject(alert.current.*member, writer, "current"_element);
    const int soft =
        alert.soft.isSpecified() ? cursor.putObject(alert.soft.get().*member, writer, "soft_limit"_element) : 0;
    return current | soft | cursor.putObject(alert.hard.*member, writer, "hard_limit"_element);
}

int readValues(const QelMessageIterator& cursor, QelResourceAlertData& alert) {
    return alert.isInteger ? getPerfValues<QelReaderLongLong>(cursor, alert, &QelPerfValue::integer)
                           : getPerfValues<QelReaderDouble>(cursor, alert, &QelPerfValue::real);
}
int writeValuesAs(QelMessageIterator& cursor, const QelResourceAlertData& alert, bool areIntegers) {
    return areIntegers ? putPerfValues<QelWriterLongLong>(cursor, alert, &QelPerfValue::integer)
                       : putPerfValues<QelWriterDouble>(cursor, alert, &QelPerfValue::real);
}
int writeValues(QelMessageIterator& cursor, const QelResourceAlertData& alert) {
    return writeValuesAs(cursor, alert, alert.isInteger);
}

bool areIntegers(const QelVocMap* vocabularies, const QelResourceAlertData& alert) {
    int type = alert.isInteger ? 1 : 0;
    if (vocabularies)
        vocabularies->readValueType(alert.id, type);
    return type != 0;
}

} // namespace

QelDerivedParserFactoryT<QelResourceAlertData, QelEventData> factoryQelResourceAlertData(false);

template <> struct Wire<QelResourceAlertData> : WireWords<QelResourceAlertData> {
    static constexpr int nsId = 285, typeId = 102;
    static constexpr QelWireField fields[] = {
        base<QelAlertData>(),
        field<&R::subsystem>(1094, required, always),
        field<&R::instance>(1905, ignored, ifSet),
        field<&R::id>(1906, required, always),
        step<&readValues, &writeValues>("current, soft, hard", "current"_element, required),
    };
};
const QelWireLayout& QelResourceAlertData::wire = wireLayoutOf<QelResourceAlertData>;

namespace {

// The table is processed in two parts: the fields before the values determine whether the values are integers.
constexpr std::size_t fieldsBeforeValues = std::size(Wire<QelResourceAlertData>::fields) - 1;
constexpr unsigned char onlyField[] = {0};

constexpr QelWireLayout partOf(std::span<const QelWireField> fields, std::span<const unsigned char> order) {
    QelWireLayout part = wireLayoutOf<QelResourceAlertData>;
    part.fields = fields;
    part.readingOrder = order;
    return part;
}
constexpr QelWireLayout head = partOf(wireLayoutOf<QelResourceAlertData>.fields.first(fieldsBeforeValues),
                                      wireLayoutOf<QelResourceAlertData>.readingOrder.first(fieldsBeforeValues));
constexpr QelWireLayout values = partOf(wireLayoutOf<QelResourceAlertData>.fields.last(1), onlyField);

} // namespace

int QelResourceAlertData::Reader::operator()(const QelMessageIterator& cursor, QelResourceAlertData& alert) const {
    if (const int result = readByLayout(head, &alert, cursor))
        return result;
    alert.isInteger = areIntegers(m_vocabularies.get(), alert);
    return readByLayout(values, &alert, cursor);
}

int QelResourceAlertData::Writer::operator()(QelMessageIterator& cursor, const QelResourceAlertData& alert) const {
    if (const int result = writeByLayout(head, &alert, cursor))
        return result;
    return writeValuesAs(cursor, alert, areIntegers(m_vocabularies.get(), alert));
}

void QelResourceAlertData::toInfo(QelInfo& info) const {
    info = QelInfo("Resource %id% %type% alert on environment %env% current value: %cur% soft limit: %soft% hard "
                   "limit: %hard%",
                   "", true);
    QelAlertData::toInfo(info);
    const auto set = [&](const char* name, const std::string& text) { info.setParameter(QelInfo(text, name, false)); };
    set("id", id);
    set("cur", longlongToStr(current.integer));
    set("soft", soft.isSpecified() ? longlongToStr(soft.get().integer) : std::string());
    set("hard", longlongToStr(hard.integer));
}

int QelResourceAlertData::addSubscriptionName(QelMessage& message) {
    if (QelAlertData::addSubscriptionName(message) != 0)
        return -1;
    return addSubscription(*this, message);
}

bool QelResourceAlertData::isSameInstance(const QelResourceAlertData& other) const {
    const auto isAny = [](const QelOptionalProperty<std::string>& name) {
        return name.isSpecified() && name.get() == anyInstance;
    };
    return instance == other.instance || isAny(instance) || isAny(other.instance);
}

bool QelResourceAlertData::compareID(boost::shared_ptr<QelAlertData> other) const {
    const auto same = boost::dynamic_pointer_cast<QelResourceAlertData>(other);
    return same && QelAlertData::compareID(other) && subsystem == same->subsystem && isSameInstance(*same) &&
           id == same->id;
}

bool QelResourceAlertData::operator==(const QelResourceAlertData& other) const {
    return QelAlertData::operator==(other) && subsystem == other.subsystem && isSameInstance(other) && id == other.id;
}

} // namespace Qel
