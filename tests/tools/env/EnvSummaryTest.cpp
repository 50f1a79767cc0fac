#include "qel/env/EnvSummary.h"

#include <sstream>

#include <gmock/gmock.h>

#include "tools/SampleEnvs.h"

namespace {

using namespace Qel;
using namespace Qel::Tool;

EnvSummary summary(unsigned eid, unsigned parent) {
    EnvSummary made;
    EXPECT_EQ(made.eid.fromString(SampleEnvs::eid(eid).c_str()), 0);
    EXPECT_EQ(made.parent.fromString(SampleEnvs::eid(parent).c_str()), 0);
    made.title = "t" + std::to_string(eid);
    return made;
}

/// The title column of the tree.
std::vector<std::string> treeOf(const std::vector<EnvSummary>& all) {
    std::stringstream out;
    printAsTree(out, all);
    std::vector<std::string> titles;
    std::string line;
    std::getline(out, line);
    while (std::getline(out, line))
        titles.push_back(line.substr(0, line.find("  0")));
    for (std::string& title : titles)
        title.erase(title.find_last_not_of(' ') + 1);
    return titles;
}

using testing::ElementsAre;

TEST(EnvTreeTest, EnvironmentWithoutParentIsRoot) {
    EXPECT_THAT(treeOf({summary(1, 9), summary(2, 1), summary(3, 8)}), ElementsAre("t1", "└─ t2", "t3"));
}

TEST(EnvTreeTest, BranchesContinueAfterNestedBranches) {
    EXPECT_THAT(treeOf({summary(1, 9), summary(2, 1), summary(3, 2), summary(4, 1), summary(5, 4)}),
                ElementsAre("t1", "├─ t2", "│  └─ t3", "└─ t4", "   └─ t5"));
}

TEST(EnvTreeTest, CycleOfParentsIsDrawnOnce) {
    EXPECT_THAT(treeOf({summary(1, 3), summary(2, 1), summary(3, 2)}), ElementsAre("t1", "└─ t2", "   └─ t3"));
}

TEST(EnvTreeTest, DescendantsOfCycleAreDrawnBelowIt) {
    EXPECT_THAT(treeOf({summary(1, 2), summary(2, 2)}), ElementsAre("t2", "├─ t1"));
}

TEST(EnvTreeTest, LongChainOfParentsIsDrawn) {
    std::vector<EnvSummary> all;
    for (unsigned i = 1; i <= 1000; ++i)
        all.push_back(summary(i, i - 1));
    EXPECT_EQ(treeOf(all).size(), 1000U);
}

TEST(EnvSummaryTest, UnspecifiedTypeIsNullInJson) {
    std::ostringstream out;
    Qel::Tool::printJson(out, toJson({summary(1, 2)}));
    EXPECT_THAT(out.str(), testing::HasSubstr("\"type\": null"));
}

} // namespace
