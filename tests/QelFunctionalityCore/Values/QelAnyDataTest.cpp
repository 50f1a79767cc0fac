#include "QelFunctionalityCore/Values/QelAnyData.h"

#include <cstdlib>

#include <gtest/gtest.h>

#include "QelFunctionalityCore/TestTree.h"

namespace Qel {
namespace {

constexpr int dataElement = 1307;
constexpr int otherElement = 1185;
constexpr int nameElement = 1026;

// A tree with an element 1307 that contains a name; the cursor is at that element.
class DataTree : public TestTree {
public:
    explicit DataTree(const std::string& name = "first", int element = dataElement) {
        (*this)->newChild(element);
        (*this)->putValue(name, nameElement);
    }
};

class QelAnyDataTest : public testing::Test {
protected:
    std::string nameIn(const QelAnyData& any) {
        std::string cache;
        return any.get(nameElement, cache);
    }
    int setName(QelAnyData& any, const std::string& name) {
        std::string cache;
        return any.set(nameElement, name, cache);
    }

    DataTree source;
    QelAnyData owner{source.get(), true, dataElement};
    QelAnyData borrower{source.get(), false, dataElement};
    QelAnyData none{dataElement};
};

TEST_F(QelAnyDataTest, IsInitiallyEmpty) {
    EXPECT_TRUE(none.empty());
    EXPECT_FALSE(none.isSpecified(nameElement));
    EXPECT_EQ(none.toText(), nullptr);
    EXPECT_EQ(std::as_const(none).any(), nullptr);
}

TEST_F(QelAnyDataTest, ConstructorTakesElementUnderCursor) {
    EXPECT_FALSE(owner.empty());
    EXPECT_TRUE(owner.isSpecified(nameElement));
    EXPECT_FALSE(owner.isSpecified(otherElement));
    EXPECT_EQ(nameIn(owner), "first");
    EXPECT_EQ(owner.any()->curID(), dataElement);
}

TEST_F(QelAnyDataTest, OwnedCopyIsIndependentOfSource) {
    EXPECT_EQ(setName(owner, "second"), 0);
    EXPECT_EQ(nameIn(owner), "second");
    EXPECT_EQ(childValue(*source, nameElement), "first");
}

TEST_F(QelAnyDataTest, BorrowsTreeWithoutCopy) {
    EXPECT_EQ(setName(borrower, "second"), 0);
    EXPECT_EQ(childValue(*source, nameElement), "second");
}

TEST_F(QelAnyDataTest, CopyOfBorrowerBorrowsSameTree) {
    QelAnyData copy(borrower);
    EXPECT_EQ(setName(copy, "second"), 0);
    EXPECT_EQ(nameIn(borrower), "second");

    QelAnyData assigned(otherElement);
    assigned = borrower;
    EXPECT_EQ(setName(assigned, "third"), 0);
    EXPECT_EQ(nameIn(copy), "third");
}

TEST_F(QelAnyDataTest, CopyOfOwnerCopiesTree) {
    QelAnyData copy(owner);
    EXPECT_EQ(setName(copy, "second"), 0);
    EXPECT_EQ(nameIn(owner), "first");
    EXPECT_EQ(nameIn(copy), "second");
}

TEST_F(QelAnyDataTest, AssignmentCopiesElementID) {
    DataTree other("other", otherElement);
    QelAnyData any(other.get(), true, otherElement);
    any = owner;
    TestTree target;
    any.serialize(target.get());
    QelAnyData read(none);
    EXPECT_EQ(QelAnyData::Reader()(*target, read), 0);
    read = QelAnyData(otherElement);
    EXPECT_EQ(QelAnyData::Reader()(*target, read), -1);
}

TEST_F(QelAnyDataTest, SelfAssignmentChangesNothing) {
    const QelAnyData& same = owner;
    owner = same;
    EXPECT_EQ(nameIn(owner), "first");
}

TEST_F(QelAnyDataTest, AssignmentOfCursorCopiesElement) {
    none = source.get();
    EXPECT_EQ(setName(none, "second"), 0);
    EXPECT_EQ(childValue(*source, nameElement), "first");
    EXPECT_EQ(nameIn(none), "second");
}

TEST_F(QelAnyDataTest, ResetAcceptsElementOfOwnTree) {
    const auto inner = owner.any();
    ASSERT_EQ(inner->newChild(otherElement), 0);
    inner->putValue(std::string("inner"), nameElement);
    owner.reset(inner.get(), true);
    EXPECT_EQ(nameIn(owner), "inner");
}

TEST_F(QelAnyDataTest, ResetToNullClears) {
    owner.reset(nullptr, true);
    EXPECT_TRUE(owner.empty());
    borrower.reset(nullptr, false);
    EXPECT_TRUE(borrower.empty());
    EXPECT_EQ(childValue(*source, nameElement), "first");
}

TEST_F(QelAnyDataTest, MoveLeavesSourceEmpty) {
    QelAnyData moved(std::move(owner));
    EXPECT_EQ(nameIn(moved), "first");
    none = std::move(moved);
    EXPECT_EQ(nameIn(none), "first");
}

TEST_F(QelAnyDataTest, FilledCacheIsReturnedWithoutReadingTree) {
    std::string cache = "cached";
    EXPECT_EQ(owner.get(nameElement, cache), "cached");
    cache.clear();
    EXPECT_EQ(owner.get(nameElement, cache), "first");
    EXPECT_EQ(cache, "first");
    EXPECT_EQ(setName(owner, "second"), 0);
    EXPECT_EQ(owner.get(nameElement, cache), "first");
}

TEST_F(QelAnyDataTest, MissingValueLeavesCacheEmpty) {
    std::string cache;
    EXPECT_EQ(owner.get(otherElement, cache), "");
    EXPECT_EQ(none.get(nameElement, cache), "");
}

TEST_F(QelAnyDataTest, SetReplacesValueAndCache) {
    std::string cache = "old";
    EXPECT_EQ(owner.set(nameElement, "second", cache), 0);
    EXPECT_EQ(cache, "second");
    EXPECT_EQ(countChildren(*owner.any(), nameElement), 1);
    EXPECT_EQ(nameIn(owner), "second");
}

TEST_F(QelAnyDataTest, SetFailsIfEmpty) {
    std::string cache = "old";
    EXPECT_EQ(none.set(nameElement, "second", cache), -1);
    EXPECT_EQ(cache, "old");
}

TEST_F(QelAnyDataTest, SerializeToCursorAddsElementAsChild) {
    TestTree target;
    EXPECT_EQ(owner.serialize(target.get()), 0);
    EXPECT_EQ(target->seek(dataElement), 0);
    EXPECT_EQ(childValue(*target, nameElement), "first");
}

TEST_F(QelAnyDataTest, SerializeToCursorAddsNothingIfEmpty) {
    TestTree target;
    EXPECT_EQ(none.serialize(target.get()), 0);
    EXPECT_EQ(countChildren(*target), 0);
}

// Owns the binary form of an element.
class Bytes {
public:
    explicit Bytes(const QelAnyData& any) { EXPECT_EQ(any.serialize(&m_buf, &m_len), 0); }
    Bytes(const Bytes&) = delete;
    Bytes& operator=(const Bytes&) = delete;
    ~Bytes() { std::free(m_buf); }
    const char* data() const { return m_buf; }
    int size() const { return m_len; }

private:
    char* m_buf = nullptr;
    int m_len = 0;
};

TEST_F(QelAnyDataTest, BinaryFormRoundTrips) {
    const Bytes bytes(owner);
    EXPECT_EQ(none.deserialize(bytes.data(), bytes.size()), 0);
    EXPECT_EQ(nameIn(none), "first");
    EXPECT_EQ(none.any()->curID(), dataElement);
}

TEST_F(QelAnyDataTest, EmptyObjectHasNoBinaryForm) {
    char* buf = nullptr;
    int len = 5;
    EXPECT_EQ(none.serialize(&buf, &len), -1);
    EXPECT_EQ(buf, nullptr);
    EXPECT_EQ(len, 5);
}

TEST_F(QelAnyDataTest, DeserializingNoBytesClears) {
    EXPECT_EQ(owner.deserialize(nullptr, 5), 0);
    EXPECT_TRUE(owner.empty());
    owner = source.get();
    EXPECT_EQ(owner.deserialize("x", 0), 0);
    EXPECT_TRUE(owner.empty());
}

TEST_F(QelAnyDataTest, DeserializingOtherElementClearsAndSucceeds) {
    const DataTree other("other", otherElement);
    const QelAnyData any(other.get(), true, otherElement);
    const Bytes bytes(any);
    EXPECT_EQ(owner.deserialize(bytes.data(), bytes.size()), 0);
    EXPECT_TRUE(owner.empty());
}

TEST_F(QelAnyDataTest, DeserializingMalformedBytesClearsAndFails) {
    EXPECT_NE(owner.deserialize("garbage", 7), 0);
    EXPECT_TRUE(owner.empty());
}

TEST_F(QelAnyDataTest, ResetKeepsElementID) {
    const Bytes bytes(owner);
    owner.reset(nullptr, true);
    EXPECT_EQ(owner.deserialize(bytes.data(), bytes.size()), 0);
    EXPECT_FALSE(owner.empty());
}

TEST_F(QelAnyDataTest, TextFormRoundTrips) {
    char* const text = owner.toText();
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(none.fromText(text), 0);
    EXPECT_EQ(nameIn(none), "first");
    EXPECT_EQ(owner.fromText(text, otherElement), 0);
    EXPECT_TRUE(owner.empty());
    EXPECT_EQ(owner.fromText(text, dataElement), 0);
    EXPECT_EQ(nameIn(owner), "first");
    std::free(text);
}

TEST_F(QelAnyDataTest, EmptyTextClears) {
    EXPECT_EQ(owner.fromText(""), 0);
    EXPECT_TRUE(owner.empty());
    EXPECT_EQ(borrower.fromText(nullptr), 0);
    EXPECT_TRUE(borrower.empty());
}

TEST_F(QelAnyDataTest, MalformedTextClearsAndFails) {
    EXPECT_NE(owner.fromText("<data"), 0);
    EXPECT_TRUE(owner.empty());
}

TEST_F(QelAnyDataTest, CheckMsgCreatesElementInNamespace) {
    none.checkMsg(otherElement, 292);
    ASSERT_FALSE(none.empty());
    EXPECT_EQ(none.any()->curID(), otherElement);
    EXPECT_EQ(none.any()->curNamespaceID(), 292);
}

TEST_F(QelAnyDataTest, CheckMsgKeepsExistingElement) {
    owner.checkMsg(otherElement, 292);
    EXPECT_EQ(nameIn(owner), "first");
    borrower.checkMsg(otherElement, 292);
    EXPECT_EQ(borrower.any()->curID(), dataElement);
}

TEST_F(QelAnyDataTest, AnyCreatesElementIfEmpty) {
    const auto cursor = none.any();
    ASSERT_TRUE(cursor);
    EXPECT_EQ(cursor->curID(), dataElement);
    EXPECT_FALSE(none.empty());
}

TEST_F(QelAnyDataTest, AnyReturnsNewCursorOnSameTree) {
    const auto cursor = owner.any();
    cursor->putValue(std::string("x"), otherElement);
    cursor->seekUp();
    EXPECT_TRUE(owner.isSpecified(otherElement));
}

TEST_F(QelAnyDataTest, ReaderCopiesChild) {
    source->seekRoot();
    EXPECT_EQ(QelAnyData::Reader()(*source, none), 0);
    EXPECT_EQ(source->curName(), "/");
    EXPECT_EQ(setName(none, "second"), 0);
    source->seek(dataElement);
    EXPECT_EQ(childValue(*source, nameElement), "first");
}

TEST_F(QelAnyDataTest, MissingChildFailsUnlessOptional) {
    TestTree target;
    EXPECT_EQ(QelAnyData::Reader()(*target, owner), -1);
    EXPECT_EQ(nameIn(owner), "first");
    EXPECT_EQ(QelAnyData::Reader(true)(*target, owner), 0);
    EXPECT_EQ(nameIn(owner), "first");
}

TEST_F(QelAnyDataTest, WriterAddsElementAsChild) {
    TestTree target;
    EXPECT_EQ(target->putObj(owner, 0), 0);
    EXPECT_EQ(countChildren(*target, dataElement), 1);
    EXPECT_EQ(target->curName(), "/");
    QelAnyData read(dataElement);
    EXPECT_EQ(target->getObj(read, 0), 0);
    EXPECT_EQ(nameIn(read), "first");
}

TEST_F(QelAnyDataTest, PutObjWithIDNestsOneLevelDeeper) {
    TestTree target;
    EXPECT_EQ(target->putObj(owner, dataElement), 0);
    ASSERT_EQ(target->seek(dataElement), 0);
    EXPECT_NE(target->seekPresence(nameElement), 0);
    EXPECT_EQ(target->seekPresence(dataElement), 0);
}

} // namespace
} // namespace Qel
