#include <gmock/gmock.h>

#include "support/LogCapture.h"
#include "tools/SampleEnvs.h"
#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using testing::HasSubstr;

std::string example(const std::string& name) {
    return QEL_EXAMPLES "/events/" + name + ".xml";
}

const std::string database = "7a0e4c11-52d8-4f0b-8e6a-1b9c3d5e7f11";

class EventCommandsTest : public ToolTest {
protected:
    static std::string output(const std::vector<std::string>& arguments) {
        const ToolRun run = runTool(arguments);
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        EXPECT_EQ(run.err, "");
        return run.out;
    }
    static std::string show(const std::string& name, const std::vector<std::string>& options = {}) {
        std::vector<std::string> arguments{"event", "show", example(name)};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return output(arguments);
    }
    static std::string render(const std::string& path) {
        return output({"info", "render", example("info"), "--path", path});
    }
    static void expectBadInput(const std::string& file, const std::string& error) {
        for (const auto& command : {std::pair("event", "show"), std::pair("info", "render")}) {
            const ToolRun run = runTool({command.first, command.second, file});
            EXPECT_EQ(run.code, ExitCode::badInput);
            EXPECT_EQ(run.out, "");
            EXPECT_THAT(run.err, HasSubstr(error));
        }
    }
};

TEST_F(EventCommandsTest, ShowPrintsAllEventFields) {
    EXPECT_EQ(show("started"), "event          c0ffee00-0000-4000-8000-000000000001\n"
                               "time           2026-11-20T09:30:00Z\n"
                               "environment    7a0e4c11-52d8-4f0b-8e6a-1b9c3d5e7f11\n"
                               "source         agent\n"
                               "category       environment\n"
                               "severity       1\n"
                               "SID            S-1-5-18\n"
                               "subscriptions  events_subscription\n"
                               "text           database was started by operator on 8 processors\n");
}

TEST_F(EventCommandsTest, ShowRendersPayload) {
    EXPECT_THAT(show("resource-alert"),
                HasSubstr("text           The disk /dev/vda of database is nearly full\n"
                          "payload        alert:resource_alert\n"
                          "payload text   Resource disk_used red alert on environment " +
                          database +
                          " current value: 203273528320 soft limit: 193273528320 hard limit: 214748364800\n"));
    EXPECT_THAT(show("server-group-alert"),
                HasSubstr("payload text   Marisko group problem with " + database +
                          ". Subsystem: link failed, reason no answer for 30 seconds [code -7].\n"));
    EXPECT_THAT(show("carried"), HasSubstr("text           A plug-in has something to tell: x,y\n" // language: allow
                                           "payload        env:any_event_data\n"
                                           "payload text\n"));
}

TEST_F(EventCommandsTest, ShowReadsTitlesFromCache) {
    const std::string cache = path("environments.cache");
    ASSERT_EQ(runTool({"env", "put", cache, QEL_EXAMPLES "/messages/virtual-machines.xml"}).code, ExitCode::success);
    EXPECT_THAT(show("resource-alert", {"--cache", cache}), HasSubstr("red alert on environment database current"));
    EXPECT_THAT(show("resource-alert"), HasSubstr("red alert on environment " + database)) << "without --cache";

    const ToolRun run = runTool({"event", "show", example("started"), "--cache", path("none")});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_FALSE(std::filesystem::exists(path("none")));
}

TEST_F(EventCommandsTest, ShowWithoutCacheLogsNothing) {
    const Qel::TestSupport::LogCapture log;
    EXPECT_THAT(show("resource-alert"), HasSubstr("red alert on environment " + database));
    EXPECT_THAT(log.messages(), testing::IsEmpty());
    EXPECT_EQ(Qel::debug_level, Qel::TestSupport::LogCapture::allLevels) << "the level is restored";
}

TEST_F(EventCommandsTest, ShowPrintsJson) {
    EXPECT_EQ(
        show("server-group-alert", {"--json"}),
        "{\n"
        "  \"id\": \"c0ffee00-0000-4000-8000-000000000003\",\n"
        "  \"time\": \"2026-11-20T09:30:00Z\",\n"
        "  \"environment\": \"7a0e4c11-52d8-4f0b-8e6a-1b9c3d5e7f11\",\n"
        "  \"source\": \"agent\",\n"
        "  \"category\": \"alert\",\n"
        "  \"severity\": 4,\n"
        "  \"sid\": \"S-1-5-18\",\n"
        "  \"subscriptions\": [\n"
        "    \"events_subscription\",\n"
        "    \"alerts_subscription\",\n"
        "    \"server_group_alerts_subscription\"\n"
        "  ],\n"
        "  \"text\": \"A server of the group can't be reached\",\n"
        "  \"payload\": {\n"
        "    \"type\": \"alert:server_group_alert\",\n"
        "    \"known\": true,\n"
        "    \"text\": \"Marisko group problem with 7a0e4c11-52d8-4f0b-8e6a-1b9c3d5e7f11. Subsystem: link failed, "
        "reason no answer for 30 seconds [code -7].\"\n"
        "  }\n"
        "}\n");
    EXPECT_THAT(show("started", {"--json"}), HasSubstr("\"payload\": null\n"));
}

TEST_F(EventCommandsTest, ShowReportsUnreadablePayload) {
    std::string text = read(example("server-group-alert"));
    const std::string type = "<type>3</type>";
    text.replace(text.find(type), type.size(), "<type>4</type>");
    const std::string file = write("damaged", text);
    EXPECT_THAT(output({"event", "show", file}), HasSubstr("payload        alert:server_group_alert (unreadable)\n"));
    EXPECT_THAT(output({"event", "show", file, "--json"}), HasSubstr("\"known\": false"));
}

TEST_F(EventCommandsTest, ShowReadsFloatingPointAlertWithVocabulary) {
    std::string text = read(example("resource-alert"));
    const std::pair<std::string, std::string> changes[] = {
        {"disk_used", "cpu_load"}, {"203273528320", "0.75"}, {"193273528320", "0.5"}, {"214748364800", "1"}};
    for (const auto& [from, to] : changes)
        text.replace(text.find(from), from.size(), to);
    const std::string file = write("doubles", text);
    const std::string vocabularies = QEL_EXAMPLES "/vocabularies/several.xml";
    EXPECT_THAT(output({"event", "show", file, "--voc", vocabularies}),
                HasSubstr("payload        alert:resource_alert\n"
                          "payload text   Resource cpu_load red alert on environment " +
                          database + " current value: 0.75 soft limit: 0.5 hard limit: 1\n"));
    EXPECT_THAT(output({"event", "show", file}), HasSubstr("payload        alert:resource_alert (unreadable)\n"));

    const std::string soft = "<soft_limit>0.5</soft_limit>";
    text.replace(text.find(soft), soft.size(), "");
    EXPECT_THAT(output({"event", "show", write("no-soft-limit", text), "--voc", vocabularies}),
                HasSubstr("current value: 0.75 soft limit:  hard limit: 1\n"));
}

TEST_F(EventCommandsTest, VocabularyOnlyAffectsFloatingPointAlerts) {
    const std::string vocabularies = QEL_EXAMPLES "/vocabularies/several.xml";
    for (const char* const name : {"started", "resource-alert", "server-group-alert", "carried"})
        EXPECT_EQ(show(name, {"--voc", vocabularies}), show(name)) << name;

    const ToolRun run = runTool({"event", "show", example("resource-alert"), "--voc", path("none")});
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.out, "");
}

TEST_F(EventCommandsTest, RenderPrintsOnlyTheText) {
    EXPECT_EQ(output({"info", "render", example("info")}), "Copying /srv/images/debian-12.img: 40% of 12 GiB done\n");
}

TEST_F(EventCommandsTest, RenderPrintsParameter) {
    EXPECT_EQ(render("/file/name"), "debian-12.img\n");
    EXPECT_EQ(render("env/title"), "database\n");
    EXPECT_EQ(render("size"), "12 GiB\n");
    EXPECT_EQ(render("///"), output({"info", "render", example("info")}));
    EXPECT_EQ(render("size/"), "12 GiB\n");
}

TEST_F(EventCommandsTest, RenderReportsMissingParameter) {
    for (const char* const missing : {"none", "file/none", "none/name", "/size/none"}) {
        const ToolRun run = runTool({"info", "render", example("info"), "--path", missing});
        EXPECT_EQ(run.code, ExitCode::negative);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "qel: " + example("info") + ": no parameter at '" + missing + "'\n");
    }
}

TEST_F(EventCommandsTest, RenderAcceptsEmptyParameter) {
    const std::string file = write("empty", std::string("<message><info><text/><name/><parameter><text/><name>x</name>"
                                                        "</parameter></info></message>"));
    EXPECT_EQ(output({"info", "render", file, "--path", "x"}), "\n");
}

TEST_F(EventCommandsTest, RenderEscapesControlCharactersExceptNewlines) {
    // "one\n\ttwo\x1B[2J"
    const std::string file =
        write("controls", std::string("<message><info><text>b25lCgl0d28bWzJK</text><name/></info></message>"));
    EXPECT_EQ(output({"info", "render", file}), "one\n\ttwo\\x1b[2J\n");
}

TEST_F(EventCommandsTest, RenderReadsStandardInput) {
    const ToolRun run = runTool({"info", "render", "-"}, read(example("info")));
    EXPECT_EQ(run.code, ExitCode::success);
    EXPECT_EQ(run.out, output({"info", "render", example("info")}));
}

TEST_F(EventCommandsTest, MessageWithoutRecordIsBadInput) {
    expectBadInput(path("none"), "none");
    expectBadInput(write("empty", std::string("<message/>")), "empty message");
    expectBadInput(write("other", std::string("<message><data/></message>")), "/data: cannot read Qel");
}

TEST_F(EventCommandsTest, RenderLimitsTextSize) {
    // Exponential growth: each nested parameter refers twice to the next one ("%x%%x%"), followed by a long placeholder
    // that renders as an empty string.
    std::string twice = "JXglJXglJXFx";
    for (int i = 0; i < 2000; ++i)
        twice += "cXFx";
    twice += "cXEl";
    std::string text = "<message><info><text>" + twice + "</text><name/>";
    constexpr int deep = 100;
    for (int level = 0; level < deep; ++level)
        text += "<parameter><text>" + twice + "</text><name>x</name>";
    for (int level = 0; level < deep; ++level)
        text += "</parameter>";
    const ToolRun run = runTool({"info", "render", write("bomb", text + "</info></message>")});
    EXPECT_EQ(run.code, ExitCode::failed);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, HasSubstr("takes more than 67108864 characters; its text is truncated"));
}

TEST_F(EventCommandsTest, RewriteReproducesExamples) {
    const std::pair<const char*, const char*> records[] = {
        {"started", "QelEvent"}, {"resource-alert", "QelEvent"},
        {"carried", "QelEvent"}, {"server-group-alert", "QelEvent"},
        {"info", "QelInfo"},     {"request-progress", "QelRequestProgressData"},
    };
    for (const auto& [name, record] : records) {
        const std::string once = output({"record", "rewrite", record, example(name)});
        EXPECT_EQ(output({"record", "rewrite", record, write("once", once)}), once) << name;
    }
}

TEST_F(EventCommandsTest, ProgressReadsOmittedFieldsFromMessage) {
    const std::string out = output({"record", "rewrite", "QelRequestProgressData", example("request-progress")});
    EXPECT_THAT(out, HasSubstr(">change-7/move-1</id>"));
    EXPECT_THAT(out, HasSubstr(">change-7</parent_id>"));
    EXPECT_THAT(out, HasSubstr(">console-17</session>"));
}

} // namespace
