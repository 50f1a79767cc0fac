#include "qel/cli/SignalGuard.h"

#include <cstdio>

#include <gtest/gtest.h>

#include "support/DefaultSignals.h"

namespace {

using Qel::Tool::EndsWhenInterrupted;
using Qel::Tool::NotesInterruption;
using Qel::Tool::SignalGuard;

/// Whatever the parent of the tests ignores.
class SignalTest : public testing::Test {
    Qel::TestSupport::DefaultSignals m_signals;
};
using SignalGuardTest = SignalTest;
using SignalGuardDeathTest = SignalTest;
using EndsWhenInterruptedDeathTest = SignalTest;
using NotesInterruptionTest = SignalTest;
using NotesInterruptionDeathTest = SignalTest;

TEST_F(SignalGuardDeathTest, ASignalTakesEffectWhenTheGuardEnds) {
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

TEST_F(SignalGuardTest, ASignalThatIsWaitedForIsTaken) {
    const SignalGuard guard;
    std::raise(SIGTERM);
    EXPECT_TRUE(guard.waitFor(std::chrono::hours(1)));
    EXPECT_FALSE(guard.waitFor(std::chrono::nanoseconds(1)));
}

TEST_F(EndsWhenInterruptedDeathTest, AnInterruptionIsASuccessfulEnd) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        EXPECT_EXIT(
            {
                const EndsWhenInterrupted ending;
                std::raise(signal);
            },
            testing::ExitedWithCode(0), "");
    }
}

TEST_F(EndsWhenInterruptedDeathTest, AfterwardsSignalsAreWhatTheyWere) {
    EXPECT_EXIT(
        {
            { const EndsWhenInterrupted ending; }
            std::raise(SIGTERM);
        },
        testing::KilledBySignal(SIGTERM), "");
}

TEST_F(NotesInterruptionTest, AnInterruptionIsNotedAndForgottenByTheNext) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const NotesInterruption notes;
        EXPECT_FALSE(NotesInterruption::isInterrupted());
        std::raise(signal);
        EXPECT_TRUE(NotesInterruption::isInterrupted());
    }
}

TEST_F(NotesInterruptionDeathTest, ASecondInterruptionEndsTheProcess) {
    EXPECT_EXIT(
        {
            const NotesInterruption notes;
            std::raise(SIGINT);
            std::raise(SIGINT);
        },
        testing::KilledBySignal(SIGINT), "");
}

} // namespace
