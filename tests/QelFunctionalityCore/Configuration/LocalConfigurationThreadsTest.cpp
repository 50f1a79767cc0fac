#include <array>
#include <atomic>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "QelFunctionalityCore/Security/LocalConfig.h"

namespace Qel {

namespace {

/// Threads that repeat their work while at least one of them has rounds left.  Without the lock of the local
/// configuration, one thread destroys what another one copies; the thread sanitizer reports each such access.
class LocalConfigurationThreadsTest : public testing::Test {
protected:
    static constexpr int rounds = 200;

    ~LocalConfigurationThreadsTest() override { QelConfiguration::setLocalConfig(nullptr); }

    template <class Work> void repeat(const Work& work) {
        m_threads.emplace_back([this, work] {
            ++m_ready;
            while (!m_started)
                std::this_thread::yield();
            for (int round = 0; round < rounds; ++round)
                work();
        });
    }
    void run() {
        while (m_ready != static_cast<int>(m_threads.size()))
            std::this_thread::yield();
        m_started = true;
        for (std::thread& thread : m_threads)
            thread.join();
    }

    static QelConfiguration configurationOf(const QelEID& eid) {
        const LocalConfig config(eid);
        return QelConfiguration::getLocalConfig();
    }

private:
    std::atomic<int> m_ready{0};
    std::atomic<bool> m_started{false};
    std::vector<std::thread> m_threads;
};

TEST_F(LocalConfigurationThreadsTest, ReadsReturnOnlyConfigurationsThatWereSet) {
    const std::array configurations{configurationOf(localEID), configurationOf(masterEID)};
    std::atomic<int> strangers{0};
    QelConfiguration::setLocalConfig(configurations[0].getMessage());
    for (const QelConfiguration& configuration : configurations)
        repeat([&configuration] { QelConfiguration::setLocalConfig(configuration.getMessage()); });
    for (int i = 0; i < 2; ++i)
        repeat([&strangers] {
            QelEID eid;
            if (QelConfiguration::getLocalConfig().getEID(eid) != 0 || (eid != localEID && eid != masterEID))
                ++strangers;
        });
    run();
    EXPECT_EQ(strangers, 0);
}

// The returned reference is not read: it is not protected by the lock after the call.
TEST_F(LocalConfigurationThreadsTest, IdentityLookupIsSafeWhileConfigurationsAreSet) {
    const QelConfiguration configuration = configurationOf(localEID);
    const QelEID* const identity = &QelConfiguration::getLocalEID();
    std::atomic<int> others{0};
    repeat([&configuration] { QelConfiguration::setLocalConfig(configuration.getMessage()); });
    for (int i = 0; i < 2; ++i)
        repeat([&] { others += &QelConfiguration::getLocalEID() != identity; });
    run();
    EXPECT_EQ(others, 0);
    EXPECT_EQ(QelConfiguration::getLocalEID(), localEID);
}

} // namespace

} // namespace Qel
