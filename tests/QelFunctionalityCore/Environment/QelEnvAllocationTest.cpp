// Counts the memory allocations of operations on environments.

#include <gmock/gmock.h>

#include "EnvTestSupport.h"
#include "support/AllocationCounter.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

/// The record of an environment with `count` addresses in each of its configurations.
boost::shared_ptr<QelEnvCoreBasic> recordWithAddresses(int count) {
    std::vector<QelIPAddress> addresses;
    for (int i = 0; i < count; ++i)
        addresses.emplace_back("2001:db8::" + std::to_string(i) + "/64");
    const boost::shared_ptr<QelEnvConfig> config(new QelEnvConfig);
    config->setAddresses(specified(addresses));
    const boost::shared_ptr<QelVEnvConfig> vconfig(new QelVEnvConfig);
    vconfig->setAddresses(specified(addresses));
    return QelEnv(someEID, config, vconfig).getCoreBasic();
}

/// Allocations allowed for a hundred times as many elements: a few doublings of the buffers that hold them.
constexpr std::size_t someDoublings = 30;

TEST(QelEnvAllocationTest, CountIncludesProgramAndLibraries) {
    EXPECT_GE(allocationsOf([] { static_cast<void>(QelEnv()); }), 4U);
}

TEST(QelEnvAllocationTest, ReadingIdentityAllocatesIndependentlyOfConfigurations) {
    const auto readIdentity = [](const boost::shared_ptr<QelEnvCoreBasic>& record) {
        return allocationsOf([&] {
            const QelEnv env(record);
            EXPECT_EQ(env.getEID(), someEID);
            EXPECT_EQ(env.getStatus().state, 1);
            EXPECT_EQ(env.getMaxAlertType(), QelAlertType::green);
        });
    };
    const auto large = recordWithAddresses(1000);
    const auto blank = recordOf("", "");
    blank->eid = someEID;
    EXPECT_EQ(readIdentity(large), readIdentity(blank));
}

TEST(QelEnvAllocationTest, ParsingAllocatesPerMessageNotPerElement) {
    const auto parse = [](int count) {
        const auto record = recordWithAddresses(count);
        const QelEnv env(record);
        return allocationsOf([&] {
            bool customized = false;
            EXPECT_EQ(env.getConfig()->getConfigCustomized(customized), -1);
            EXPECT_EQ(env.getConfig()->getAgentVersion(), 40500);
        });
    };
    EXPECT_LE(parse(1000), parse(10) + someDoublings);
}

TEST(QelEnvAllocationTest, FlatteningAllocatesPerMessageNotPerElement) {
    const auto flatten = [](int count) {
        QelEnv env(recordWithAddresses(count));
        env.getConfig()->setName(specified("changed"));
        env.getVirtualConfig()->setName(specified("changed"));
        return allocationsOf([&] { env.syncBuffer(); });
    };
    EXPECT_LE(flatten(1000), flatten(10) + someDoublings);
    EXPECT_LE(flatten(1000), 10U) << "two passes that allocate nothing, and one record";
}

} // namespace
} // namespace Qel
