#pragma once

#include <string>
#include <typeinfo>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/Environment/QelEnv.h"
#include "QelMessage/QelDerivedParsers.h"
#include "support/TestMessage.h"

namespace Qel::TestSupport {

/// A specified property.
template <class T> QelOptionalProperty<T> specified(const T& value) {
    QelOptionalProperty<T> property;
    property.set(value);
    return property;
}
inline QelStringOptionalProperty specified(const char* value) {
    return specified(std::string(value));
}

/// The result of a string getter: the value, "(unspecified)", or "(fails)".
inline std::string valueBy(const QelEnvConfig& config, int (QelEnvConfig::*get)(QelStringOptionalProperty&) const) {
    QelStringOptionalProperty property;
    if ((config.*get)(property) != 0)
        return "(fails)";
    return property.isSpecified() ? property.get() : "(unspecified)";
}

/// Expects the namespace and complex type under the cursor to be those of a writer.
template <class Writer> void expectStampOf(const QelMessageIterator& cursor) {
    EXPECT_EQ(cursor.curType(), QelDerivedKey<Writer>());
    EXPECT_EQ(cursor.curNamespaceID(), Writer::getNSID());
}

/// The element IDs that a configuration's writer writes.
inline std::vector<int> writtenIDs(const QelEnvConfig& config) {
    const TestMessage message;
    EXPECT_EQ(QelEnvConfig::Writer()(message.cursor(), config), 0);
    return childIDs(message.cursor());
}

inline const QelEID someEID(0x0102030405060708, 0x1112131415161718);
inline const QelEID otherEID(0x2122232425262728, 0x3132333435363738);

/// A record with the given bytes as its configurations.
inline boost::shared_ptr<QelEnvCoreBasic> recordOf(const std::string& config, const std::string& vconfig) {
    auto record = QelEnvCoreBasic::createWithRoom(QelEnvCoreBasic(), config.size() + vconfig.size());
    char* const data = const_cast<char*>(record->configBytes());
    config.copy(data, config.size());
    vconfig.copy(data + config.size(), vconfig.size());
    record->configSize = static_cast<std::uint32_t>(config.size());
    record->vconfigSize = static_cast<std::uint32_t>(vconfig.size());
    return record;
}

inline std::string configBytesOf(const QelEnvCoreBasic& record) {
    return {record.configBytes(), record.configSize};
}
inline std::string virtualConfigBytesOf(const QelEnvCoreBasic& record) {
    return {record.virtualConfigBytes(), record.vconfigSize};
}

/// A cursor at an element nested deeper than the binary form allows.
struct TooDeepMessage : TestMessage {
    TooDeepMessage() {
        cursor().newChild(1185);
        for (int level = 0; level < 300; ++level)
            cursor().newChild(1115);
        cursor().seekRoot();
        cursor().firstChild();
    }
};

/// A child factory that creates the objects its members specify.
struct TestChildFactory : QelEnvChildFactory {
    boost::shared_ptr<QelEnvBase> createEnv() override {
        ++made;
        return fresh ? fresh() : boost::shared_ptr<QelEnvBase>();
    }
    boost::shared_ptr<QelEnvBase> createEnv(boost::shared_ptr<QelEnvCoreBasic> core) override {
        return over ? over(core) : boost::shared_ptr<QelEnvBase>();
    }
    boost::shared_ptr<QelVEnvConfig> createVEnvConfig(boost::shared_ptr<QelEnvCoreBasic> core) override {
        return vconfig ? vconfig(core) : boost::shared_ptr<QelVEnvConfig>(new QelVEnvConfig(core));
    }

    boost::shared_ptr<QelEnvBase> (*fresh)() = nullptr;
    boost::shared_ptr<QelEnvBase> (*over)(const boost::shared_ptr<QelEnvCoreBasic>&) = nullptr;
    boost::shared_ptr<QelVEnvConfig> (*vconfig)(const boost::shared_ptr<QelEnvCoreBasic>&) = nullptr;
    int made = 0;
};

/// The dynamic type of an object.
template <class Object> const std::type_info& typeOf(const Object& object) {
    return typeid(object);
}

/// An environment class of a virtualisation technology.
struct TestEnv : QelEnv {
    using QelEnv::QelEnv;
    [[nodiscard]] unsigned getSortKey() const override { return 7; }
};

/// An object that is not an environment.
struct ForeignEnv : QelEnvBase {};

/// Registers a child factory during its lifetime.
class RegisteredFactory {
public:
    explicit RegisteredFactory(const QelEnvType& type) : m_type(type), m_factory(new TestChildFactory) {
        QelEnvFactory::getInstance().setChildFactory(m_type, m_factory);
    }
    RegisteredFactory(const RegisteredFactory&) = delete;
    RegisteredFactory& operator=(const RegisteredFactory&) = delete;
    ~RegisteredFactory() { QelEnvFactory::getInstance().setChildFactory(m_type, {}); }

    TestChildFactory* operator->() const { return m_factory.get(); }

private:
    QelEnvType m_type;
    boost::shared_ptr<TestChildFactory> m_factory;
};

} // namespace Qel::TestSupport
