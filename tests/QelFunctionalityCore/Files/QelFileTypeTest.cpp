#include "QelFunctionalityCore/Files/QelFileType.h"

#include <gmock/gmock.h>

#include "FilesTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::SizeIs;
using File = QelFileType;

constexpr int name = 1026;
constexpr int child = 1161;
constexpr int value = 1087;

boost::shared_ptr<File> named(const std::string& fileName) {
    boost::shared_ptr<File> file(new File);
    file->name = fileName;
    return file;
}

/// The bits in the order in which their elements are written, and the element IDs.
constexpr std::pair<unsigned, int> attributes[] = {
    {0x1, 1007},   {0x2, 1135},   {0x4, 1025},   {0x10, 1029}, {0x8, 1030},  {0x20, 1027},
    {0x100, 1136}, {0x200, 1137}, {0x800, 1798}, {0x40, 1024}, {0x80, 1023},
};

TEST(QelFileTypeTest, NameIsFirstThenChildrenAndValuesLast) {
    File file;
    file.children = {named("a"), named("b")};
    file.values = {1, 2};
    file.setValid(~0U);
    const TestTree tree;
    writeTo(tree, file);
    std::vector<int> expected{name, child, child};
    for (const auto& [bit, element] : attributes)
        expected.push_back(element);
    expected.insert(expected.end(), {value, value});
    EXPECT_EQ(childIDs(*tree), expected);
}

TEST(QelFileTypeTest, EachBitSelectsItsAttribute) {
    for (const auto& [bit, element] : attributes) {
        File file;
        file.setValid(bit);
        EXPECT_TRUE(file.isValid(bit));
        const TestTree tree;
        writeTo(tree, file);
        EXPECT_THAT(childIDs(*tree), ElementsAre(name, element));
        EXPECT_EQ(readFrom<File>(tree).validMask, bit);
    }
}

TEST(QelFileTypeTest, ReadingSetsNameButNotItsBit) {
    File file;
    file.name = std::string("\xFF\0x", 3);
    file.linkTarget = "/etc";
    file.setValid(File::validName | File::validLinkTarget);
    const TestTree tree;
    writeTo(tree, file);
    EXPECT_EQ(childValue(*tree, 1137), "L2V0Yw==");
    const File read = readFrom<File>(tree);
    EXPECT_EQ(read.name, file.name);
    EXPECT_EQ(read.linkTarget, "/etc");
    EXPECT_EQ(read.validMask, static_cast<unsigned>(File::validLinkTarget));
}

TEST(QelFileTypeTest, ReadingClearsMask) {
    const TestTree tree;
    writeTo(tree, File());
    File file;
    file.setValid(~0U);
    ASSERT_EQ(tree->getObj(file, 0), 0);
    EXPECT_EQ(file.validMask, 0U);
}

TEST(QelFileTypeTest, NameIsRequired) {
    const TestTree tree;
    tree->putValue(1, 1007);
    File file;
    file.setValid(File::validLinks);
    EXPECT_EQ(tree->getObj(file, 0), -1);
    EXPECT_EQ(file.validMask, static_cast<unsigned>(File::validLinks)) << "the mask is unchanged";
    EXPECT_EQ(file.type, 0);
}

TEST(QelFileTypeTest, UnreadableChildFailsReading) {
    const TestTree tree;
    File folder;
    folder.children = {named("a")};
    folder.type = 2;
    folder.setValid(File::validType);
    writeTo(tree, folder);
    tree->putChild(child);
    File file;
    EXPECT_EQ(tree->getObj(file, 0), -1);
    EXPECT_THAT(file.children, SizeIs(1)) << "children read before are kept";
    EXPECT_EQ(file.type, 0) << "attributes are read after the children";
    EXPECT_EQ(file.validMask, static_cast<unsigned>(File::validName)) << "set for the name, and not yet cleared";
}

TEST(QelFileTypeTest, UnwritableChildFailsWriting) {
    File folder;
    folder.children = {named("a"), nullptr, named("b")};
    folder.setValid(File::validType);
    const TestTree tree;
    EXPECT_EQ(tree->putObj(folder, 0), -1);
    EXPECT_EQ(countChildren(*tree, 1007), 0);
    ASSERT_EQ(tree->firstChild(child), 0);
    EXPECT_EQ(countChildren(*tree, name), 1);
}

TEST(QelFileTypeTest, FileTreeSurvivesRoundTrip) {
    File root;
    root.name = "root";
    root.children = {named("folder"), named("file")};
    root.children[0]->children = {named("inner")};
    root.children[1]->size = 1LL << 40U;
    root.children[1]->setValid(File::validSize);
    root.values = {-1, 1LL << 40U};
    const TestTree tree;
    writeTo(tree, root);
    const File read = readFrom<File>(tree);
    ASSERT_THAT(read.children, SizeIs(2));
    ASSERT_THAT(read.children[0]->children, SizeIs(1));
    EXPECT_EQ(read.children[0]->children[0]->name, "inner");
    EXPECT_EQ(read.children[1]->size, 1LL << 40U);
    EXPECT_THAT(read.values, ElementsAre(-1, 1LL << 40U));
}

TEST(QelFileTypeTest, MalformedValueEndsValueListButNotReading) {
    const TestTree tree;
    writeTo(tree, *named("x"));
    tree->putValue(5, value);
    tree->putValue(std::string("five"), value);
    tree->putValue(6, value);
    EXPECT_THAT(readFrom<File>(tree).values, ElementsAre(5));
}

/// The bits in the order of the mask's elements, and the element IDs.
constexpr std::pair<unsigned, int> maskBits[] = {
    {0x1, 1007},  {0x400, name}, {0x2, 1135},  {0x4, 1025},   {0x8, 1030},   {0x10, 1029},
    {0x20, 1027}, {0x40, 1024},  {0x80, 1023}, {0x100, 1136}, {0x200, 1137}, {0x800, 1798},
};

TEST(QelFileTypeMaskTest, BitsAreEmptyElementsInOrder) {
    const TestTree tree;
    EXPECT_EQ(QelWriterFileTypeMask(*tree, ~0U), 0);
    std::vector<int> expected;
    for (const auto& [bit, element] : maskBits) {
        expected.push_back(element);
        EXPECT_EQ(childValue(*tree, element), "");
    }
    EXPECT_EQ(childIDs(*tree), expected);
    unsigned mask = 0;
    EXPECT_EQ(QelReaderFileTypeMask(*tree, mask), 0);
    EXPECT_EQ(mask, 0xFFFU);
}

TEST(QelFileTypeMaskTest, EachBitSurvivesRoundTrip) {
    for (const auto& [bit, element] : maskBits) {
        const TestTree tree;
        EXPECT_EQ(QelWriterFileTypeMask(*tree, bit), 0);
        EXPECT_THAT(childIDs(*tree), ElementsAre(element));
        unsigned mask = ~0U;
        EXPECT_EQ(QelReaderFileTypeMask(*tree, mask), 0);
        EXPECT_EQ(mask, bit);
    }
}

TEST(QelFileTypeMaskTest, NameBitIsEmptyElementWithoutName) {
    const TestTree tree;
    EXPECT_EQ(QelWriterFileTypeMask(*tree, 0x400), 0);
    ASSERT_EQ(countChildren(*tree, name), 1);
    EXPECT_EQ(childValue(*tree, name), "");
}

TEST(QelFileTypeMaskTest, EmptyElementIsEmptyMask) {
    const TestTree tree;
    unsigned mask = 0xFFF;
    EXPECT_EQ(QelReaderFileTypeMask(*tree, mask), 0);
    EXPECT_EQ(mask, 0U);
}

} // namespace
} // namespace Qel
