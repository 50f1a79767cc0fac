#include "qel/transfer/TransferProgress.h"

#include <sstream>

#include <gmock/gmock.h>

namespace {

using namespace std::chrono_literals;
using Qel::Tool::describeBytes;
using Qel::Tool::progressLine;
using Qel::Tool::TransferProgress;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr long long mebi = 1 << 20U;

TEST(DescribeBytesTest, UsesLargestSuitableUnit) {
    EXPECT_EQ(describeBytes(0), "0 B");
    EXPECT_EQ(describeBytes(1023), "1023 B");
    EXPECT_EQ(describeBytes(1024), "1.0 KiB");
    EXPECT_EQ(describeBytes(1536), "1.5 KiB");
    EXPECT_EQ(describeBytes(1024 * 1023.99), "1.0 MiB");
    EXPECT_EQ(describeBytes(9223372036854775807.0), "8.0 EiB");
}

TEST(ProgressLineTest, ShowsBytesRateAndRemainingTime) {
    EXPECT_EQ(progressLine(25 * mebi, 100 * mebi, 2s, 80),
              "[======                     ]  25%  25.0 MiB of 100.0 MiB  12.5 MiB/s  0:06 left");
    EXPECT_EQ(progressLine(25 * mebi, 100 * mebi, 2s, 200),
              "[==========                              ]  25%  25.0 MiB of 100.0 MiB  12.5 MiB/s  0:06 left");
}

TEST(ProgressLineTest, ShowsElapsedTimeWhenComplete) {
    EXPECT_EQ(progressLine(mebi, mebi, 3725s, 50), "100%  1.0 MiB of 1.0 MiB  281 B/s  1:02:05");
}

TEST(ProgressLineTest, ShowsNoRateAndNoTimeBeforeFirstBlock) {
    EXPECT_EQ(progressLine(0, 1024, 5s, 40), "[                 ]   0%  0 B of 1.0 KiB");
    EXPECT_EQ(progressLine(0, 1024, 0s, 20), "  0%  0 B of 1.0 KiB");
}

TEST(ProgressLineTest, EmptyFileIsComplete) {
    EXPECT_THAT(progressLine(0, 0, 0s, 20), HasSubstr("100%"));
}

TEST(ProgressLineTest, NeverExceedsTheWidth) {
    for (std::size_t width = 0; width < 120; ++width) {
        EXPECT_LE(progressLine(25 * mebi, 100 * mebi, 2s, width).size(), width);
        EXPECT_LE(progressLine(100 * mebi, 25 * mebi, 2s, width).size(), width);
    }
}

TEST(ProgressLineTest, ExceededTotalCountsAsComplete) {
    EXPECT_EQ(progressLine(100 * mebi, 3, 2s, 80), progressLine(100 * mebi, 100 * mebi, 2s, 80));
    EXPECT_EQ(progressLine(100 * mebi, 0, 2s, 80), progressLine(100 * mebi, 100 * mebi, 2s, 80));
}

TEST(ProgressLineTest, LimitsRemainingTime) {
    EXPECT_THAT(progressLine(1, 1LL << 60U, 1s, 80), HasSubstr("99:59:59 left"));
}

TEST(TransferProgressTest, LimitsRedrawsPerSecond) {
    std::ostringstream out;
    const auto start = TransferProgress::Clock::now();
    TransferProgress progress(out, 100, 80);
    progress.show(0, start + 1s);
    EXPECT_THAT(out.str(), HasSubstr("  0%"));
    out.str("");
    progress.show(1, start + 1050ms);
    EXPECT_EQ(out.str(), "");
    progress.show(2, start + 1101ms);
    EXPECT_THAT(out.str(), HasSubstr("  2%"));
    EXPECT_TRUE(out.str().starts_with('\r'));
    EXPECT_THAT(out.str(), EndsWith("\x1B[K"));
    EXPECT_THAT(out.str(), Not(HasSubstr("\n")));
}

TEST(TransferProgressTest, FinalStateRemains) {
    std::ostringstream out;
    {
        TransferProgress progress(out, 100, 80);
        progress.show(0);
        progress.show(100);
    }
    EXPECT_THAT(out.str(), HasSubstr("100%"));
    EXPECT_THAT(out.str(), EndsWith("\n"));
}

TEST(TransferProgressTest, CompleteSetsTheTotalToTheBytesCopied) {
    std::ostringstream out;
    {
        TransferProgress progress(out, 4096, 80);
        progress.show(0);
        progress.show(23);
        progress.complete();
    }
    EXPECT_THAT(out.str(), HasSubstr("100%  23 B of 23 B"));
}

} // namespace
