#pragma once

#include <map>
#include <string>
#include <typeinfo>

#include <boost/shared_ptr.hpp>

#include "QelCommon/Export.h"
#include "QelMessage/QelCombinators.h"
#include "QelMessage/QelDefaultMap.h"

// Polymorphic records.  Each base class has a registry, which maps the complex type of an element to the class to read,
// and the run-time type of an object to the writer to use.  Factories are global objects:
//
//     QelDerivedParserFactoryT<QelNetNIC, QelNetDevice> factoryQelNetNIC(false);
//
// They register while the library is loaded, before other threads exist; from then on the registries are read-only.
//
// The header of a base class declares its registry; one source file includes QelDerivedRegistry.h and defines it:
//
//     extern template class QelDerivedParserFactory<QelNetDevice>;
//     template class QelDerivedParserFactory<QelNetDevice>;

namespace Qel {

/// Base of the factories of all classes that share the base class `Base`, and their registry.
template <class Base, class Key = Base> class QEL_EXPORT QelDerivedParserFactory {
public:
    struct FactoryData {
        std::map<std::string, QelDerivedParserFactory*> factories;       ///< by complex type, as curType() returns it
        std::map<std::string, QelDerivedParserFactory*> factoriesByType; ///< by std::type_info::name()
        QelDerivedParserFactory* defaultFactory = nullptr;               ///< used if a lookup finds nothing
    };

    QelDerivedParserFactory(const QelDerivedParserFactory&) = delete;
    QelDerivedParserFactory& operator=(const QelDerivedParserFactory&) = delete;
    virtual ~QelDerivedParserFactory();

    /// Reads the current element into a new object, which the caller owns; `out` is unchanged on failure.
    virtual int read(const QelMessageIterator& cursor, Base*& out) const = 0;
    /// Writes the object, which must be of this factory's class, into the current element and sets the element's
    /// namespace and complex type.
    virtual int write(QelMessageIterator& cursor, const Base* object) const = 0;
    [[nodiscard]] virtual boost::shared_ptr<Base> createObject() const = 0;

    static std::map<std::string, QelDerivedParserFactory*>& factories() { return factoryData().factories; }
    static std::map<std::string, QelDerivedParserFactory*>& factoriesByType() { return factoryData().factoriesByType; }
    static QelDerivedParserFactory*& defaultFactory() { return factoryData().defaultFactory; }
    static FactoryData& factoryData() { return *factoryInternalData(); }
    /// The registry, created by the first call: a factory's constructor may run before any other of the library.
    /// Defined in QelDerivedRegistry.h, so that callers cannot inline it: a program that did would get a second, empty
    /// registry.
    static const boost::shared_ptr<FactoryData>& factoryInternalData();

protected:
    QelDerivedParserFactory() = default;

    /// Registers this factory under `key` and under the class `typeName`.  A duplicate key ends the process at load,
    /// since the two classes could not be distinguished in a message.
    void registerAs(bool isDefault, const std::string& key, const char* typeName);

private:
    boost::shared_ptr<FactoryData> m_data; // keeps the registry alive until its last factory is destroyed
};

/// Tests whether a registry entry is the given factory.
template <class Factory> class QelIsFactoryEqual {
public:
    explicit QelIsFactoryEqual(const Factory* factory) : m_factory(factory) {}
    bool operator()(const std::pair<const std::string, Factory*>& entry) const { return entry.second == m_factory; }

private:
    const Factory* m_factory;
};

/// The complex type that a writer sets, in the form that curType() returns.
template <class Writer> std::string QelDerivedKey() {
    const char* const nsText = Writer::getStrNSID();
    const char* const typeText = Writer::getStrTypeID();
    QEL_CHECK_AT(nsText != nullptr, "core/src/QelMessage/QelDerivedParsers", 237);
    QEL_CHECK_AT(typeText != nullptr, "core/src/QelMessage/QelDerivedParsers", 238);

    const bool isByText = *typeText != '\0';
    const std::string ns(isByText ? std::string_view(nsText) : QelDefaultMap::findNSID(Writer::getNSID()).view());
    const std::string type(isByText ? std::string_view(typeText)
                                    : QelDefaultMap::findTypeID(Writer::getTypeID()).view());
    return ns.empty() ? type : ns + ':' + type;
}

/// The factory of a concrete class.
template <class Data, class Base, class Key = Base, class TReader = typename Data::Reader,
          class TWriter = typename Data::Writer>
class QelDerivedParserFactoryT final : public QelDerivedParserFactory<Base, Key> {
public:
    explicit QelDerivedParserFactoryT(bool isDefault) { addFactory(isDefault, typeid(Data).name()); }

    int read(const QelMessageIterator& cursor, Base*& out) const override { return m_reader(cursor, out); }
    int write(QelMessageIterator& cursor, const Base* object) const override {
        return cursor.putObject(dynamic_cast<const Data*>(object), m_writer, getEmptyID());
    }
    [[nodiscard]] boost::shared_ptr<Base> createObject() const override { return boost::shared_ptr<Base>(new Data()); }

private:
    void addFactory(bool isDefault, const char* typeName) {
        this->registerAs(isDefault, QelDerivedKey<TWriter>(), typeName);
    }

    QelReaderPointerDataT<Data, TReader> m_reader;
    QelWriterPointerDataT<Data, TWriter> m_writer;
};

/// Reads an object of the class that is registered for the element's complex type.
template <class Base, class Key = Base> class QelReaderDerived {
public:
    /// If `useDefault` is set, an element without a complex type or with an unregistered one is read as the registry's
    /// default class; otherwise, or if there is no default class, reading returns -1.
    explicit QelReaderDerived(bool useDefault) : m_useDefault(useDefault) {}

    /// `out` is unchanged on failure.
    template <class T> int operator()(const QelMessageIterator& cursor, boost::shared_ptr<T>& out) const {
        const auto* const factory = findFactory(cursor.curType());
        if (!factory)
            return -1;
        Base* raw = nullptr;
        const int result = factory->read(cursor, raw);
        if (result == 0)
            out.reset(raw);
        return result;
    }

private:
    using Factory = QelDerivedParserFactory<Base, Key>;

    const Factory* findFactory(const std::string& type) const {
        const auto entry = Factory::factories().find(type);
        if (entry != Factory::factories().end() && entry->second)
            return entry->second;
        return m_useDefault ? Factory::defaultFactory() : nullptr;
    }

    bool m_useDefault;
};

template <class Base> QelReaderDerived<Base> QelReaderDerivedValid(bool useDefault) {
    return QelReaderDerived<Base>(useDefault);
}

/// Writes an object through the factory of its run-time class.  An object of an unregistered class is written as the
/// default class; returns -1 if there is none.  Throws std::bad_typeid for a null pointer.
template <class Factory> struct QelDerivedWrite {
    template <class Base> int operator()(QelMessageIterator& cursor, const Base* object) const {
        const auto entry = Factory::factoriesByType().find(typeid(*object).name());
        if (entry != Factory::factoriesByType().end())
            return entry->second->write(cursor, object);
        const Factory* const byDefault = Factory::defaultFactory();
        return byDefault ? byDefault->write(cursor, object) : -1;
    }
};

template <class Base, class Key = Base, template <class> class Write = QelDerivedWrite>
struct QelWriterDerived : QelWriterBase {
    template <class T> int operator()(QelMessageIterator& cursor, const boost::shared_ptr<T>& object) const {
        return Write<QelDerivedParserFactory<Base, Key>>()(cursor, static_cast<const Base*>(object.get()));
    }
};

template <class ID, class Base, class Key = Base, template <class> class DataT = QelReaderListDataT>
QelReaderListT<ID, DataT<QelReaderDerived<Base, Key>>> QelReaderDerivedList(ID id, QelReaderFlags flags,
                                                                            bool useDefault) {
    return {DataT<QelReaderDerived<Base, Key>>(QelReaderDerived<Base, Key>(useDefault)), id, flags};
}

template <class ID, class Base, class Key = Base, template <class> class Write = QelDerivedWrite>
auto QelWriterDerivedList(ID id) {
    return QelWriterList(QelWriterIDT<ID, QelWriterDerived<Base, Key, Write>>(id));
}

} // namespace Qel
