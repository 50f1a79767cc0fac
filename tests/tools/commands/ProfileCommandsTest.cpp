#include <gmock/gmock.h>

#include "tools/ToolRun.h"

namespace {

using Qel::Tool::ExitCode;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

const std::string group = QEL_EXAMPLES "/profiles/group.xml";
const std::string user = QEL_EXAMPLES "/profiles/user.xml";

class ProfileCommandsTest : public ToolTest {
protected:
    static ToolRun profile(const std::string& command, const std::string& a, const std::string& b,
                           const std::vector<std::string>& options = {}) {
        std::vector<std::string> arguments{"profile", command, a, b};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return runTool(arguments);
    }
    static std::string outputOf(const std::string& command, const std::string& a, const std::string& b,
                                const std::vector<std::string>& options = {}) {
        const ToolRun run = profile(command, a, b, options);
        EXPECT_EQ(run.code, ExitCode::success) << run.err;
        return run.out;
    }
    [[nodiscard]] std::string message(const std::string& name, const std::string& content) const {
        return write(name, "<message>" + content + "</message>");
    }
    /// Writes a message with the given section elements, which are empty as in a filter.
    [[nodiscard]] std::string filter(const std::string& content) const {
        return message("filter", "<data>" + content + "</data>");
    }
};

TEST_F(ProfileCommandsTest, SecondProfileOfMergeTakesPrecedence) {
    const std::string out = outputOf("merge", group, user);
    EXPECT_THAT(out, AllOf(HasSubstr("<sid>AQEAAAAAA+jpAwAA</sid>"), HasSubstr("Ann Example"), HasSubstr("en_US"),
                           HasSubstr("two columns"), HasSubstr(">events<"), HasSubstr(">overview<"),
                           HasSubstr(">my servers<")));
    EXPECT_THAT(out, HasSubstr("<browse_value_2210>25</browse_value_2210>")) << "the container list of the user";
    EXPECT_THAT(out, Not(HasSubstr("<browse_value_2210>50</browse_value_2210>"))) << "the container list of the group";
    EXPECT_THAT(out, Not(HasSubstr("auth_name"))) << "a SID replaces the name";
}

TEST_F(ProfileCommandsTest, GroupTakesPrecedenceInReverseMerge) {
    const std::string out = outputOf("merge", user, group);
    EXPECT_THAT(out, HasSubstr("<browse_value_2210>50</browse_value_2210>"));
    EXPECT_THAT(out, HasSubstr("Ann Example"));
}

TEST_F(ProfileCommandsTest, MergeWithEmptyProfileChangesNothing) {
    const std::string nothing = message("nothing", "<data/>");
    EXPECT_EQ(outputOf("merge", group, nothing), runTool({"record", "rewrite", "QelProfile", group}).out);
}

TEST_F(ProfileCommandsTest, DifferencePrintsPartsOnlyInFirst) {
    const std::string out = outputOf("difference", group, user);
    EXPECT_THAT(out, AllOf(HasSubstr("<interface_settings>"), HasSubstr("<desktop_settings>")));
    EXPECT_THAT(
        out, AllOf(Not(HasSubstr("<browse_settings>")), Not(HasSubstr("<screen_settings>")), Not(HasSubstr("<sid>"))));
}

TEST_F(ProfileCommandsTest, IntersectionNarrowsBrowseListsByName) {
    const std::string out = outputOf("intersection", group, user);
    EXPECT_THAT(out, AllOf(HasSubstr(">containers<"), Not(HasSubstr(">events<")), Not(HasSubstr("en_US"))));
    EXPECT_THAT(out, HasSubstr("<browse_value_2210>50</browse_value_2210>")) << "the value from the first profile";
    EXPECT_THAT(out, Not(HasSubstr("<screen_settings>"))) << "not searched after the lists";
}

TEST_F(ProfileCommandsTest, IntersectionBySectionsKeepsWholeSections) {
    const std::string out = outputOf("intersection", group, user, {"--sections"});
    EXPECT_THAT(out, AllOf(HasSubstr(">containers<"), HasSubstr(">events<"), HasSubstr(">overview<"),
                           Not(HasSubstr("en_US")), Not(HasSubstr("Ann Example"))));
}

TEST_F(ProfileCommandsTest, SectionFilterNeedsNoContent) {
    const std::string empty = filter("<interface_settings/><screen_settings/>");
    const ToolRun run = profile("intersection", group, empty);
    EXPECT_EQ(run.code, ExitCode::badInput) << "incomplete as a profile";
    EXPECT_THAT(run.err, HasSubstr("/data/interface_settings: cannot read QelInterfaceSettings: element "
                                   "interface_option_2197 (option2197) is missing"));
    const std::string out = outputOf("intersection", group, empty, {"--sections"});
    EXPECT_THAT(out, AllOf(HasSubstr("en_US"), HasSubstr(">overview<"), Not(HasSubstr("<browse_settings>"))));
}

TEST_F(ProfileCommandsTest, FilterWithoutSectionsKeepsWholeProfile) {
    const std::string whole = runTool({"record", "rewrite", "QelProfile", group}).out;
    for (const char* const command : {"difference", "intersection"}) {
        EXPECT_EQ(outputOf(command, group, filter("<sid>AQEAAAAAA+jpAwAA</sid>")), whole);
        EXPECT_EQ(outputOf(command, group, filter(""), {"--sections"}), whole);
    }
}

TEST_F(ProfileCommandsTest, KeepsElementName) {
    const std::string a = message("a", "<my_profile><browse_settings/></my_profile>");
    EXPECT_THAT(outputOf("merge", a, user), HasSubstr("<my_profile>"));
}

TEST_F(ProfileCommandsTest, NonProfileIsBadInput) {
    const std::string empty = message("empty", "");
    const std::string nameless = filter("<browse_settings/><browse_info/>");
    const std::string badSid = message("sid", "<data><sid>no sid</sid></data>");
    const auto expectBad = [](const ToolRun& run, const std::string& error) {
        EXPECT_EQ(run.code, ExitCode::badInput);
        EXPECT_EQ(run.err, "qel: " + error + "\n");
        EXPECT_EQ(run.out, "");
    };
    expectBad(profile("merge", group, empty), empty + ": contains no profile");
    expectBad(profile("difference", empty, user), empty + ": contains no profile");
    expectBad(profile("intersection", group, nameless, {"--sections"}),
              nameless + ": cannot read browse_info: element browse_name is missing");
    expectBad(profile("difference", group, badSid, {"--sections"}),
              badSid + ": cannot read a filter: element sid is malformed");
    expectBad(profile("merge", badSid, user),
              badSid + ": /data: cannot read QelProfile: element sid (sid) is malformed");
    EXPECT_EQ(profile("merge", group, path("none")).code, ExitCode::badInput);
}

TEST_F(ProfileCommandsTest, UnnamedListFailsIntersection) {
    const std::string a = message("a", "<data><browse_settings><browse_info><browse_name/></browse_info>"
                                       "</browse_settings></data>");
    const ToolRun run = profile("intersection", a, user);
    EXPECT_EQ(run.code, ExitCode::badInput);
    EXPECT_EQ(run.err, "qel: " + a + ": cannot read browse_info: its name is empty\n");
}

} // namespace
