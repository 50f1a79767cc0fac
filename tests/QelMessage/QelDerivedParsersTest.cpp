#include "QelMessage/QelDerivedRegistry.h"

#include <gmock/gmock.h>

#include "support/TestMessage.h"

namespace Qel {
namespace {

using namespace Qel::TestSupport;

constexpr int element = 1115;
constexpr int text = 1026;

/// A family with a default class, another class, and a class without a factory.
struct Shape {
    virtual ~Shape() = default;
    std::string name;

    struct Reader {
        int operator()(const QelMessageIterator& cursor, Shape& shape) const {
            return cursor.getValue(shape.name, text);
        }
    };
    template <int typeID> struct WriterOf : QelWriterBaseT<WriterOf<typeID>> {
        static int getNSID() { return 299; }
        static int getTypeID() { return typeID; }
        int operator()(QelMessageIterator& cursor, const Shape& shape) const {
            return cursor.putValue(shape.name, text);
        }
    };
};
struct Round : Shape {
    using Reader = Shape::Reader;
    using Writer = WriterOf<217>;
};
struct Square : Shape {
    using Reader = Shape::Reader;
    using Writer = WriterOf<218>;
};
struct Unknown : Shape {};

using ShapeSP = boost::shared_ptr<Shape>;
using Registry = QelDerivedParserFactory<Shape>;

class QelDerivedParsersTest : public testing::Test {
protected:
    ShapeSP make(Shape* shape, const char* name) {
        shape->name = name;
        return ShapeSP(shape);
    }
    int write(const ShapeSP& shape) { return message->putObject(shape, QelWriterDerived<Shape>(), element); }
    int read(ShapeSP& shape, bool useDefault) {
        return message->getObject(shape, QelReaderDerived<Shape>(useDefault), element);
    }
    void putUntyped() {
        message->newChild(element);
        message->putValue("plain", text);
        message->seekUp();
    }

    QelDerivedParserFactoryT<Round, Shape> factoryRound{true};
    QelDerivedParserFactoryT<Square, Shape> factorySquare{false};
    TestMessage tree;
    QelMessageIterator* const message = &tree.cursor();
};

TEST_F(QelDerivedParsersTest, ObjectRoundTripsAsItsOwnClass) {
    ASSERT_EQ(write(make(new Square, "s")), 0);
    ASSERT_EQ(message->seek(element), 0);
    EXPECT_EQ(message->curType(), "network:" + std::string(QelDefaultMap::findTypeID(218).view()));
    EXPECT_EQ(message->curNamespaceID(), 299);
    message->seekUp();

    ShapeSP shape;
    ASSERT_EQ(read(shape, false), 0);
    EXPECT_NE(dynamic_cast<Square*>(shape.get()), nullptr);
    EXPECT_EQ(shape->name, "s");
}

TEST_F(QelDerivedParsersTest, UntypedElementHasTheDefaultClassIfAllowed) {
    putUntyped();
    ShapeSP shape;
    EXPECT_EQ(read(shape, false), -1);
    EXPECT_EQ(shape, nullptr);
    ASSERT_EQ(read(shape, true), 0);
    EXPECT_NE(dynamic_cast<Round*>(shape.get()), nullptr);
}

TEST_F(QelDerivedParsersTest, UnknownTypeHasTheDefaultClassIfAllowed) {
    putUntyped();
    ASSERT_EQ(message->seek(element), 0);
    message->setComplexType("elsewhere", "thing");
    message->seekUp();
    ShapeSP shape;
    EXPECT_EQ(read(shape, false), -1);
    EXPECT_EQ(read(shape, true), 0);
}

TEST_F(QelDerivedParsersTest, FailedReadLeavesThePointerUnchanged) {
    message->putChild(element);
    const ShapeSP before = make(new Square, "before");
    ShapeSP shape = before;
    EXPECT_EQ(read(shape, true), -1);
    EXPECT_EQ(shape, before);
}

TEST_F(QelDerivedParsersTest, RejectsAClassWithoutAFactory) {
    EXPECT_EQ(write(make(new Unknown, "u")), -1);
}

TEST_F(QelDerivedParsersTest, NullPointerThrowsBadTypeid) {
    EXPECT_THROW(write(ShapeSP()), std::bad_typeid);
}

TEST_F(QelDerivedParsersTest, ListStopsAtAnUnknownTypeAndKeepsEarlierItems) {
    ASSERT_EQ(write(make(new Square, "one")), 0);
    putUntyped();
    const ShapeSP last = make(new Square, "two");
    ASSERT_EQ((QelWriterIDT<int, QelWriterDerived<Shape>>(element)(*message, last)), 0);
    std::vector<ShapeSP> shapes;
    EXPECT_EQ((QelReaderDerivedList<int, Shape>(element, QelReaderRequired, false)(*message, shapes)), -1);
    ASSERT_EQ(shapes.size(), 1U);
    EXPECT_EQ(shapes[0]->name, "one");
    EXPECT_EQ(message->curName(), "/");
}

TEST_F(QelDerivedParsersTest, ListWritesEachItemWithItsType) {
    const std::vector<ShapeSP> shapes{make(new Round, "a"), make(new Square, "b")};
    EXPECT_EQ((QelWriterDerivedList<int, Shape>(element)(*message, shapes)), 0);
    std::vector<ShapeSP> back;
    EXPECT_EQ((QelReaderDerivedList<int, Shape>(element, QelReaderRequired, false)(*message, back)), 0);
    ASSERT_EQ(back.size(), 2U);
    EXPECT_NE(dynamic_cast<Round*>(back[0].get()), nullptr);
    EXPECT_NE(dynamic_cast<Square*>(back[1].get()), nullptr);
}

TEST_F(QelDerivedParsersTest, FactoryCreatesObjectsOfItsClass) {
    const Registry& factory = factorySquare;
    EXPECT_NE(boost::dynamic_pointer_cast<Square>(factory.createObject()), nullptr);
}

TEST_F(QelDerivedParsersTest, DestroyedFactoryIsNotFound) {
    struct Late : Square {
        using Writer = WriterOf<166>;
    };
    {
        const QelDerivedParserFactoryT<Late, Shape> factoryLate(false);
        EXPECT_EQ(Registry::factories().size(), 3U);
    }
    EXPECT_EQ(Registry::factories().size(), 2U);
    EXPECT_EQ(Registry::factoriesByType().size(), 2U);
}

using QelDerivedParsersDeathTest = QelDerivedParsersTest;

TEST_F(QelDerivedParsersDeathTest, TwoClassesWithOneTypeEndTheProcess) {
    struct Same : Square {};
    EXPECT_DEATH((QelDerivedParserFactoryT<Same, Shape>(false)), "core/src/QelMessage/QelDerivedParsers:269");
}

TEST_F(QelDerivedParsersDeathTest, OneClassWithTwoTypesEndsTheProcess) {
    EXPECT_DEATH((QelDerivedParserFactoryT<Square, Shape, Shape, Shape::Reader, Shape::WriterOf<166>>(false)),
                 "core/src/QelMessage/QelDerivedParsers:271");
}

TEST_F(QelDerivedParsersDeathTest, SecondDefaultClassEndsTheProcess) {
    struct Late : Square {
        using Writer = WriterOf<166>;
    };
    EXPECT_DEATH((QelDerivedParserFactoryT<Late, Shape>(true)), "core/src/QelMessage/QelDerivedParsers:274");
}

struct NamedWriter : QelWriterBaseT<NamedWriter> {
    static const char* getStrNSID() { return "vt"; }
    static const char* getStrTypeID() { return "container"; }
};
struct UnqualifiedWriter : QelWriterBaseT<UnqualifiedWriter> {
    static const char* getStrTypeID() { return "container"; }
};
struct NullNamespaceWriter : QelWriterBaseT<NullNamespaceWriter> {
    static const char* getStrNSID() { return nullptr; }
};
struct NullTypeWriter : QelWriterBaseT<NullTypeWriter> {
    static const char* getStrTypeID() { return nullptr; }
};

TEST(QelDerivedKeyTest, CombinesNamespaceAndTypeFromStringsOrIDs) {
    EXPECT_EQ(QelDerivedKey<NamedWriter>(), "vt:container");
    EXPECT_EQ(QelDerivedKey<UnqualifiedWriter>(), "container");
    EXPECT_EQ(QelDerivedKey<Shape::WriterOf<166>>(), "network:net_device");
    EXPECT_EQ(QelDerivedKey<QelWriterBase>(), "");
}

TEST(QelDerivedKeyDeathTest, NullStringsEndTheProcess) {
    EXPECT_DEATH(QelDerivedKey<NullNamespaceWriter>(), "core/src/QelMessage/QelDerivedParsers:237");
    EXPECT_DEATH(QelDerivedKey<NullTypeWriter>(), "core/src/QelMessage/QelDerivedParsers:238");
}

} // namespace
} // namespace Qel
