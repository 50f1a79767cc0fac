#include "QelFunctionalityCore/Security/QelDirEntry.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/TestTree.h"
#include "support/ScriptedCursor.h"

namespace Qel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

QelDirAttribute attribute(const std::string& name, const std::vector<std::string>& values) {
    QelDirAttribute made(name);
    made = values;
    return made;
}

TEST(QelDirEntryTest, RoundTripsWithAttributes) {
    TestTree tree;
    const QelDirEntry written{.dn = "cn=anna,dc=org",
                              .attributes = {attribute("mail", {"a@x", "b@x"}), attribute("cn", {})}};
    ASSERT_EQ(tree->putObj(written, 0), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1928, 1918, 1918));
    ASSERT_EQ(tree->seek(1918), 0);
    EXPECT_THAT(childIDs(*tree), ElementsAre(1026, 1018, 1018));
    tree->seekUp();
    QelDirEntry back;
    ASSERT_EQ(tree->getObj(back, 0), 0);
    EXPECT_EQ(back.dn, "cn=anna,dc=org");
    ASSERT_EQ(back.attributes.size(), 2U);
    EXPECT_EQ(back.attributes[0].getName(), "mail");
    EXPECT_THAT(back.attributes[0].get(), ElementsAre("a@x", "b@x"));
    EXPECT_EQ(back.attributes[1].getName(), "cn");
    EXPECT_THAT(back.attributes[1].get(), IsEmpty());
}

TEST(QelDirEntryTest, AttributesAreOptional) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelDirEntry{.dn = "dc=org", .attributes = {}}, 0), 0);
    QelDirEntry back;
    EXPECT_EQ(tree->getObj(back, 0), 0);
    EXPECT_THAT(back.attributes, IsEmpty());
}

TEST(QelDirEntryTest, RequiresName) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelDirEntry{.dn = "dc=org", .attributes = {attribute("cn", {"x"})}}, 0), 0);
    tree->deleteChild(1928);
    QelDirEntry back;
    EXPECT_EQ(tree->getObj(back, 0), -1);
    EXPECT_THAT(back.attributes, IsEmpty());
}

TEST(QelDirEntryTest, FailedWriteOfNameStopsWriter) {
    EXPECT_EQ(TestSupport::writeWithoutValues(QelDirEntry{.dn = "dc=org", .attributes = {}}), -1);
}

TEST(QelDirEntryTest, FailedWriteOfAttributeStopsWriterWithListResult) {
    struct NamelessCursor : QelBinaryIterator {
        using QelBinaryIterator::putValue;
        using QelBinaryIterator::QelBinaryIterator;
        int putValue(const std::string& value, int id) override {
            return id == 1026 && value.empty() ? -1 : QelBinaryIterator::putValue(value, id);
        }
    };
    const TestSupport::TestMessage message;
    NamelessCursor cursor(dynamic_cast<const QelBinaryIterator*>(&message.cursor()));
    const QelDirEntry entry{.dn = "dc=org",
                            .attributes = {attribute("cn", {"x"}), attribute("", {}), attribute("mail", {})}};
    EXPECT_EQ(cursor.putObj(entry, 0), 1);
    EXPECT_THAT(childIDs(cursor), ElementsAre(1928, 1918, 1918)) << "the third attribute is not started";
}

TEST(QelDirEntryTest, AttributeRequiresName) {
    TestTree tree;
    ASSERT_EQ(tree->putObj(QelDirEntry{.dn = "dc=org", .attributes = {attribute("cn", {"x"})}}, 0), 0);
    tree->newChild(1918);
    tree->putValue(std::string("x"), 1018);
    tree->seekUp();
    QelDirEntry back;
    EXPECT_EQ(tree->getObj(back, 0), -1);
    EXPECT_EQ(back.attributes.size(), 1U);
}

} // namespace
} // namespace Qel
