// The cursor's templates for objects, tested with minimal functors.

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "QelMessage/QelDefaultMap.h"
#include "QelMessage/QelMessageIterator.h"
#include "QelMessage/QelWriterBase.h"
#include "support/TestMessage.h"

namespace Qel {
namespace {

using TestSupport::TestMessage;

constexpr int nameId = 1026;
constexpr int osId = 1188;
constexpr int detailId = 1279;
constexpr int envNamespace = 292;
constexpr int osType = 117;
constexpr int statusType = 118;

/// A record with a complex type and one field.
struct Inner {
    std::string name;

    struct Reader {
        int operator()(const QelMessageIterator& cursor, Inner& inner) const {
            return cursor.getValue(inner.name, nameId);
        }
    };
    struct Writer : QelWriterBaseT<Writer> {
        static constexpr int getNSID() { return envNamespace; }
        static constexpr int getTypeID() { return osType; }
        int operator()(QelMessageIterator& cursor, const Inner& inner) const {
            return cursor.putValue(inner.name, nameId);
        }
    };
    using reader_type = Reader;
    using writer_type = Writer;
};

/// A record with a complex type that contains another one.
struct Outer {
    Inner inner;

    struct Writer : QelWriterBaseT<Writer> {
        static constexpr int getNSID() { return envNamespace; }
        static constexpr int getTypeID() { return statusType; }
        int operator()(QelMessageIterator& cursor, const Outer& outer) const {
            cursor.putValue(1, nameId);
            const int result = cursor.putObj(outer.inner, osId);
            cursor.putValue(2, detailId);
            return result;
        }
    };
};

/// A writer that declares its namespace and type as strings.
struct StringTyped : QelWriterBaseT<StringTyped> {
    static constexpr const char* getStrNSID() { return "mine"; }
    static constexpr const char* getStrTypeID() { return "own"; }
    int operator()(QelMessageIterator& cursor, int value) const { return cursor.putValue(value, nameId); }
};

/// A writer without a type. Its result is the value that it writes.
struct Plain : QelWriterBaseT<Plain> {
    int operator()(QelMessageIterator& cursor, int value) const {
        cursor.putValue(value, 0);
        return value;
    }
};

/// A writer with this type ID.
template <int type> struct Typed : QelWriterBaseT<Typed<type>> {
    static constexpr int getNSID() { return envNamespace; }
    static constexpr int getTypeID() { return type; }
    int operator()(QelMessageIterator&, int) const { return 0; }
};

struct NullNamespace : QelWriterBaseT<NullNamespace> {
    static constexpr const char* getStrNSID() { return nullptr; }
    int operator()(QelMessageIterator&, int) const { return 0; }
};
struct NullType : QelWriterBaseT<NullType> {
    static constexpr const char* getStrTypeID() { return nullptr; }
    int operator()(QelMessageIterator&, int) const { return 0; }
};

std::string typeKey(int ns, int type) {
    return std::string(QelDefaultMap::findNSID(ns).view()) + ':' + std::string(QelDefaultMap::findTypeID(type).view());
}

class QelBinaryIteratorObjectTest : public testing::Test {
protected:
    QelBinaryIteratorObjectTest() : cursor(message.cursor()) {}

    TestMessage message;
    QelMessageIterator& cursor;
};

TEST_F(QelBinaryIteratorObjectTest, ObjectRoundTrips) {
    EXPECT_EQ(cursor.putObj(Inner{"linux"}, osId), 0);
    EXPECT_EQ(cursor.curName(), "/");
    Inner inner;
    EXPECT_EQ(cursor.getObj(inner, osId), 0);
    EXPECT_EQ(inner.name, "linux");
    EXPECT_EQ(cursor.curName(), "/");
}

TEST_F(QelBinaryIteratorObjectTest, OnlyTypesAbove100AreComplexTypes) {
    EXPECT_EQ(cursor.putObject(0, Typed<100>(), 0), 0);
    EXPECT_EQ(cursor.curType(), "");
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
    EXPECT_EQ(cursor.putObject(0, Typed<101>(), 0), 0);
    EXPECT_EQ(cursor.curType(), typeKey(envNamespace, 101));
}

TEST_F(QelBinaryIteratorObjectTest, MissingObjectFails) {
    Inner inner{"old"};
    EXPECT_EQ(cursor.getObj(inner, osId), -1);
    EXPECT_EQ(cursor.getObject(inner, Inner::Reader(), osId), -1);
    EXPECT_EQ(inner.name, "old");
    EXPECT_EQ(cursor.curName(), "/");
}

TEST_F(QelBinaryIteratorObjectTest, EmptyIdRefersToTheCurrentElement) {
    EXPECT_EQ(cursor.putObj(Inner{"here"}, 0), 0);
    EXPECT_EQ(cursor.seekPresence(nameId), 0);
    Inner inner;
    EXPECT_EQ(cursor.getObj(inner, 0), 0);
    EXPECT_EQ(inner.name, "here");
}

TEST_F(QelBinaryIteratorObjectTest, FailedReaderRestoresTheCursor) {
    cursor.putChild(osId);
    Inner inner;
    EXPECT_EQ(cursor.getObj(inner, osId), -1);
    EXPECT_EQ(cursor.curName(), "/");
}

TEST_F(QelBinaryIteratorObjectTest, PutObjectReplacesAnEarlierObject) {
    EXPECT_EQ(cursor.putObj(Inner{"first"}, osId), 0);
    EXPECT_EQ(cursor.putObj(Inner{"last"}, osId), 0);
    ASSERT_EQ(cursor.firstChild(osId), 0);
    std::string name;
    EXPECT_EQ(cursor.getValue(name, nameId), 0);
    EXPECT_EQ(name, "last");
    EXPECT_NE(cursor.nextSibling(), 0);
}

TEST_F(QelBinaryIteratorObjectTest, NewChildAlwaysAppends) {
    cursor.newChild(osId);
    cursor.seekUp();
    cursor.newChild(osId);
    cursor.seekUp();
    ASSERT_EQ(cursor.firstChild(osId), 0);
    EXPECT_EQ(cursor.nextSibling(osId), 0);
}

TEST_F(QelBinaryIteratorObjectTest, TypedRecordSetsTypeAndNamespace) {
    cursor.putObj(Inner{"x"}, osId);
    ASSERT_EQ(cursor.seek(osId), 0);
    EXPECT_EQ(cursor.curType(), typeKey(envNamespace, osType));
    ASSERT_EQ(cursor.seek(nameId), 0);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
}

TEST_F(QelBinaryIteratorObjectTest, TypeAndNamespaceMayBeStrings) {
    EXPECT_EQ(cursor.putObject(5, StringTyped(), osId), 0);
    ASSERT_EQ(cursor.seek(osId), 0);
    EXPECT_EQ(cursor.curType(), "mine:own");
    EXPECT_THAT(TestSupport::taken(cursor.toTextFromChild()),
                testing::HasSubstr("xmlns=\"urn:qel:mine\" xsi:type=\"mine:own\""));
    cursor.newChild(nameId);
    EXPECT_EQ(cursor.curNamespaceID(), 0) << "the saved namespace has been cleared";
}

TEST_F(QelBinaryIteratorObjectTest, PlainWriterSetsNoType) {
    EXPECT_EQ(cursor.putObject(0, Plain(), nameId), 0);
    ASSERT_EQ(cursor.seek(nameId), 0);
    EXPECT_EQ(cursor.curType(), "");
    EXPECT_EQ(cursor.curNamespaceID(), 0);
}

TEST_F(QelBinaryIteratorObjectTest, PlainWriterKeepsTheSavedNamespace) {
    cursor.saveNamespace(envNamespace);
    cursor.putObject(0, Plain(), nameId);
    cursor.newChild(nameId);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace);
}

TEST_F(QelBinaryIteratorObjectTest, NestedTypedRecordClearsTheSavedNamespace) {
    cursor.newChild(nameId);
    cursor.putObject(Outer{{"inner"}}, Outer::Writer(), 0);
    ASSERT_EQ(cursor.seek(nameId), 0);
    EXPECT_EQ(cursor.curNamespaceID(), envNamespace) << "before the nested record";
    ASSERT_EQ(cursor.nextSibling(detailId), 0);
    EXPECT_EQ(cursor.curNamespaceID(), 0) << "after the nested record";
}

TEST_F(QelBinaryIteratorObjectTest, FailedWriterKeepsItsElementAndRestoresTheCursor) {
    EXPECT_EQ(cursor.putObject(3, Plain(), nameId), 3);
    EXPECT_EQ(cursor.curName(), "/");
    EXPECT_EQ(cursor.seekPresence(nameId), 0);
}

using QelBinaryIteratorObjectDeathTest = QelBinaryIteratorObjectTest;

TEST_F(QelBinaryIteratorObjectDeathTest, NullTypeStringsEndTheProcess) {
    EXPECT_DEATH(cursor.putObject(1, NullNamespace(), 0), "QelMessageIterator:853");
    EXPECT_DEATH(cursor.putObject(1, NullType(), 0), "QelMessageIterator:854");
}

TEST_F(QelBinaryIteratorObjectDeathTest, FunctorsWithTheEmptyIdEndTheProcess) {
    Inner inner;
    EXPECT_DEATH(QelReaderID(Inner::Reader(), 0, QelReaderRequired)(cursor, inner), "QelMessageIterator:752");
    EXPECT_DEATH(QelWriterID(Inner::Writer(), 0)(cursor, inner), "QelMessageIterator:671");
}

} // namespace
} // namespace Qel
