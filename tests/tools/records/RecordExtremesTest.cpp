#include <gmock/gmock.h>

#include "QelFunctionalityCore/QelRecordTypes.h"
#include "QelFunctionalityCore/RandomFamilies.h"
#include "support/LogCapture.h"
#include "support/RandomRecord.h"
#include "support/TestMessage.h"
#include "tools/ToolRun.h"

// Random records with some values replaced by extreme ones.  A reader that aborts the process on such a value also
// aborts this program.

namespace {

using namespace Qel;
using namespace Qel::TestSupport;
using Qel::Tool::ExitCode;

std::vector<std::string> makeExtremes() {
    std::vector<std::string> values{"",
                                    " ",
                                    "0",
                                    "-1",
                                    "2147483647",
                                    "-2147483648",
                                    "4294967295",
                                    "9223372036854775807",
                                    "-9223372036854775808",
                                    "99999999999999999999",
                                    "1e308",
                                    "-inf",
                                    "nan",
                                    "0.0.0.0",
                                    "255.255.255.255",
                                    "0.0.0.0/0",
                                    "::",
                                    "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff",
                                    "00000000-0000-0000-0000-000000000000",
                                    "ffffffff-ffff-ffff-ffff-ffffffffffff",
                                    "1901-12-13T20:45:52Z",
                                    "9999-12-31T23:59:59Z",
                                    "S-1-4294967295-4294967295",
                                    "%%",
                                    "\xFF\x01",
                                    std::string(1, '\0'),
                                    "AAAA"};
    for (const std::size_t length : {15U, 16U, 255U, 256U, 65536U})
        values.emplace_back(length, 'x');
    return values;
}

/// Replaces the values of some descendants of the element under the cursor.
void exaggerate(RandomRecord& random, QelMessageIterator& cursor) {
    static const std::vector<std::string> extremes = makeExtremes();
    if (cursor.firstChild() == 0) {
        do
            exaggerate(random, cursor);
        while (cursor.nextSibling() == 0);
        cursor.seekUp();
    } else if (random.below(3) == 0) {
        cursor.putValue(extremes[random.below(extremes.size())], 0);
    }
}

/// A message with a random record of the given type and extreme values.
std::string makeExtremeRecord(RandomRecord& random, const QelRecordType& type) {
    constexpr int element = 1115;
    const TestMessage message;
    message->setTime(1'795'167'000);
    if (!type.isWholeMessage)
        message.cursor().newChild(element);
    random.fill(message.cursor(), type.name, type.layout);
    exaggerate(random, message.cursor());
    return taken(message->toTextEx(0, "", 0));
}

TEST(RecordExtremesTest, EachRecordTypeIsRewrittenOrRejected) {
    constexpr int runs = 100;
    const LogCapture log(LogLevel::error);
    RandomRecord random{20261122, families()};
    std::map<ExitCode, int> counts;
    for (const QelRecordType& type : recordTypes()) {
        for (int run = 0; run < runs; ++run) {
            const std::string message = makeExtremeRecord(random, type);
            const ExitCode code = runTool({"record", "rewrite", std::string(type.name), "-"}, message).code;
            EXPECT_TRUE(code == ExitCode::success || code == ExitCode::badInput) << type.name << message;
            ++counts[code];
        }
    }
    EXPECT_GT(counts[ExitCode::success], 0);
    EXPECT_GT(counts[ExitCode::badInput], 0);
}

} // namespace
