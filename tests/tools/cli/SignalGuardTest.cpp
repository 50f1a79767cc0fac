#include "qel/cli/SignalGuard.h"

#include <cstdio>

#include <gtest/gtest.h>

#include "support/DefaultSignals.h"

namespace {

using Qel::Tool::EndsWhenInterrupted;
using Qel::Tool::NotesInterruption;
using Qel::Tool::SignalGuard;

/// Resets the signal actions, since the parent process may ignore some signals.
class SignalTest : public testing::Test {
    Qel::TestSupport::DefaultSignals m_signals;
};
using SignalGuardTest = SignalTest;
using SignalGuardDeathTest = SignalTest;
using EndsWhenInterruptedDeathTest = SignalTest;
using NotesInterruptionTest = SignalTest;
using NotesInterruptionDeathTest = SignalTest;

TEST_F(SignalGuardDeathTest, DeliversPendingSignalOnDestruction) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        EXPECT_EXIT(
            {
                const SignalGuard guard;
                std::raise(signal);
                std::fputs("finished", stderr);
            },
            testing::KilledBySignal(signal), "finished");
    }
}

TEST_F(SignalGuardTest, WaitForConsumesSignal) {
    const SignalGuard guard;
    std::raise(SIGTERM);
    EXPECT_TRUE(guard.waitFor(std::chrono::hours(1)));
    EXPECT_FALSE(guard.waitFor(std::chrono::nanoseconds(1)));
}

TEST_F(EndsWhenInterruptedDeathTest, InterruptionExitsWithSuccess) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EXIT(
            {
                const EndsWhenInterrupted ending;
                std::raise(signal);
            },
            testing::ExitedWithCode(0), "");
    }
}

TEST_F(EndsWhenInterruptedDeathTest, DestructorRestoresSignalActions) {
    EXPECT_EXIT(
        {
            { const EndsWhenInterrupted ending; }
            std::raise(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}

TEST_F(NotesInterruptionTest, RecordsInterruptionAndNextInstanceResetsIt) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const NotesInterruption notes;
        EXPECT_FALSE(NotesInterruption::isInterrupted());
        std::raise(signal);
        EXPECT_TRUE(NotesInterruption::isInterrupted());
    }
}

TEST_F(NotesInterruptionDeathTest, SecondInterruptionTerminatesProcess) {
    EXPECT_EXIT(
        {
            const NotesInterruption notes;
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        testing::KilledBySignal(SIGINT), "");
}

} // namespace
