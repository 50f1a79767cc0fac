#include "QelMessage/QelCombinators.h"

#include <gmock/gmock.h>

#include "QelMessage/QelReaderListAll.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr int wrapper = 1690;
constexpr int item = 1008;
constexpr int key = 1240;
constexpr int value = 1018;
constexpr int other = 1026;

using Strings = std::vector<std::string>;
using Numbers = std::vector<int>;

/// A record with a complex type. Its functors reject odd numbers.
struct Even {
    int number = 0;
    struct Reader {
        int operator()(const QelMessageIterator& cursor, Even& even) const {
            return cursor.getValue(even.number, 0) == 0 && even.number % 2 == 0 ? 0 : -1;
        }
    };
    struct Writer : QelWriterBaseT<Writer> {
        static int getNSID() { return 292; }
        static int getTypeID() { return 118; }
        int operator()(QelMessageIterator& cursor, const Even& even) const {
            return even.number % 2 == 0 ? cursor.putValue(even.number, 0) : -1;
        }
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

void putItems(QelMessageIterator& cursor, std::initializer_list<const char*> values) {
    for (const char* text : values)
        cursor.putValue(text, item);
}

class QelCombinatorsTest : public testing::Test {
protected:
    QelCombinatorsTest() { message->newChild(wrapper); }

    /// Expects the cursor at its initial position.
    void expectCursorRestored() const { EXPECT_EQ(message->curID(), wrapper); }

    TestMessage tree;
    QelMessageIterator* const message = &tree.cursor();
};

using QelReaderIDTest = QelCombinatorsTest;
using QelWriterIDTest = QelCombinatorsTest;
using QelReaderListTest = QelCombinatorsTest;
using QelWriterListTest = QelCombinatorsTest;
using QelReaderSetTest = QelCombinatorsTest;
using QelReaderMapTest = QelCombinatorsTest;
using QelPointerTest = QelCombinatorsTest;

TEST_F(QelReaderIDTest, MissingOptionalElementLeavesTheValueUnchanged) {
    std::string text = "before";
    EXPECT_EQ(QelReaderID(QelReaderString(), item, QelReaderOptional)(*message, text), 0);
    EXPECT_EQ(text, "before");
}

TEST_F(QelReaderIDTest, MissingRequiredElementFails) {
    std::string text = "before";
    EXPECT_EQ(QelReaderID(QelReaderString(), item, QelReaderRequired)(*message, text), -1);
    EXPECT_EQ(text, "before");
}

TEST_F(QelReaderIDTest, InnerFailureIsReturnedAndTheCursorIsRestored) {
    putItems(*message, {"3"});
    Even even;
    EXPECT_EQ(QelReaderID(Even::Reader(), item, QelReaderOptional)(*message, even), -1);
    expectCursorRestored();
}

TEST_F(QelReaderIDTest, EmptyIDEndsTheProcess) {
    std::string text;
    EXPECT_DEATH(QelReaderID(QelReaderString(), 0, QelReaderOptional)(*message, text),
                 "core/src/QelMessage/QelMessageIterator:752");
}

TEST_F(QelWriterIDTest, EmptyIDEndsTheProcess) {
    EXPECT_DEATH(QelWriterID(QelWriterString(), 0)(*message, std::string("x")),
                 "core/src/QelMessage/QelMessageIterator:671");
}

TEST_F(QelWriterIDTest, EachWriteAppendsANewElement) {
    const auto writer = QelWriterID(QelWriterString(), item);
    EXPECT_EQ(writer(*message, std::string("a")), 0);
    EXPECT_EQ(writer(*message, std::string("b")), 0);
    EXPECT_EQ(countChildren(*message, item), 2);
    expectCursorRestored();
}

TEST_F(QelWriterIDTest, ElementHasTheTypeOfTheWriter) {
    EXPECT_EQ(QelWriterID(Even::Writer(), item)(*message, Even{4}), 0);
    ASSERT_EQ(message->seek(item), 0);
    EXPECT_EQ(message->curType(), "env:env_status");
    EXPECT_EQ(message->curNamespaceID(), 292);
}

TEST_F(QelWriterIDTest, NamespaceArgumentIsSetOnTheElement) {
    EXPECT_EQ(QelWriterID(QelWriterString(), item, 281)(*message, std::string("x")), 0);
    ASSERT_EQ(message->seek(item), 0);
    EXPECT_EQ(message->curNamespaceID(), 281);
    EXPECT_EQ(message->curType(), "");
}

TEST_F(QelWriterIDTest, NamespaceArgumentReplacesThatOfTheWriter) {
    EXPECT_EQ(QelWriterID(Even::Writer(), item, 281)(*message, Even{4}), 0);
    ASSERT_EQ(message->seek(item), 0);
    EXPECT_EQ(message->curNamespaceID(), 281) << "set after the writer's namespace";
    EXPECT_EQ(message->curType(), "env:env_status");
}

TEST_F(QelWriterIDTest, FailureKeepsThePartialElementAndRestoresTheCursor) {
    EXPECT_EQ(QelWriterID(Even::Writer(), item)(*message, Even{3}), -1);
    EXPECT_EQ(countChildren(*message, item), 1);
    expectCursorRestored();
}

TEST_F(QelReaderListTest, EmptyListSucceedsOnlyIfOptional) {
    Strings items{"before"};
    EXPECT_EQ(QelReaderList(QelReaderString(), item, QelReaderOptional)(*message, items), 0);
    EXPECT_EQ(QelReaderList(QelReaderString(), item, QelReaderRequired)(*message, items), -1);
    EXPECT_THAT(items, ElementsAre("before"));
    expectCursorRestored();
}

TEST_F(QelReaderListTest, SecondReadAppends) {
    putItems(*message, {"a", "b"});
    Strings items;
    const auto reader = QelReaderList(QelReaderString(), item, QelReaderOptional);
    EXPECT_EQ(reader(*message, items), 0);
    EXPECT_EQ(reader(*message, items), 0);
    EXPECT_THAT(items, ElementsAre("a", "b", "a", "b"));
}

TEST_F(QelReaderListTest, MalformedItemKeepsEarlierItemsAndRestoresTheCursor) {
    putItems(*message, {"1", "x", "3"});
    Numbers items;
    EXPECT_EQ(QelReaderList(QelReaderInt(), item, QelReaderOptional)(*message, items), -1);
    EXPECT_THAT(items, ElementsAre(1));
    expectCursorRestored();
}

TEST_F(QelReaderListTest, SkipsSiblingsWithOtherIDs) {
    putItems(*message, {"a"});
    message->putValue("no", other);
    putItems(*message, {"b"});
    Strings items;
    EXPECT_EQ(QelReaderList(QelReaderString(), item, QelReaderRequired)(*message, items), 0);
    EXPECT_THAT(items, ElementsAre("a", "b"));
}

TEST_F(QelReaderListTest, WithoutAnIDEveryChildIsAnItem) {
    putItems(*message, {"a"});
    message->putValue("b", other);
    Strings items;
    EXPECT_EQ(QelReaderList(QelReaderString(), 0, QelReaderRequired)(*message, items), 0);
    EXPECT_THAT(items, ElementsAre("a", "b"));
}

TEST_F(QelWriterListTest, EmptyVectorInAWrapperRoundTrips) {
    const Strings none;
    EXPECT_EQ(message->putObject(none, QelWriterData(none, item), other), 0);
    ASSERT_EQ(message->seek(other), 0);
    EXPECT_NE(message->firstChild(), 0);
    message->seekUp();

    Strings items;
    EXPECT_EQ(message->getObject(items, QelReaderData(items, item, QelReaderOptional), other), 0);
    EXPECT_THAT(items, IsEmpty());
}

TEST_F(QelWriterListTest, FailedItemStopsTheListWithOne) {
    const std::vector<Even> items{{2}, {3}, {4}};
    EXPECT_EQ(QelWriterData(items, item)(*message, items), 1);
    EXPECT_EQ(countChildren(*message, item), 2) << "the element of the failed item is kept";
    ASSERT_EQ(message->firstChild(item), 0);
    EXPECT_EQ(childValue(*message, 0), "2");
    ASSERT_EQ(message->nextSibling(item), 0);
    std::string text;
    static_cast<void>(message->getValue(text, 0));
    EXPECT_EQ(text, "");
}

TEST_F(QelWriterListTest, ItemsHaveATypeButTheWrapperDoesNot) {
    const std::vector<Even> items{{2}};
    EXPECT_EQ(message->putObject(items, QelWriterData(items, item), other), 0);
    ASSERT_EQ(message->seek(other), 0);
    EXPECT_EQ(message->curType(), "");
    ASSERT_EQ(message->seek(item), 0);
    EXPECT_EQ(message->curType(), "env:env_status");
}

TEST_F(QelReaderSetTest, DuplicatesAreDropped) {
    putItems(*message, {"b", "a", "b"});
    std::set<std::string> items;
    EXPECT_EQ(QelReaderData(items, item, QelReaderRequired)(*message, items), 0);
    EXPECT_THAT(items, ElementsAre("a", "b"));
}

TEST_F(QelReaderSetTest, MalformedItemStopsReading) {
    putItems(*message, {"2", "x", "1"});
    std::set<int> items;
    EXPECT_EQ(QelReaderSet(QelReaderInt(), item, QelReaderRequired)(*message, items), -1);
    EXPECT_THAT(items, ElementsAre(2));
    expectCursorRestored();
}

constexpr auto mapReader = [] {
    return QelReaderMap(item, QelReaderOptional, QelReaderID(QelReaderString(), key, QelReaderRequired),
                        QelReaderID(QelReaderInt(), value, QelReaderRequired));
};
constexpr auto mapWriter = [] {
    return QelWriterMap(item, QelWriterID(QelWriterString(), key), QelWriterID(QelWriterInt(), value));
};

TEST_F(QelReaderMapTest, EntryIsTheKeyFollowedByTheValue) {
    const std::map<std::string, int> map{{"a", 1}};
    EXPECT_EQ(mapWriter()(*message, map), 0);
    ASSERT_EQ(message->seek(item), 0);
    ASSERT_EQ(message->firstChild(), 0);
    EXPECT_EQ(message->curID(), key);
    ASSERT_EQ(message->nextSibling(), 0);
    EXPECT_EQ(message->curID(), value);
}

TEST_F(QelReaderMapTest, FirstValueOfAKeyWins) {
    const std::multimap<std::string, int> twice{{"a", 1}, {"a", 2}};
    ASSERT_EQ(mapWriter()(*message, twice), 0);
    std::map<std::string, int> map;
    EXPECT_EQ(mapReader()(*message, map), 0);
    EXPECT_THAT(map, ElementsAre(Pair("a", 1)));
    std::multimap<std::string, int> both;
    EXPECT_EQ(mapReader()(*message, both), 0);
    EXPECT_THAT(both, ElementsAre(Pair("a", 1), Pair("a", 2)));
}

TEST_F(QelReaderMapTest, EntryWithoutKeyOrValueFails) {
    message->newChild(item);
    message->putValue("a", key);
    message->seekUp();
    std::map<std::string, int> map;
    EXPECT_EQ(mapReader()(*message, map), -1);
    EXPECT_THAT(map, IsEmpty());
    expectCursorRestored();

    ASSERT_EQ(message->seek(item), 0);
    message->deleteChild(key);
    message->putValue(1, value);
    message->seekUp();
    EXPECT_EQ(mapReader()(*message, map), -1);
}

TEST_F(QelReaderMapTest, MalformedEntryStopsReading) {
    for (const char* const number : {"1", "x", "3"}) {
        message->newChild(item);
        message->putValue(number, key);
        message->putValue(number, value);
        message->seekUp();
    }
    std::map<std::string, int> map;
    EXPECT_EQ(mapReader()(*message, map), -1);
    EXPECT_THAT(map, ElementsAre(Pair("1", 1)));
    expectCursorRestored();
}

TEST_F(QelReaderMapTest, KeyIsReadBeforeTheValue) {
    message->putValue("x", key);
    std::pair<std::string, int> pair{"before", 1};
    EXPECT_EQ(QelReaderPairItem(QelReaderID(QelReaderString(), key, QelReaderRequired),
                                QelReaderID(QelReaderInt(), value, QelReaderRequired))(*message, pair),
              -1);
    EXPECT_THAT(pair, Pair("x", 1));

    message->deleteChild(key);
    message->putValue(2, value);
    pair = {"before", 1};
    EXPECT_EQ(QelReaderPairItem(QelReaderID(QelReaderString(), key, QelReaderRequired),
                                QelReaderID(QelReaderInt(), value, QelReaderRequired))(*message, pair),
              -1);
    EXPECT_THAT(pair, Pair("before", 1)) << "the value is not read without its key";
}

TEST_F(QelReaderMapTest, KeyIsWrittenBeforeTheValue) {
    const std::pair<Even, std::string> oddKey{Even{3}, "v"};
    EXPECT_EQ(
        QelWriterPairItem(QelWriterID(Even::Writer(), key), QelWriterID(QelWriterString(), value))(*message, oddKey),
        -1);
    EXPECT_THAT(childIDs(*message), ElementsAre(key)) << "the value is not written without its key";
}

TEST_F(QelReaderMapTest, EmptyKeyWriterWritesNoKeyElement) {
    const std::map<std::string, int> map{{"a", 1}};
    EXPECT_EQ(QelWriterMap(item, QelWriterEmpty(), QelWriterID(QelWriterInt(), value))(*message, map), 0);
    ASSERT_EQ(message->seek(item), 0);
    EXPECT_EQ(countChildren(*message, key), 0);
    EXPECT_EQ(childValue(*message, value), "1");
}

TEST_F(QelPointerTest, FailedReadLeavesANullPointer) {
    message->putValue(3, 0);
    boost::shared_ptr<Even> pointer(new Even{8});
    EXPECT_EQ(QelReaderPointer(Even::Reader())(*message, pointer), -1);
    EXPECT_EQ(pointer, nullptr);
}

TEST_F(QelPointerTest, FailedReadLeavesARawPointerUnchanged) {
    message->putValue(3, 0);
    Even* pointer = nullptr;
    EXPECT_EQ((QelReaderPointerData<Even>(Even::Reader())(*message, pointer)), -1);
    EXPECT_EQ(pointer, nullptr);
    Even before;
    pointer = &before;
    EXPECT_EQ((QelReaderPointerData<Even>(Even::Reader())(*message, pointer)), -1);
    EXPECT_EQ(pointer, &before);
    message->putValue(4, 0);
    ASSERT_EQ((QelReaderPointerData<Even>(Even::Reader())(*message, pointer)), 0);
    EXPECT_EQ(pointer->number, 4);
    delete pointer;
}

TEST_F(QelPointerTest, NullPointerIsNotWritten) {
    EXPECT_EQ(QelWriterPointer(Even::Writer())(*message, boost::shared_ptr<Even>()), -1);
    EXPECT_EQ((QelWriterPointerData<Even>(Even::Writer())(*message, static_cast<const Even*>(nullptr))), -1);
}

TEST_F(QelPointerTest, NullPointerStopsAListWithOne) {
    const std::vector<boost::shared_ptr<Even>> items{boost::shared_ptr<Even>(new Even{2}), nullptr};
    EXPECT_EQ(QelWriterData(items, item)(*message, items), 1);
}

TEST_F(QelPointerTest, PointerWriterSetsTheTypeOfTheObject) {
    const boost::shared_ptr<Even> pointer(new Even{2});
    EXPECT_EQ(message->putObject(pointer, QelWriterPointer(Even::Writer()), other), 0);
    ASSERT_EQ(message->seek(other), 0);
    EXPECT_EQ(message->curType(), "env:env_status");
}

TEST_F(QelPointerTest, ListOfPointersRoundTrips) {
    putItems(*message, {"2", "4"});
    std::vector<boost::shared_ptr<Even>> items;
    EXPECT_EQ(QelReaderData(items, item, QelReaderRequired)(*message, items), 0);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[1]->number, 4);
}

TEST_F(QelCombinatorsTest, ConditionalWriterAppliesItsPredicate) {
    const auto writer = QelWriterIF(QelWriterID(QelWriterInt(), item), [](int number) { return number != -1; });
    EXPECT_EQ(writer(*message, -1), 0);
    EXPECT_EQ(countChildren(*message, item), 0);
    EXPECT_EQ(writer(*message, 7), 0);
    EXPECT_EQ(childValue(*message, item), "7");
}

TEST_F(QelCombinatorsTest, ScalarsRoundTrip) {
    QelMessageIterator& at = *message;
    EXPECT_EQ(QelWriterID(QelWriterBase64(), item)(at, std::string("a\0b", 3)), 0);
    EXPECT_EQ(QelWriterID(QelWriterLongLong(), key)(at, 1LL << 40), 0);
    EXPECT_EQ(QelWriterID(QelWriterDouble(), value)(at, 0.1), 0);
    std::string bytes;
    long long number = 0;
    double real = 0;
    EXPECT_EQ(QelReaderID(QelReaderBase64(), item, QelReaderRequired)(at, bytes), 0);
    EXPECT_EQ(QelReaderID(QelReaderLongLong(), key, QelReaderRequired)(at, number), 0);
    EXPECT_EQ(QelReaderID(QelReaderDouble(), value, QelReaderRequired)(at, real), 0);
    EXPECT_EQ(bytes, std::string("a\0b", 3));
    EXPECT_EQ(number, 1LL << 40);
    EXPECT_EQ(real, 0.1);
}

/// Counts calls of destroy().
struct Destroyed {
    explicit Destroyed(int& times) : count(times) {}
    void destroy() { ++count; }
    int& count;
};

TEST(AutoDestroyTest, CallsDestroyOnceUnlessReleased) {
    int destroyed = 0;
    Destroyed object(destroyed);
    { const auto_destroy<Destroyed> owner(&object); }
    EXPECT_EQ(destroyed, 1);
    {
        auto_destroy<Destroyed> owner(&object);
        EXPECT_EQ(owner.release(), &object);
        EXPECT_EQ(owner.get(), nullptr);
    }
    EXPECT_EQ(destroyed, 1);
    { const auto_destroy<Destroyed> empty; }
}

TEST_F(QelCombinatorsTest, ListOfAllReadsEveryChild) {
    const QelReaderListAllT reader(QelReaderListData(QelReaderString()), QelReaderOptional);
    Strings read{"kept"};
    EXPECT_EQ(reader(*message, read), 0) << "without children";
    EXPECT_EQ(QelReaderListAllT(QelReaderListData(QelReaderString()), QelReaderRequired)(*message, read), -1);
    EXPECT_THAT(read, ElementsAre("kept"));
    putItems(*message, {"a", "b"});
    message->putValue("c", other);
    EXPECT_EQ(reader(*message, read), 0);
    EXPECT_THAT(read, ElementsAre("kept", "a", "b", "c"));
    expectCursorRestored();
}

TEST_F(QelCombinatorsTest, ListOfAllStopsAtAFailedChild) {
    message->putValue(2, item);
    message->putValue(3, other);
    message->putValue(4, item);
    std::vector<Even> read;
    EXPECT_EQ(QelReaderListAllT(QelReaderListData(Even::Reader()), QelReaderOptional)(*message, read), -1);
    EXPECT_EQ(read.size(), 1U);
    expectCursorRestored();
}

} // namespace
} // namespace Qel
