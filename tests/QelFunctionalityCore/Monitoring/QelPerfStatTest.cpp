#include "QelFunctionalityCore/Monitoring/QelPerfStat.h"

#include <gmock/gmock.h>

#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;

class QelPerfStatTest : public testing::Test {
protected:
    QelPerfStatTest() { at.newChild(1018); }

    void put(const std::vector<const char*>& values) {
        const int elements[] = {1060, 1061, 1062, 1065};
        for (std::size_t i = 0; i < values.size(); ++i)
            at.putValue(std::string(values[i]), elements[i]);
    }
    int read(int integer) { return at.getObject(stat, QelPerfStat::Reader(integer), 0); }
    /// The elements that a writer adds, in order.
    std::vector<std::string> written(const QelPerfStat::Writer& writer) {
        const TestMessage other;
        QelMessageIterator& to = other.cursor();
        EXPECT_EQ(to.putObject(stat, writer, 0), 0);
        std::vector<std::string> texts;
        for (int result = to.firstChild(); result == 0; result = to.nextSibling())
            texts.push_back(to.curName() + ' ' + childValue(to, 0));
        return texts;
    }

    TestMessage message;
    QelMessageIterator& at = message.cursor();
    QelPerfStat stat;
};

TEST_F(QelPerfStatTest, DefaultIsIntegerZero) {
    EXPECT_TRUE(stat.isInteger);
    for (const QelPerfValue& value : {stat.current, stat.stat1060, stat.stat1061, stat.stat1062})
        EXPECT_EQ(value.integer, 0);
}

TEST_F(QelPerfStatTest, ReadsIntegersIntoTheirMembers) {
    put({"1", "-2", "9000000000000000000", "4"});
    EXPECT_EQ(read(1), 0);
    EXPECT_TRUE(stat.isInteger);
    EXPECT_EQ(stat.stat1060.integer, 1);
    EXPECT_EQ(stat.stat1061.integer, -2);
    EXPECT_EQ(stat.stat1062.integer, 9'000'000'000'000'000'000);
    EXPECT_EQ(stat.current.integer, 4);
    EXPECT_EQ(read(7), 0) << "any nonzero value";
    EXPECT_TRUE(stat.isInteger);
}

TEST_F(QelPerfStatTest, ZeroValueTypeReadsDoubles) {
    put({"5", "0.5", "-1e300", "2.25"});
    EXPECT_EQ(read(0), 0);
    EXPECT_FALSE(stat.isInteger);
    EXPECT_EQ(stat.stat1060.real, 5.0);
    EXPECT_EQ(stat.stat1061.real, 0.5);
    EXPECT_EQ(stat.stat1062.real, -1e300);
    EXPECT_EQ(stat.current.real, 2.25);
    EXPECT_THAT(written(QelPerfStat::Writer(-1)),
                ElementsAre("stat_1060 5", "stat_1061 0.5", "stat_1062 -1e+300", "current 2.25"));
}

TEST_F(QelPerfStatTest, ReadsRemainingValuesAfterFailure) {
    put({"1", "text", "3", "4"});
    stat.stat1061.integer = 7;
    EXPECT_EQ(read(1), -1);
    EXPECT_EQ(stat.stat1060.integer, 1);
    EXPECT_EQ(stat.stat1061.integer, 7);
    EXPECT_EQ(stat.stat1062.integer, 3);
    EXPECT_EQ(stat.current.integer, 4);
}

TEST_F(QelPerfStatTest, RequiresAllFourValues) {
    for (const int missing : {1060, 1061, 1062, 1065}) {
        while (at.firstChild() == 0)
            at.deleteFromChild();
        put({"1", "2", "3", "4"});
        at.deleteChild(missing);
        EXPECT_EQ(read(1), -1) << missing;
        EXPECT_EQ(read(0), -1) << missing;
    }
}

TEST_F(QelPerfStatTest, RejectsDoubleAsInteger) {
    put({"1", "2", "3", "4.5"});
    EXPECT_EQ(read(1), -1);
    EXPECT_EQ(read(0), 0);
}

TEST_F(QelPerfStatTest, WriterModeSelectsForm) {
    stat.stat1060.integer = 1;
    stat.current.integer = 4;
    const auto integers = ElementsAre("stat_1060 1", "stat_1061 0", "stat_1062 0", "current 4");
    EXPECT_THAT(written(QelPerfStat::Writer()), integers) << "form of the record";
    EXPECT_THAT(written(QelPerfStat::Writer(1)), integers);

    stat.stat1060.real = 1.5;
    stat.current.real = 4.5;
    const auto doubles = ElementsAre("stat_1060 1.5", "stat_1061 0", "stat_1062 0", "current 4.5");
    EXPECT_THAT(written(QelPerfStat::Writer(0)), doubles) << "overrides the form of the record";
    EXPECT_THAT(written(QelPerfStat::Writer(2)), doubles);
    EXPECT_THAT(written(QelPerfStat::Writer(-2)), doubles);
    stat.isInteger = false;
    EXPECT_THAT(written(QelPerfStat::Writer(-1)), doubles);
    EXPECT_NE(written(QelPerfStat::Writer(1))[0], "stat_1060 1.5");
}

} // namespace
} // namespace Qel
