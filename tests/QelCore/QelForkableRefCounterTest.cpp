#include "QelCore/QelForkableRefCounter.h"

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <gtest/gtest.h>

#include "QelCore/TestSupport.h"

namespace Qel {
namespace {

struct Witness : QelForkableRefCounter {
    int reinit() override {
        ++calls;
        other.reset();
        return 0;
    }
    int calls = 0;
    boost::intrusive_ptr<Witness> other;
};
using WitnessPtr = boost::intrusive_ptr<Witness>;

TEST(QelForkableRefCounterTest, ReinitRunsOncePerLiveObjectAndInTheChildOnly) {
    std::vector<WitnessPtr> live(10);
    for (WitnessPtr& witness : live)
        witness = new Witness;
    live[4].reset();
    EXPECT_EQ(inChild([&] {
                  for (const WitnessPtr& witness : live)
                      if (witness && witness->calls != 1)
                          return 1;
                  return 0;
              }),
              0);
    for (const WitnessPtr& witness : live)
        EXPECT_EQ(witness ? witness->calls : 0, 0);
}

TEST(QelForkableRefCounterTest, ReinitRunsInGrandchild) {
    const WitnessPtr witness(new Witness);
    EXPECT_EQ(inChild([&] { return inChild([&] { return witness->calls; }); }), 2);
}

TEST(QelForkableRefCounterTest, ReinitMayDestroyOtherObjects) {
    // Each owner holds one object created before it and one created after it, so in either order of visits the next
    // object to visit is destroyed.
    std::vector<WitnessPtr> chain;
    for (int i = 0; i < 6; ++i) {
        const WitnessPtr earlier(new Witness);
        chain.emplace_back(new Witness);
        chain.back()->other = earlier;
        chain.emplace_back(new Witness);
        chain.back()->other = new Witness;
    }
    EXPECT_EQ(inChild([&] {
                  for (const WitnessPtr& witness : chain)
                      if (witness->calls != 1 || witness->other)
                          return 1;
                  const WitnessPtr later(new Witness); // the registry is still consistent
                  return inChild([&] { return later->calls == 1 && chain[0]->calls == 2 ? 0 : 1; });
              }),
              0);
}

TEST(QelForkableRefCounterTest, ObjectWithoutOwnerIsSkipped) {
    Witness witness;
    EXPECT_EQ(inChild([&] { return witness.calls; }), 0);
}

/// A witness in storage supplied by the caller.  If a thread allocates while another one forks, the allocator of a
/// sanitizer may remain locked in the child.
struct StoredWitness : Witness {
    static void* operator new(std::size_t, void* place) { return place; }
    static void operator delete(void*) {}
};

TEST(QelForkableRefCounterTest, ForkIsSafeWhileOtherThreadsCreateAndDestroyObjects) {
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i)
        threads.emplace_back([&] {
            alignas(StoredWitness) std::byte places[2][sizeof(StoredWitness)];
            while (!stop) {
                const WitnessPtr witness(new (places[0]) StoredWitness);
                witness->other = new (places[1]) StoredWitness;
            }
        });
    const WitnessPtr kept(new Witness);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(inChild([&] {
                      const WitnessPtr own(new Witness);
                      return kept->calls == 1 && own->calls == 0 ? 0 : 1;
                  }),
                  0);
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace Qel
