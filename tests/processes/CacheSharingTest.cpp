// Processes share one cache file, and all of them exit normally.

#include <set>

#include "ProcessTest.h"

namespace Qel::TestSupport {
namespace {

class CacheSharingTest : public ProcessTest {};

INSTANTIATE_TEST_SUITE_P(Processes, CacheSharingTest, testing::ValuesIn(crews()), nameOfCrew);

TEST_P(CacheSharingTest, ProgramsHaveDifferentArchitectures) {
    std::set<std::string> bits;
    for (const std::string& program : GetParam().programs)
        bits.insert(WorkerProcess(program, file.path()).ask("bits"));
    EXPECT_EQ(bits.size(), GetParam().programs.size());
}

TEST_P(CacheSharingTest, ProcessSeesChangesOfAnotherProcess) {
    addWorkers(2);
    EXPECT_EQ(workers[0]->ask("insert 1 7 100"), "0");
    EXPECT_EQ(workers[1]->ask("get 1"), "1:7:100");
    EXPECT_EQ(workers[1]->ask("update 1 8 2000"), "0");
    EXPECT_EQ(workers[0]->ask("get 1"), "1:8:2000");
    EXPECT_EQ(workers[0]->ask("insert 1 9 10"), "-5");
    EXPECT_EQ(workers[0]->ask("remove 1"), "0");
    EXPECT_EQ(workers[1]->ask("get 1"), "none");
    EXPECT_EQ(workers[1]->ask("update 1 9 10"), "-6");
    finishWorkers();
    expectLeftClean(file);
}

/// Model of the expected state of the cache and the lists in all processes.
class SharedModel {
public:
    std::string apply(StressScript::Kind kind, const StressState& state) {
        const QelEID eid = stressEID(state.number);
        const bool known = m_current.contains(eid);
        switch (kind) {
        case StressScript::Kind::insert:
            if (known)
                return "-5";
            break;
        case StressScript::Kind::update:
            if (!known)
                return "-6";
            break;
        case StressScript::Kind::remove:
            m_current.erase(eid);
            return "0";
        }
        m_current[eid] = state;
        return "0";
    }
    [[nodiscard]] std::string get(unsigned number) const {
        const auto found = m_current.find(stressEID(number));
        return found == m_current.end() ? "none" : textOf({*found});
    }
    [[nodiscard]] std::string all() const { return textOf(m_current); }

private:
    StressStates m_current;
};

TEST_P(CacheSharingTest, InterleavedCommandsAgreeWithModel) {
    constexpr unsigned commands = 6000;
    constexpr unsigned numbers = 60;
    constexpr unsigned listsOfWorker = 5;
    addWorkers(4);
    SharedModel model;
    std::map<std::pair<std::size_t, unsigned>, std::string> held; // by worker and list: the expected states
    std::mt19937 random(2026);
    for (unsigned i = 1; i <= commands; ++i) {
        const std::size_t which = below(random, static_cast<unsigned>(workers.size()));
        WorkerProcess& worker = *workers[which];
        const unsigned number = below(random, numbers);
        const unsigned list = below(random, listsOfWorker);
        const auto place = std::pair(which, list);
        const StressState state{number, i, below(random, 20) == 0 ? below(random, 20000) : below(random, 400)};
        switch (below(random, 8)) {
        case 0:
        case 1:
            ASSERT_EQ(worker.ask(command("insert", number, i, state.size)),
                      model.apply(StressScript::Kind::insert, state));
            break;
        case 2:
        case 3:
            ASSERT_EQ(worker.ask(command("update", number, i, state.size)),
                      model.apply(StressScript::Kind::update, state));
            break;
        case 4:
            ASSERT_EQ(worker.ask(command("remove", number)), model.apply(StressScript::Kind::remove, state));
            break;
        case 5:
            ASSERT_EQ(worker.ask(command("get", number)), model.get(number));
            break;
        case 6:
            ASSERT_EQ(worker.ask(command("hold", list)), "ok");
            held[place] = model.all();
            break;
        default:
            if (!held.contains(place))
                break;
            ASSERT_EQ(worker.ask(command("see", list)), held[place]);
            ASSERT_EQ(worker.ask(command("again", list)), "same");
            if (below(random, 2) == 0) {
                ASSERT_EQ(worker.ask(command("drop", list)), "ok");
                held.erase(place);
            }
        }
        if (i % 500 == 0) {
            ASSERT_THAT(reportOn(file).findings, testing::IsEmpty()) << "after command " << i;
        }
    }
    finishWorkers();
    EXPECT_EQ(seenByNewProcess(), model.all());
    expectLeftClean(file);
}

TEST_P(CacheSharingTest, ConcurrentWritersAndReadersSeeConsistentState) {
    constexpr unsigned writers = 4;
    constexpr unsigned readers = 2;
    constexpr unsigned steps = 1500;
    addWorkers(writers + readers);
    for (unsigned i = 0; i < writers; ++i)
        workers[i]->send(command("write", i + 1, steps));
    for (unsigned i = writers; i < writers + readers; ++i)
        workers[i]->send(command("read", steps / 10));
    for (const auto& worker : workers)
        EXPECT_EQ(worker->receive(), "ok");
    finishWorkers();

    StressStates expected;
    for (unsigned i = 0; i < writers; ++i)
        StressScript::addAfter(i + 1, steps, expected);
    EXPECT_EQ(seenByNewProcess(), textOf(expected));
    expectLeftClean(file);
}

TEST_P(CacheSharingTest, ListsSurviveGrowthOfTheFileByAnotherProcess) {
    constexpr unsigned environments = 60;
    constexpr unsigned bytes = 30000;
    addWorkers(3);
    WorkerProcess& grower = *workers[0];
    SharedModel model;
    std::vector<std::string> shown;
    for (unsigned number = 0; number < environments; ++number) {
        ASSERT_EQ(grower.ask(command("insert", number, 1, bytes)),
                  model.apply(StressScript::Kind::insert, {number, 1, bytes}));
        if (number % 6 == 0) {
            for (const std::size_t holder : {1U, 2U})
                ASSERT_EQ(workers[holder]->ask(command("hold", shown.size())), "ok");
            shown.push_back(model.all());
        }
    }
    EXPECT_GT(file.size(), std::uint64_t{environments} * bytes);
    for (std::size_t list = 0; list < shown.size(); ++list)
        for (const std::size_t holder : {1U, 2U}) {
            EXPECT_EQ(workers[holder]->ask(command("again", list)), "same");
            EXPECT_EQ(workers[holder]->ask(command("see", list)), shown[list]);
        }
    EXPECT_EQ(workers[1]->ask("update 0 2 50000"), model.apply(StressScript::Kind::update, {0, 2, 50000}));
    EXPECT_EQ(grower.ask("get 0"), model.get(0));
    EXPECT_EQ(seenByNewProcess(), model.all()) << "a new process maps the whole file";
    finishWorkers();
    expectLeftClean(file);
}

TEST_P(CacheSharingTest, ForkLeavesHeldListsToTheParent) {
    constexpr unsigned steps = 400;
    addWorkers(2);
    for (unsigned i = 0; i < 2; ++i) {
        WorkerProcess& worker = *workers[i];
        EXPECT_EQ(worker.ask(command("write", 10 + i, 20)), "ok");
        EXPECT_EQ(worker.ask("hold before"), "ok");
        EXPECT_EQ(worker.ask(command("write", 20 + i, 20)), "ok");
        EXPECT_EQ(worker.ask("hold after"), "ok");
    }
    for (unsigned i = 0; i < 2; ++i)
        workers[i]->send(command("fork", 30 + 2 * i, steps));
    for (const auto& worker : workers) {
        EXPECT_EQ(worker->receive(), "ok");
        EXPECT_EQ(worker->ask("again before"), "same");
        EXPECT_EQ(worker->ask("again after"), "same");
    }
    EXPECT_EQ(reportOn(file).heldSnapshots.size(), 4U) << "two lists for each parent and none for a child";
    finishWorkers();
    StressStates expected;
    for (const unsigned seed : {10U, 11U, 20U, 21U})
        StressScript::addAfter(seed, 20, expected);
    for (const unsigned seed : {30U, 31U, 32U, 33U})
        StressScript::addAfter(seed, steps, expected);
    EXPECT_EQ(seenByNewProcess(), textOf(expected));
    expectLeftClean(file);
}

TEST_P(CacheSharingTest, SameChangesProduceIdenticalFilesOnAllArchitectures) {
    std::vector<std::string> files;
    for (const std::string& program : GetParam().programs) {
        const TempFile own;
        WorkerProcess worker(program, own.path());
        EXPECT_EQ(worker.ask("write 1 300"), "ok");
        EXPECT_EQ(worker.ask("insert 1 1 100000"), "0");
        EXPECT_EQ(worker.ask("hold list"), "ok");
        EXPECT_EQ(worker.ask("write 2 300"), "ok");
        EXPECT_EQ(worker.finish(), 0);
        files.push_back(own.read());
    }
    EXPECT_FALSE(files.front().empty());
    EXPECT_TRUE(files.front() == files.back());
}

} // namespace
} // namespace Qel::TestSupport
