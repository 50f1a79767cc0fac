#include "QelFunctionalityCore/Host/QelProcessMExec.h"

#include <gmock/gmock.h>

#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

constexpr int streams = 1395;
constexpr int credentials = 1158;

const std::string bytes("\0a\xFF", 3);

TEST(QelProcessMExecTest, AlwaysWritesStreamsAndCredentials) {
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(QelProcessMExecParams(), 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(streams, credentials));
    ASSERT_EQ(message.cursor().seek(streams), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1054));
    message.cursor().seekUp();
    ASSERT_EQ(message.cursor().seek(credentials), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1176, 1393, 1394));
    message.cursor().seekUp();
    QelProcessMExecParams read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_FALSE(read.wantStdout);
}

TEST(QelProcessMExecTest, StreamsHaveTheirOwnFunctors) {
    QelProcessMExecParams params;
    params.args = {"ls"};
    params.stdinData = bytes;
    params.wantStderr = true;
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObject(params, QelProcessMExecParams::WriterStdio(), streams), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(streams));
    ASSERT_EQ(message.cursor().seek(streams), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1054, 1396));
    message.cursor().seekUp();
    QelProcessMExecParams read;
    read.args = {"kept"};
    read.wantStdout = true;
    EXPECT_EQ(message.cursor().getObject(read, QelProcessMExecParams::ReaderStdio(), streams), 0);
    EXPECT_EQ(read.stdinData, bytes);
    EXPECT_TRUE(read.wantStderr);
    EXPECT_FALSE(read.wantStdout);
    EXPECT_THAT(read.args, ElementsAre("kept"));
}

TEST(QelProcessMExecTest, ArgumentsAndStreamsRoundTripByteForByte) {
    QelProcessMExecParams params;
    params.args = {"ls", bytes};
    params.env = {"A=b"};
    params.stdinData = bytes;
    params.wantStdout = true;
    params.wantExtra = true;
    params.credentials.name = "root";
    params.credentials.secret = bytes;
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(params, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1390, 1390, 1391, streams, credentials));
    ASSERT_EQ(message.cursor().seek(streams), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1054, 1057, 2085));
    message.cursor().seekUp();
    QelProcessMExecParams read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_THAT(read.args, ElementsAre("ls", bytes));
    EXPECT_THAT(read.env, ElementsAre("A=b"));
    EXPECT_EQ(read.stdinData, bytes);
    EXPECT_TRUE(read.wantStdout);
    EXPECT_FALSE(read.wantStderr);
    EXPECT_TRUE(read.wantExtra);
    EXPECT_EQ(read.credentials.name, "root");
    EXPECT_EQ(read.credentials.secret, bytes);
}

TEST(QelProcessMExecTest, AllFieldsAreOptional) {
    const TestMessage message;
    QelProcessMExecParams read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
}

TEST(QelProcessMExecOutputTest, OutputWithNulBytesRoundTrips) {
    QelProcessMExecOutput output;
    output.code = 3;
    output.out = bytes;
    output.err = std::string("\0e\0", 3);
    const TestMessage message;
    EXPECT_EQ(message.cursor().putObj(output, 0), 0);
    EXPECT_THAT(childIDs(message.cursor()), ElementsAre(1192, 1057, 1396));
    EXPECT_EQ(childValue(message.cursor(), 1057), "AGH/");
    EXPECT_EQ(childValue(message.cursor(), 1396), "AGUA");
    QelProcessMExecOutput read;
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.code, 3);
    EXPECT_EQ(read.out, bytes);
    EXPECT_EQ(read.err, output.err);
}

TEST(QelProcessMExecOutputTest, UnreadableOutputKeepsPreviousValue) {
    const TestMessage message;
    message.cursor().putValue(3, 1192);
    message.cursor().putValue("?", 1057);
    message.cursor().putValue("?", 1396);
    QelProcessMExecOutput read;
    read.out = "kept";
    read.err = "kept too";
    EXPECT_EQ(message.cursor().getObj(read, 0), 0);
    EXPECT_EQ(read.code, 3);
    EXPECT_EQ(read.out, "kept");
    EXPECT_EQ(read.err, "kept too");
}

TEST(QelProcessMExecOutputTest, RequiresExitCode) {
    const TestMessage message;
    message.cursor().putValueBase64("out", 1057);
    QelProcessMExecOutput read;
    EXPECT_EQ(message.cursor().getObj(read, 0), -1);
}

} // namespace
} // namespace Qel
