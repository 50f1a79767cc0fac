// Processes are killed while they read or write a cache file; other processes then check the file.

#include <algorithm>
#include <csignal>

#include "ProcessTest.h"

namespace Qel::TestSupport {
namespace {

using Tool::FindingKind;

class CacheKillTest : public ProcessTest {
protected:
    void killAll() {
        for (const auto& worker : workers) {
            worker->kill();
            EXPECT_EQ(worker->finish(), -SIGKILL);
        }
        workers.clear();
    }
};

INSTANTIATE_TEST_SUITE_P(Processes, CacheKillTest, testing::ValuesIn(crews()), nameOfCrew);

/// Waits for a random time of up to about a millisecond, so that a process is killed at a random point.
void waitRandomly(std::mt19937& random) {
    volatile unsigned turns = below(random, 1U << (5 + below(random, 15)));
    while (turns != 0)
        turns = turns - 1;
}

TEST_P(CacheKillTest, SnapshotsOfKilledReadersRemainAndOtherProcessesContinue) {
    addWorkers(2);
    {
        WorkerProcess writer(nativeWorker, file.path());
        ASSERT_EQ(writer.ask("write 1 100"), "ok");
        for (const auto& reader : workers)
            ASSERT_EQ(reader->ask("hold list"), "ok");
        ASSERT_EQ(writer.ask("write 2 100"), "ok");
        ASSERT_EQ(workers[1]->ask("hold other"), "ok");
    }
    killAll();
    const auto held = [&] {
        std::vector<std::pair<std::int32_t, std::uint32_t>> snapshots;
        for (const Tool::HeldSnapshot& each : reportOn(file).heldSnapshots)
            snapshots.emplace_back(each.readers, each.records);
        return snapshots;
    };
    EXPECT_EQ(reportOn(file).snapshotRefCount, 2) << "the killed reader never releases the current snapshot";
    addWorkers(2);
    workers[0]->send("write 3 1000");
    workers[1]->send("write 4 1000");
    EXPECT_EQ(workers[0]->receive(), "ok");
    EXPECT_EQ(workers[1]->receive(), "ok");
    finishWorkers();
    StressStates states;
    StressScript::addAfter(1, 100, states);
    const auto before = static_cast<std::uint32_t>(states.size());
    StressScript::addAfter(2, 100, states);
    const auto after = static_cast<std::uint32_t>(states.size());
    EXPECT_THAT(held(), testing::UnorderedElementsAre(std::pair(2, before), std::pair(1, after)));
    const Tool::CacheFileReport report = reportOn(file);
    EXPECT_THAT(report.findings, testing::IsEmpty());
    EXPECT_EQ(report.snapshotRefCount, 1);
}

/// True if the only damage is leaked blocks.
bool onlyLeaksBlocks(const Tool::Findings& findings) {
    return std::ranges::all_of(findings,
                               [](const Tool::Finding& each) { return each.kind == FindingKind::unreferenced; });
}

/// True if an interrupted change can cause this damage.
bool isFromInterruptedChange(const Tool::Finding& finding) {
    switch (finding.kind) {
    case FindingKind::freeListLink:
    case FindingKind::freeListOrder:
    case FindingKind::freeListUnmerged:
    case FindingKind::blockSize:
    case FindingKind::counter:
    case FindingKind::keyOrder:
    case FindingKind::recordKey:
    case FindingKind::recordPointer: // an entry was listed twice
    case FindingKind::recordRefCount:
    case FindingKind::unreferenced:
        return true;
    default:
        return false;
    }
}

TEST_P(CacheKillTest, WritersKilledAtAnyPointLeaveAReadableFile) {
    constexpr int rounds = 50;
    // Enough environments that moving array entries takes most of the time.
    ASSERT_EQ(addWorker().ask("fill 800"), "ok");
    finishWorkers();
    const std::string filled = file.read();
    std::mt19937 random(7);
    int damaged = 0;
    for (int round = 0; round < rounds; ++round) {
        const TempFile own;
        own.write(filled);
        const std::string& program = GetParam().programs[static_cast<std::size_t>(round) % GetParam().programs.size()];
        {
            WorkerProcess writer(program, own.path());
            ASSERT_EQ(writer.ask(command("churn", 1 + round % 5)), "ok");
            for (unsigned looks = below(random, 8); looks > 0; --looks)
                waitRandomly(random);
            writer.kill();
            ASSERT_EQ(writer.finish(), -SIGKILL);
        }
        const Tool::CacheFileReport report = reportOn(own);
        for (const Tool::Finding& finding : report.findings)
            EXPECT_TRUE(isFromInterruptedChange(finding)) << testing::PrintToString(finding);
        // Regardless of what was interrupted, the lock is free and all listed records are intact.
        WorkerProcess reader(nativeWorker, own.path());
        EXPECT_EQ(reader.ask("look"), "ok " + std::to_string(report.records)) << "round " << round;
        EXPECT_EQ(reader.finish(), 0);
        if (!onlyLeaksBlocks(report.findings)) {
            ++damaged;
            continue;
        }
        WorkerProcess survivor(nativeWorker, own.path());
        EXPECT_EQ(survivor.ask("read 1"), "ok");
        EXPECT_EQ(survivor.ask("write 9 50"), "ok");
        EXPECT_EQ(survivor.finish(), 0);
        EXPECT_TRUE(onlyLeaksBlocks(reportOn(own).findings));
    }
    RecordProperty("damaged", damaged);
}

TEST_P(CacheKillTest, ProcessKilledWhileAttachingLeavesFileThatIsUsableOrRejected) {
    std::mt19937 random(8);
    for (int round = 0; round < 40; ++round) {
        const TempFile own;
        {
            WorkerProcess starter(GetParam().programs.back(), own.path());
            starter.send("hold list");
            for (unsigned turns = below(random, 12); turns > 0; --turns)
                waitRandomly(random);
            starter.kill();
            starter.finish();
        }
        WorkerProcess survivor(nativeWorker, own.path());
        const std::string answer = survivor.ask("write 1 50");
        // If the process was killed while formatting, the file is unusable and is rejected until it is removed.
        const bool isUnusable = own.size() >= 56 && own.word(8) != 0 && own.word(52) == 0;
        EXPECT_EQ(answer, isUnusable ? "no cache" : "ok") << "round " << round;
        EXPECT_EQ(survivor.finish(), 0);
    }
}

} // namespace
} // namespace Qel::TestSupport
