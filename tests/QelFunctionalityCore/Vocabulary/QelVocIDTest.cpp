#include "QelFunctionalityCore/Vocabulary/QelVocID.h"

#include <gmock/gmock.h>

#include "QelFunctionalityCore/Vocabulary/VocTestSupport.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

TEST(QelVocIDTest, EqualityComparesNameAndVersion) {
    EXPECT_TRUE((QelVocID{"a", "1"} == QelVocID{"a", "1"}));
    EXPECT_FALSE((QelVocID{"a", "1"} == QelVocID{"a", "2"}));
    EXPECT_FALSE((QelVocID{"a", "1"} == QelVocID{"b", "1"}));
}

TEST(QelVocIDTest, OrdersByNameThenVersion) {
    const std::set<QelVocID> sorted{{"b", "1"}, {"a", "2"}, {"a", "10"}, {"", "9"}};
    std::vector<std::string> texts;
    for (const QelVocID& id : sorted)
        texts.push_back(textOf(id));
    EXPECT_THAT(texts, ElementsAre(" 9", "a 10", "a 2", "b 1"));
}

TEST(QelVocIDTest, SetHoldsOneVersionPerName) {
    QelVocIDSet choice{{"a", "2"}, {"b", "1"}};
    EXPECT_FALSE(choice.insert({"a", "1"}).second);
    EXPECT_EQ(choice.size(), 2U);
    EXPECT_EQ(choice.begin()->version, "2");
}

class QelVocIDReaderTest : public testing::Test {
protected:
    int readAppended(const Voc& voc, QelVocID& id) const {
        message.cursor().seekRoot();
        putVocabulary(message.cursor(), voc);
        message.cursor().firstChild(1871);
        while (message.cursor().nextSibling(1871) == 0) {
        }
        const int result = message.cursor().getObj(id, 0);
        EXPECT_EQ(message.cursor().curID(), 1871) << "the cursor returns to the vocabulary";
        return result;
    }

    TestMessage message;
};

TEST_F(QelVocIDReaderTest, ReadsVersionFromParameter) {
    QelVocID id;
    EXPECT_EQ(readAppended({"a", "", {}, {{"x", {}, "7"}, {"vocversion", {}, "1.2"}, {"y"}}}, id), 0);
    EXPECT_TRUE((id == QelVocID{"a", "1.2"}));
}

TEST_F(QelVocIDReaderTest, SkipsParametersWithoutID) {
    message.cursor().newChild(1871);
    message.cursor().putValue("a", 1026);
    message.cursor().putChild(1017);
    putItems(message.cursor(), {"", "3"});
    QelVocID id;
    EXPECT_EQ(message.cursor().getObj(id, 0), 0);
    EXPECT_EQ(id.version, "3");
}

TEST_F(QelVocIDReaderTest, UsesFirstVersionParameter) {
    QelVocID id;
    EXPECT_EQ(readAppended({"a", "1", {}, {{"vocversion", {}, "2"}}}, id), 0);
    EXPECT_EQ(id.version, "1");
    EXPECT_EQ(readAppended({"b", "", {}, {{"vocversion"}, {"vocversion", {}, "2"}}}, id), -1)
        << "even if it has no value";
}

TEST_F(QelVocIDReaderTest, RequiresNameAndVersion) {
    QelVocID id{"", "kept"};
    EXPECT_EQ(readAppended({"a"}, id), -1);
    EXPECT_EQ(readAppended({"a", "", {}, {{"x"}, {"version", {}, "1"}}}, id), -1);
    EXPECT_EQ(id.version, "kept");

    message.cursor().seekRoot();
    message.cursor().newChild(1871);
    putItems(message.cursor(), {"", "1"});
    EXPECT_EQ(message.cursor().getObj(id, 0), -1);
    // A vocabulary's version is not read from a version element.
    message.cursor().seekRoot();
    message.cursor().newChild(1871);
    message.cursor().putObj(QelVocID{"a", "1"}, 0);
    EXPECT_EQ(message.cursor().getObj(id, 0), -1);
}

TEST_F(QelVocIDReaderTest, StandaloneRecordHasVersionElement) {
    const QelVocID written{"a", "1"};
    message.cursor().newChild(1115);
    EXPECT_EQ(message.cursor().putObj(written, 0), 0);
    EXPECT_EQ(childValue(message.cursor(), 1026), "a");
    EXPECT_EQ(childValue(message.cursor(), 1223), "1");
    QelVocID read;
    EXPECT_EQ(message.cursor().getObject(read, QelVocID::Reader(true), 0), 0);
    EXPECT_TRUE(read == written);
    message.cursor().deleteChild(1223);
    EXPECT_EQ(message.cursor().getObject(read, QelVocID::Reader(true), 0), -1);
}

TEST_F(QelVocIDReaderTest, AcceptsNamesOf255Characters) {
    QelVocID id;
    const std::string longest(255, 'x');
    EXPECT_EQ(readAppended({longest, longest}, id), 0);
    EXPECT_EQ(id.name, longest);
    EXPECT_EQ(id.version, longest);
}

using QelVocIDDeathTest = QelVocIDReaderTest;

TEST_F(QelVocIDDeathTest, TooLongNameTerminatesProcess) {
    QelVocID id;
    EXPECT_DEATH(readAppended({std::string(256, 'x'), "1"}, id), "QelContainers:108");
}

} // namespace
} // namespace Qel
