#include "QelFunctionalityCore/Files/QelFileFilter.h"

#include <gmock/gmock.h>

#include "FilesTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using Filter = QelFileFilter;

constexpr int userName = 1025, uid = 1030, userFrom = 1142, userTo = 1143;
constexpr int groupName = 1029, gid = 1027, groupFrom = 1144, groupTo = 1145;

Filter everyOwnerForm() {
    Filter filter;
    filter.userRange = {100, 200};
    filter.userName = "anna";
    filter.uid = 7;
    filter.groupRange = {300, 400};
    filter.groupName = "wheel";
    filter.gid = 8;
    return filter;
}

std::vector<int> written(const Filter& filter) {
    const TestTree tree;
    writeTo(tree, filter);
    return childIDs(*tree);
}

TEST(QelFileFilterTest, EmptyMaskWritesNothing) {
    Filter filter = everyOwnerForm();
    filter.name = "x";
    filter.sizeFrom = 5;
    EXPECT_TRUE(written(filter).empty());
}

TEST(QelFileFilterTest, CriteriaAreWrittenInOrder) {
    Filter filter = everyOwnerForm();
    filter.setValid(~0U);
    EXPECT_THAT(written(filter),
                ElementsAre(1026, 1007, 1150, 1146, 1147, 1148, 1149, userFrom, userTo, groupFrom, groupTo));
}

TEST(QelFileFilterTest, EachBitSelectsItsCriterion) {
    const std::pair<unsigned, int> criteria[] = {
        {2048, 1026}, {1, 1007},     {4096, 1150}, {128, 1146},     {256, 1147}, {1024, 1148},
        {512, 1149},  {2, userName}, {4, uid},     {16, groupName}, {32, gid},
    };
    for (const auto& [bit, element] : criteria) {
        Filter filter = everyOwnerForm();
        filter.name = "n*";
        filter.path = "/srv";
        filter.setValid(bit);
        EXPECT_TRUE(filter.isValid(bit));
        EXPECT_FALSE(filter.isValid(~bit));
        const TestTree tree;
        writeTo(tree, filter);
        EXPECT_THAT(childIDs(*tree), ElementsAre(element));
        EXPECT_EQ(readFrom<Filter>(tree).validMask, bit);
    }
}

TEST(QelFileFilterTest, NameAndPathMayContainAnyBytes) {
    Filter filter;
    filter.name = std::string("\xFF\0*", 3);
    filter.path = "/a b";
    filter.setValid(Filter::validName | Filter::validPath);
    const TestTree tree;
    writeTo(tree, filter);
    EXPECT_EQ(childValue(*tree, 1150), "L2EgYg==");
    const Filter read = readFrom<Filter>(tree);
    EXPECT_EQ(read.name, filter.name);
    EXPECT_EQ(read.path, filter.path);
}

TEST(QelFileFilterTest, RangeIsPreferredToNameWhenWriting) {
    Filter filter = everyOwnerForm();
    filter.setValid(Filter::validUserName | Filter::validUserRange);
    const TestTree tree;
    writeTo(tree, filter);
    EXPECT_THAT(childIDs(*tree), ElementsAre(userFrom, userTo));
    const Filter read = readFrom<Filter>(tree);
    EXPECT_EQ(read.validMask, 8U);
    EXPECT_EQ(read.userRange.from, 100);
    EXPECT_EQ(read.userRange.to, 200);
    EXPECT_EQ(read.userName, "");
}

TEST(QelFileFilterTest, NameIsPreferredToNumberWhenWriting) {
    Filter filter = everyOwnerForm();
    filter.setValid(Filter::validUserName | Filter::validUid | Filter::validGroupName | Filter::validGid);
    EXPECT_THAT(written(filter), ElementsAre(userName, groupName));
}

TEST(QelFileFilterTest, GroupRangeIsPreferredToNameAndNumberWhenWriting) {
    Filter filter = everyOwnerForm();
    filter.setValid(Filter::validGroupRange | Filter::validGroupName | Filter::validGid);
    EXPECT_THAT(written(filter), ElementsAre(groupFrom, groupTo));
}

TEST(QelFileFilterTest, ReadingPrefersNameThenNumberThenRange) {
    const TestTree tree;
    tree->putValue(100, userFrom);
    tree->putValue(200, userTo);
    tree->putValue(300, groupFrom);
    tree->putValue(400, groupTo);
    EXPECT_EQ(readFrom<Filter>(tree).validMask, 8U | 64U);
    tree->putValue(7, uid);
    tree->putValue(8, gid);
    const Filter byNumber = readFrom<Filter>(tree);
    EXPECT_EQ(byNumber.validMask, 4U | 32U);
    EXPECT_EQ(byNumber.uid, 7);
    EXPECT_EQ(byNumber.gid, 8);
    EXPECT_EQ(byNumber.userRange.from, 0);
    tree->putValue(std::string("anna"), userName);
    tree->putValue(std::string("wheel"), groupName);
    const Filter byName = readFrom<Filter>(tree);
    EXPECT_EQ(byName.validMask, 2U | 16U);
    EXPECT_EQ(byName.userName, "anna");
    EXPECT_EQ(byName.groupName, "wheel");
    EXPECT_EQ(byName.uid, 0);
}

TEST(QelFileFilterTest, RangeWithOneBoundIsIgnored) {
    for (const int half : {userFrom, userTo, groupFrom, groupTo}) {
        const TestTree tree;
        tree->putValue(100, half);
        const Filter read = readFrom<Filter>(tree);
        EXPECT_EQ(read.validMask, 0U) << half;
        EXPECT_EQ(read.userRange.from + read.userRange.to + read.groupRange.from + read.groupRange.to, 0) << half;
    }
}

TEST(QelFileFilterTest, ReadingClearsMaskAndNeverFails) {
    const TestTree tree;
    tree->putValue(std::string("many"), 1148);
    tree->putValue(std::string("one"), 1007);
    tree->putValue(std::string("no base64!"), 1026);
    Filter filter;
    filter.setValid(~0U);
    EXPECT_EQ(tree->getObj(filter, 0), 0);
    EXPECT_EQ(filter.validMask, 0U);
}

} // namespace
} // namespace Qel
