#pragma once

#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "StressEnv.h"
#include "WorkerProcess.h"
#include "qel/cachefile/CacheFileChecker.h"
#include "support/TempFile.h"

namespace Qel::Tool {

inline void PrintTo(const Finding& finding, std::ostream* out) {
    *out << nameOf(finding.kind) << " at " << finding.offset << ": " << finding.text;
}

} // namespace Qel::Tool

namespace Qel::TestSupport {

/// The worker program of this build.
inline const std::string nativeWorker = QEL_CACHE_WORKER;
/// The worker program of a build for another architecture; empty if there is none.
inline const std::string foreignWorker = QEL_FOREIGN_WORKER;

/// The worker programs of a test, all on the same file.
struct Crew {
    std::string name;
    std::vector<std::string> programs;

    friend void PrintTo(const Crew& crew, std::ostream* out) { *out << crew.name; }
};

[[nodiscard]] inline std::vector<Crew> crews() {
    std::vector<Crew> crews{{"OneArchitecture", {nativeWorker}}};
    if (!foreignWorker.empty())
        crews.push_back({"TwoArchitectures", {nativeWorker, foreignWorker}});
    return crews;
}

[[nodiscard]] inline Tool::CacheFileReport reportOn(const TempFile& file) {
    const std::string bytes = file.read();
    return Tool::checkCacheFile(std::as_bytes(std::span(bytes)));
}

/// Expects an undamaged file without held snapshots.
inline void expectLeftClean(const TempFile& file) {
    const Tool::CacheFileReport report = reportOn(file);
    EXPECT_THAT(report.findings, testing::IsEmpty());
    EXPECT_THAT(report.heldSnapshots, testing::IsEmpty());
    EXPECT_EQ(report.snapshotRefCount, 1);
}

/// A cache file and worker processes that use it.
class ProcessTest : public testing::TestWithParam<Crew> {
protected:
    /// Workers are assigned to the programs of the crew round-robin.
    WorkerProcess& addWorker() {
        const std::vector<std::string>& programs = GetParam().programs;
        workers.push_back(std::make_unique<WorkerProcess>(programs[workers.size() % programs.size()], file.path()));
        return *workers.back();
    }

    void addWorkers(unsigned count) {
        for (unsigned i = 0; i < count; ++i)
            addWorker();
    }

    void finishWorkers() {
        for (const auto& worker : workers)
            EXPECT_EQ(worker->finish(), 0);
        workers.clear();
    }

    /// The states that a new process sees.
    [[nodiscard]] std::string seenByNewProcess() const {
        WorkerProcess process(nativeWorker, file.path());
        process.ask("hold last");
        std::string seen = process.ask("see last");
        process.finish();
        return seen;
    }

    const TempFile file;
    std::vector<std::unique_ptr<WorkerProcess>> workers;
};

[[nodiscard]] inline std::string nameOfCrew(const testing::TestParamInfo<Crew>& info) {
    return info.param.name;
}

/// Formats a command with its arguments.
template <class... Arguments>
[[nodiscard]] std::string command(const std::string& verb, const Arguments&... arguments) {
    std::string text = verb;
    ((text += ' ' + std::to_string(arguments)), ...);
    return text;
}

} // namespace Qel::TestSupport
