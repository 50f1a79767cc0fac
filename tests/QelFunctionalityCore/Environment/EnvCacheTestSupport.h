#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelFunctionalityCore/Environment/QelEnvCache.h"
#include "QelFunctionalityCore/Environment/QelEnvFactory.h"
#include "qel/cachefile/CacheFileChecker.h"
#include "support/LogCapture.h"
#include "support/TempFile.h"

namespace Qel {

using TestSupport::LogCapture;

class MockUpdater : public QelEnvUpdater {
public:
    MOCK_METHOD(int, insertEnv, (const QelEnv&), (override));
    MOCK_METHOD(int, updateEnv, (const QelEnv&), (override));
    MOCK_METHOD(int, removeEnv, (const QelEID&), (override));
    MOCK_METHOD(void, syncEnvList, (const QelEID&, const QelEnvIDList&), (override));
    MOCK_METHOD(int, checkEnv, (const QelEnv&), (override));
};

/// Registers a mock updater for a type during its lifetime.  A call that no test expects fails the test.
class RegisteredUpdater {
public:
    explicit RegisteredUpdater(const QelEnvType& type) : m_type(type), m_updater(new testing::StrictMock<MockUpdater>) {
        QelEnvFactory::getInstance().setEnvUpdater(m_type, m_updater);
    }
    RegisteredUpdater(const RegisteredUpdater&) = delete;
    RegisteredUpdater& operator=(const RegisteredUpdater&) = delete;
    ~RegisteredUpdater() { QelEnvFactory::getInstance().setEnvUpdater(m_type, nullptr); }

    MockUpdater& operator*() const { return *m_updater; }

private:
    QelEnvType m_type;
    boost::shared_ptr<MockUpdater> m_updater;
};

/// An environment whose sort key is its state.
class KeyedEnv : public QelEnv {
public:
    using QelEnv::QelEnv;
    unsigned getSortKey() const override { return static_cast<unsigned>(getStatus().state); }
};

/// Creates and counts environments of the type "keyed" during its lifetime.
class KeyedEnvFactory {
public:
    static constexpr const char* type = "keyed";

    KeyedEnvFactory() { QelEnvFactory::getInstance().setChildFactory(type, m_factory); }
    KeyedEnvFactory(const KeyedEnvFactory&) = delete;
    KeyedEnvFactory& operator=(const KeyedEnvFactory&) = delete;
    ~KeyedEnvFactory() { QelEnvFactory::getInstance().setChildFactory(type, nullptr); }

    [[nodiscard]] int made() const { return m_factory->made; }

private:
    struct Factory : QelEnvChildFactory {
        boost::shared_ptr<QelEnvBase> createEnv() override { return createEnv(QelEnv().getCoreBasic()); }
        boost::shared_ptr<QelEnvBase> createEnv(boost::shared_ptr<QelEnvCoreBasic> core) override {
            ++made;
            return boost::shared_ptr<QelEnvBase>(new KeyedEnv(std::move(core)));
        }
        boost::shared_ptr<QelVEnvConfig> createVEnvConfig(boost::shared_ptr<QelEnvCoreBasic> core) override {
            return boost::shared_ptr<QelVEnvConfig>(new QelVEnvConfig(std::move(core)));
        }
        int made = 0;
    };

    boost::shared_ptr<Factory> m_factory{new Factory};
};

/// The n-th EID in sort order.
[[nodiscard]] inline QelEID eidOf(long long number) {
    return {number, 1};
}

/// A specified property.
[[nodiscard]] inline QelStringOptionalProperty specified(const std::string& value) {
    QelStringOptionalProperty property;
    property = value;
    return property;
}

/// An environment with a name in its base configuration.
[[nodiscard]] inline QelEnv makeEnv(const QelEID& eid, const std::string& name = "env",
                                    const QelEnvType& type = "plain", const QelEID& parent = {}) {
    QelEnv env;
    env.getCoreBasic()->eid = eid;
    env.getCoreBasic()->type = type;
    env.setParentEID(parent);
    env.getConfig()->setName(specified(name));
    return env;
}

/// The name in an environment's base configuration; "(none)" if there is none.
[[nodiscard]] inline std::string nameOf(const boost::shared_ptr<const QelEnv>& env) {
    QelStringOptionalProperty name;
    return env && env->getConfig()->getName(name) == 0 && name.isSpecified() ? name.get() : "(none)";
}

/// Provides a cache file for each test, which envCache() uses.
class EnvCacheTest : public testing::Test {
protected:
    EnvCacheTest() { initEnvCache(file.path(), false); }
    ~EnvCacheTest() override {
        finiEnvCache();
        initEnvCache({}, false);
    }

    /// A second attachment to the file, like that of another process.
    [[nodiscard]] QelEnvCacheSP attachAgain() const {
        return QelEnvCache::createInstance(file.path(), boost::shared_ptr<QelEnvCache::PreProcess>(new Silent));
    }

    static void insert(const QelEnv& env) { ASSERT_EQ(envCache()->insert(env), 0); }

    /// The reference count of the current snapshot in the file.
    [[nodiscard]] std::uint32_t snapshotReferences() const { return file.word(20 + file.word(20)); }

    [[nodiscard]] std::vector<std::string> findings() const {
        const std::string bytes = file.read();
        std::vector<std::string> texts;
        for (const Tool::Finding& finding : Tool::checkCacheFile(std::as_bytes(std::span(bytes))).findings)
            texts.push_back(finding.text);
        return texts;
    }

    const TestSupport::TempFile file;

private:
    /// Calls no updater.
    struct Silent : QelEnvCache::PreProcess {
        int insert(const QelEnv&) override { return 0; }
        int update(const QelEnv&) override { return 0; }
        int remove(const QelEnv&) override { return 0; }
    };
};

} // namespace Qel
