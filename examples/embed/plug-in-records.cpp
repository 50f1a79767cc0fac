// Class families in a plug-in: one of the library and one defined by the plug-in.
//
//     plug-in-records
//
// prints the class of the object read from each element of a message.  The complex type of the element selects the
// class.

#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <typeinfo>

#include <QelCommon/ErrorMessage.h>
#include <QelFunctionalityCore/QelFunctionalityCore.h>
#include <QelMessage/QelDerivedRegistry.h>

/// The base class of the plug-in's family.  It is also the default class.
struct Sensor {
    virtual ~Sensor() = default;
    [[nodiscard]] virtual std::string className() const { return "Sensor"; }

    struct Reader {
        int operator()(const Qel::QelMessageIterator& cursor, Sensor& sensor) const {
            return cursor.getValue(sensor.label, "label");
        }
    };
    struct Writer : Qel::QelWriterBaseT<Writer> {
        static const char* getStrNSID() { return "sensors"; }
        static const char* getStrTypeID() { return "sensor"; }
        int operator()(Qel::QelMessageIterator& cursor, const Sensor& sensor) const {
            return cursor.putValue(sensor.label, "label");
        }
    };

    std::string label;
};

struct Thermometer : Sensor {
    [[nodiscard]] std::string className() const override { return "Thermometer"; }

    using Reader = Sensor::Reader;
    struct Writer : Qel::QelWriterBaseT<Writer> {
        static const char* getStrNSID() { return "sensors"; }
        static const char* getStrTypeID() { return "thermometer"; }
        int operator()(Qel::QelMessageIterator& cursor, const Thermometer& thermometer) const {
            return Sensor::Writer()(cursor, thermometer);
        }
    };
};

/// The registry is defined by the owner of the base class, here the plug-in.
template class Qel::QelDerivedParserFactory<Sensor>;

namespace {

const Qel::QelDerivedParserFactoryT<Sensor, Sensor> factorySensor(true);
const Qel::QelDerivedParserFactoryT<Thermometer, Sensor> factoryThermometer(false);

constexpr const char* text = R"(<message xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
    xmlns:env="urn:qel:env" xmlns:sensors="urn:qel:sensors">
  <info xsi:type="env:vt_info"/>
  <sensor xsi:type="sensors:thermometer"><label>intake</label></sensor>
</message>)";

/// The readers' argument `false` rejects elements whose complex type belongs to no registered class.
int show(const Qel::QelMessageIterator& cursor) {
    boost::shared_ptr<Qel::QelVtInfo> info;
    if (cursor.seek("info") != 0 || Qel::QelReaderDerived<Qel::QelVtInfo>(false)(cursor, info) != 0)
        return -1;
    const Qel::QelVtInfo& found = *info;
    std::cout << "info: " << (typeid(found) == typeid(Qel::QelVtInfo) ? "QelVtInfo" : "another class") << '\n';
    cursor.seekUp();

    boost::shared_ptr<Sensor> sensor;
    if (cursor.seek("sensor") != 0 || Qel::QelReaderDerived<Sensor>(false)(cursor, sensor) != 0)
        return -1;
    std::cout << "sensor: " << sensor->className() << ' ' << sensor->label << '\n';
    return 0;
}

} // namespace

int main() {
    const Qel::auto_destroy<Qel::QelMessage> message(Qel::QelMessage::getFactory()->createNew());
    if (message->create(0) != 0 || message->fromTextEx(text, 0) != 0) {
        std::fprintf(stderr, "plug-in-records: %s\n", Qel::getErrorMessage().c_str());
        return 4;
    }
    const std::unique_ptr<Qel::QelMessageIterator> cursor(message->rootIterator());
    if (show(*cursor) != 0) {
        std::fprintf(stderr, "plug-in-records: element of an unregistered class\n");
        return 4;
    }
    return 0;
}
